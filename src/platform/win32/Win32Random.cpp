#include "platform/win32/Win32Random.h"

#include <windows.h>

namespace tb {

namespace {

// The wall clock alone stands still between two starts that follow each other closely.
std::uint32_t Seed() {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    LARGE_INTEGER ticks{};
    QueryPerformanceCounter(&ticks);
    return static_cast<std::uint32_t>(now.dwLowDateTime ^ ticks.LowPart ^ GetCurrentProcessId());
}

}  // namespace

Win32Random::Win32Random() : m_Numbers(Seed()) {}

double Win32Random::Next() {
    constexpr double Numbers = 4294967296.0;
    return static_cast<double>(m_Numbers()) / Numbers;
}

}  // namespace tb
