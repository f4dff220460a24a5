// The memory of a process, which must not grow while it does the same again and again.
#pragma once

#include <windows.h>

// After windows.h.
#include <gtest/gtest.h>
#include <psapi.h>

#include <cstdio>

namespace tb {

class FlatMemory {
public:
    // Remembers what the process has now.
    explicit FlatMemory(HANDLE process) : m_Process(process), m_Before(Now()) {}

    // Prints what it has become by then, and fails when it is a megabyte more.
    void Expect(const char* after) const {
        constexpr SIZE_T allowed = 1 << 20;
        const PROCESS_MEMORY_COUNTERS now = Now();
        std::printf("%s: private %zu -> %zu, working set %zu -> %zu bytes\n", after, m_Before.PagefileUsage,
                    now.PagefileUsage, m_Before.WorkingSetSize, now.WorkingSetSize);
        ASSERT_GT(m_Before.WorkingSetSize, 0U);
        EXPECT_LT(now.PagefileUsage, m_Before.PagefileUsage + allowed);
        EXPECT_LT(now.WorkingSetSize, m_Before.WorkingSetSize + allowed);
    }

private:
    PROCESS_MEMORY_COUNTERS Now() const {
        PROCESS_MEMORY_COUNTERS counters{};
        GetProcessMemoryInfo(m_Process, &counters, sizeof counters);
        return counters;
    }

    HANDLE m_Process;
    PROCESS_MEMORY_COUNTERS m_Before;
};

}  // namespace tb
