// Objects that the browser holds by references, and how many of them live: the library may go with the last one.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

#include "base/errors.h"
#include "platform/win32/ComObject.h"
#include "platform/win32/ComPointer.h"

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

// What `body` returns; for lack of memory, the error for that.
template <typename Body>
HRESULT Guarded(Body body) noexcept {
    return TrapOr(HRESULT{E_OUTOFMEMORY}, body, [](const RuntimeError&) { /* no memory */ });
}

}  // namespace tb
