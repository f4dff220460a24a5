// Processes of Windows.
#pragma once

#include "platform/Processes.h"

namespace tb {

class Win32Processes : public Processes {
public:
    // Error 51 when the system does not tell.
    std::filesystem::path Executable() override;
    // Only processes of the same session count: those of another user's desktop are out of reach anyway.
    bool IsPreviousInstance() override;
    // The same.
    bool IsRunningBeside(const Text& fileName) override;
    bool IsModuleLoaded(const Text& fileName) override;
    std::uint32_t Start(const Text& commandLine) override;
    std::uint32_t StartProgram(const std::filesystem::path& program, const Text& commandLine) override;
    std::uint32_t SetWorkingSetSize(std::int64_t minimum, std::int64_t maximum) override;
    Text SystemErrorText(std::uint32_t number) override;
    [[noreturn]] void Exit(std::int32_t status) override;
};

}  // namespace tb
