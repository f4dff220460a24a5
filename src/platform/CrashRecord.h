// What stays of a crash: a line of the log and the names of the dumps. Everything but DropOldDumps serves a process
// that is broken, so it takes no memory, calls nothing of the system and cannot fail.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string_view>

#include "base/date.h"
#include "platform/Files.h"

namespace tb {

// A text in place, ended by a NUL. What does not fit is cut off.
template <typename Char, size_t Room>
class FixedText {
public:
    template <typename Other>
    FixedText& Add(std::basic_string_view<Other> text) noexcept {
        for (const Other c : text) AddOne(Narrowed(c));
        return *this;
    }
    FixedText& Add(const char* text) noexcept { return Add(TextView(text)); }
    // The last digits of a number, with leading zeros.
    FixedText& AddNumber(std::uint64_t number, int digits) noexcept { return AddDigits(number, digits, 10); }
    FixedText& AddHex(std::uint64_t number, int digits) noexcept { return AddDigits(number, digits, 16); }

    const Char* Get() const noexcept { return m_Text.data(); }
    size_t Size() const noexcept { return m_Size; }

private:
    // Names of our modules and files are plain; another character of a module's name shows as a question mark.
    template <typename Other>
    static Char Narrowed(Other c) noexcept {
        if constexpr (sizeof(Other) <= sizeof(Char)) return static_cast<Char>(c);
        return c < 0x7F ? static_cast<Char>(c) : static_cast<Char>('?');
    }
    FixedText& AddDigits(std::uint64_t number, int digits, std::uint64_t base) noexcept {
        std::uint64_t unit = 1;
        for (int left = 1; left < digits; ++left) unit *= base;
        for (; digits > 0; --digits, unit /= base) AddOne(static_cast<Char>("0123456789ABCDEF"[number / unit % base]));
        return *this;
    }
    void AddOne(Char c) noexcept {
        if (m_Size + 1 < Room) m_Text[m_Size++] = c;
    }

    std::array<Char, Room> m_Text{};
    size_t m_Size = 0;
};

struct Crash {
    // As the system numbers exceptions; AbortCode for a process that gave up by itself.
    std::uint32_t Code = 0;
    // The module that holds the place, and the place's distance from the module's start; without a module the address.
    std::wstring_view Module;
    std::uint64_t Offset = 0;
    // Local time.
    CivilDate When;
};

// Of std::terminate and abort, as today's systems number it.
inline constexpr std::uint32_t AbortCode = 0x40000015;

using CrashText = FixedText<char, 400>;

// A line of the log, with its line end. `speaker` stands before the message, such as "tbUpdater: ".
CrashText CrashLine(const Crash& crash, TextView speaker) noexcept;

// "YYYYMM", as in names of log files, and "YYYYMMDDhhmmss", as in names of dumps.
template <typename Char, size_t Room>
void AddMonth(FixedText<Char, Room>& name, const CivilDate& when) noexcept {
    name.AddNumber(static_cast<std::uint64_t>(when.Year), 4).AddNumber(static_cast<std::uint64_t>(when.Month), 2);
}
template <typename Char, size_t Room>
void AddMoment(FixedText<Char, Room>& name, const CivilDate& when) noexcept {
    AddMonth(name, when);
    for (const int part : {when.Day, when.Hour, when.Minute, when.Second}) {
        name.AddNumber(static_cast<std::uint64_t>(part), 2);
    }
}

inline constexpr const char* DumpExtension = ".dmp";
inline constexpr size_t KeptDumps = 3;

// Of the dumps of a program in `folder`, which are named by it and their moment, deletes all but the newest KeptDumps.
// Returns the one that goes for the next, empty while there is room. Never fails: what cannot be deleted stays.
std::filesystem::path DropOldDumps(Files& files, const std::filesystem::path& folder, const Text& program) noexcept;

}  // namespace tb
