// Objects that the browser holds by references, and how many of them live: the library may go with the last one.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

#include "platform/win32/ComObject.h"
#include "platform/win32/Handle.h"

namespace tb {

class ServedObjects {
public:
    static long Live() { return s_Live; }
    // For locks that are no objects.
    static void Add(long count) { s_Live += count; }

private:
    inline static std::atomic<long> s_Live{0};
};

template <typename Interface>
class ServedObject : public ComObject<Interface> {
protected:
    ServedObject() { ServedObjects::Add(1); }
    ~ServedObject() override { ServedObjects::Add(-1); }
};

// The owner of one reference to an object of the system's component model.
template <typename Interface>
struct ReferenceTrait {
    using Value = Interface*;
    static Value None() { return nullptr; }
    static bool Close(Value value) {
        value->Release();
        return true;
    }
};
template <typename Interface>
using Reference = Handle<ReferenceTrait<Interface>>;

// Another face of the same object; none when it has no such face.
template <typename Interface>
Reference<Interface> AskFor(IUnknown* object) {
    Interface* found = nullptr;
    if (object != nullptr) object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(&found));
    return Reference<Interface>(found);
}

// A reference of one's own to an object that somebody else holds.
template <typename Interface>
Reference<Interface> Share(Interface* object) {
    if (object != nullptr) object->AddRef();
    return Reference<Interface>(object);
}

}  // namespace tb
