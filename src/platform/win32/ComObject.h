// Objects of this program that the system calls through one interface of its component model.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

namespace tb {

// The system's interfaces have no virtual destructor: objects end by their last Release, which knows the class.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Counted by references; whoever makes it by new has the first one, and a ComPointer takes it over.
template <typename Interface>
class ComObject : public Interface {
public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

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
    ComObject() = default;
    virtual ~ComObject() = default;
    // Other names of the same interface.
    virtual bool IsAlso(REFIID) const noexcept { return false; }

private:
    std::atomic<ULONG> m_References{1};
};

#pragma GCC diagnostic pop

}  // namespace tb
