// Objects that the browser holds by references, and how many of them live: the library may go with the last one.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

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

// The system's interfaces have no virtual destructor: objects end by their last Release, which knows the class.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Whoever makes one by new has the first reference.
template <typename Interface>
class ServedObject : public Interface {
public:
    ServedObject(const ServedObject&) = delete;
    ServedObject& operator=(const ServedObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        const bool known = IsEqualIID(id, __uuidof(IUnknown)) || IsEqualIID(id, __uuidof(Interface)) || IsAlso(id);
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++m_References; }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = --m_References;
        if (left == 0) delete this;
        return left;
    }

protected:
    ServedObject() { ServedObjects::Add(1); }
    virtual ~ServedObject() { ServedObjects::Add(-1); }
    // Other names of the same interface.
    virtual bool IsAlso(REFIID) const noexcept { return false; }

private:
    std::atomic<ULONG> m_References{1};
};

#pragma GCC diagnostic pop

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
