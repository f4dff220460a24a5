// The owner of one reference to an object of the system's component model.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <utility>

namespace tb {

// Move-only; gives the reference back when it goes.
template <typename Interface>
class ComPointer {
public:
    ComPointer() = default;
    // Takes over a reference that the caller has; null is none.
    explicit ComPointer(Interface* object) : m_Object(object) {}
    ComPointer(ComPointer&& other) noexcept : m_Object(std::exchange(other.m_Object, nullptr)) {}
    // What it held is given back here, not with the other one.
    ComPointer& operator=(ComPointer&& other) noexcept {
        ComPointer before(std::exchange(m_Object, std::exchange(other.m_Object, nullptr)));
        return *this;
    }
    ~ComPointer() {
        if (m_Object != nullptr) m_Object->Release();
    }

    // A reference of its own to an object that somebody else holds.
    static ComPointer Share(Interface* object) {
        if (object != nullptr) object->AddRef();
        return ComPointer(object);
    }
    // Another face of an object that may be null; none when it has no such face.
    static ComPointer AskFor(IUnknown* object) {
        ComPointer found;
        if (object != nullptr) object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(found.Receive()));
        return found;
    }

    explicit operator bool() const { return m_Object != nullptr; }
    Interface* Get() const { return m_Object; }
    Interface* operator->() const { return m_Object; }
    // For a call that puts a reference here; only while there is none.
    Interface** Receive() { return &m_Object; }

private:
    Interface* m_Object = nullptr;
};

}  // namespace tb
