// This process and others.
#pragma once

#include <cstdint>
#include <filesystem>

#include "base/text.h"

namespace tb {

class Processes {
public:
    virtual ~Processes() = default;
    // The running program's file, with its folder.
    virtual std::filesystem::path Executable() = 0;
    // Whether another process runs the same file. Asked anew each time.
    virtual bool IsPreviousInstance() = 0;
    // Whether another process runs the file of that name in this program's folder. Asked anew each time.
    virtual bool IsRunningBeside(const Text& fileName) = 0;
    // Whether a module of that file name is loaded in this process, case aside.
    virtual bool IsModuleLoaded(const Text& fileName) = 0;
    // Starts a command line in a normal window without waiting for it: the process number, or 0.
    virtual std::uint32_t Start(const Text& commandLine) = 0;
    // The same for a file that is named apart from the command line, so that the line need not be quoted.
    virtual std::uint32_t StartProgram(const std::filesystem::path& program, const Text& commandLine) = 0;
    // Sets the limits of this process's working set, in bytes: 0, or the system's error number.
    virtual std::uint32_t SetWorkingSetSize(std::int64_t minimum, std::int64_t maximum) = 0;
    // The system's text for one of its error numbers, at most 254 characters.
    virtual Text SystemErrorText(std::uint32_t number) = 0;
    // Ends the process at once.
    [[noreturn]] virtual void Exit(std::int32_t status) = 0;
};

}  // namespace tb
