// Data that an object has handed out, given back when this goes.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <utility>

namespace tb {

class StorageMedium {
public:
    StorageMedium() = default;
    // Takes over what a call has filled.
    explicit StorageMedium(const STGMEDIUM& filled) : m_Medium(filled) {}
    StorageMedium(StorageMedium&& other) noexcept : m_Medium(std::exchange(other.m_Medium, STGMEDIUM{})) {}
    StorageMedium& operator=(StorageMedium&& other) noexcept {
        std::swap(m_Medium, other.m_Medium);
        return *this;
    }
    ~StorageMedium() {
        if (m_Medium.tymed != TYMED_NULL) ReleaseStgMedium(&m_Medium);
    }

    const STGMEDIUM& Get() const { return m_Medium; }

private:
    STGMEDIUM m_Medium{};
};

}  // namespace tb
