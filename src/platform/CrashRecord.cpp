#include "platform/CrashRecord.h"

#include <algorithm>

#include "base/codepage.h"
#include "base/errors.h"

namespace tb {

namespace {

constexpr size_t MomentDigits = 14;
constexpr int CodeDigits = 8;
constexpr int AddressDigits = 16;

bool IsDump(const Text& name, const Text& program) {
    if (name.size() < program.size() + MomentDigits) return false;
    const Text moment = name.substr(program.size(), MomentDigits);
    return std::all_of(moment.begin(), moment.end(), [](char c) { return c >= '0' && c <= '9'; }) &&
           name == program + moment + DumpExtension;
}

int HexDigits(std::uint64_t number) {
    int digits = 1;
    while ((number >>= 4) != 0) ++digits;
    return digits;
}

}  // namespace

CrashText CrashLine(const Crash& crash, TextView speaker) noexcept {
    CrashText line;
    const auto number = [&](int value, int digits, const char* behind) {
        line.AddNumber(static_cast<std::uint64_t>(value), digits).Add(behind);
    };
    number(crash.When.Month, 2, "/");
    number(crash.When.Day, 2, "/");
    number(crash.When.Year, 4, " ");
    number(crash.When.Hour, 2, ":");
    number(crash.When.Minute, 2, ":");
    number(crash.When.Second, 2, "   ");
    line.Add(speaker).Add("Crash ").AddHex(crash.Code, CodeDigits).Add(" at ");
    if (crash.Module.empty()) {
        line.AddHex(crash.Offset, AddressDigits);
    } else {
        line.Add(crash.Module).Add("+").AddHex(crash.Offset, HexDigits(crash.Offset));
    }
    line.Add("\r\n");
    return line;
}

std::filesystem::path DropOldDumps(Files& files, const std::filesystem::path& folder, const Text& program) noexcept {
    return TrapOr(
        std::filesystem::path(),
        [&] {
            std::vector<Text> names;
            for (const std::filesystem::path& path : files.List(folder)) {
                if (IsDump(PathText(path), program)) names.push_back(PathText(path));
            }
            std::sort(names.begin(), names.end());
            while (names.size() > KeptDumps) {
                Trap([&] { files.Delete(folder / TextPath(names.front())); }, [](const RuntimeError&) {});
                names.erase(names.begin());
            }
            return names.size() == KeptDumps ? folder / TextPath(names.front()) : std::filesystem::path();
        },
        [](const RuntimeError&) { /* they take room and nothing else */ });
}

}  // namespace tb
