// The memory of a process, which must not grow while it does the same again and again.
#pragma once

#include <windows.h>

// After windows.h.
#include <gtest/gtest.h>
#include <psapi.h>

#include <algorithm>
#include <cstdio>

#include "windows/Eventually.h"

namespace tb {

class FlatMemory {
public:
    // Remembers what the process has when all is loaded that comes beside its start; of the program, what writes dumps
    // is the last.
    explicit FlatMemory(HANDLE process, const char* last = "dbghelp.dll") : m_Process(process) {
        EXPECT_TRUE(Eventually([&] { return HasLoaded(last); }));
        m_Before = Now();
    }

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
    bool HasLoaded(const char* name) const {
        HMODULE modules[256];
        DWORD size = 0;
        if (!EnumProcessModules(m_Process, modules, sizeof modules, &size)) return false;
        return std::any_of(modules, modules + std::min<size_t>(size / sizeof *modules, 256), [&](HMODULE module) {
            char found[MAX_PATH] = "";
            GetModuleBaseNameA(m_Process, module, found, MAX_PATH);
            return lstrcmpiA(found, name) == 0;
        });
    }
    PROCESS_MEMORY_COUNTERS Now() const {
        PROCESS_MEMORY_COUNTERS counters{};
        GetProcessMemoryInfo(m_Process, &counters, sizeof counters);
        return counters;
    }

    HANDLE m_Process;
    PROCESS_MEMORY_COUNTERS m_Before{};
};

}  // namespace tb
