#include "sitedb/GuardRecord.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/SnapshotFile.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr TextView FirstLine = "list guard 1";

// Damage is told by whoever reads.
class NoLog : public LogSink {
public:
    void WriteLog(const Text& /*message*/, LogLevel /*level*/) noexcept override {}
};

void ReadLine(TextView line, GuardRecord& record) {
    const std::vector<TextView> fields = SplitViews(line, '\t');
    const TextView name = At(fields, 0);
    const TextView value = At(fields, 1);
    if (name == "stamp" && IsStamp(value)) {
        record.NewestStamp = value;
    } else if (name == "held") {
        record.HeldSince = ParseDate(value);
    } else if (name == "day") {
        record.Days[ParseDate(value).Day()] = ToInt32(At(fields, 2));
    } else {
        throw Error(ErrorNumber::TypeMismatch);
    }
}

}  // namespace

Text GuardRecord::Framed() const {
    Text lines(FirstLine);
    if (!NewestStamp.empty()) lines += "\nstamp\t" + NewestStamp;
    if (HeldSince) lines += "\nheld\t" + FormatDateTime(*HeldSince);
    for (const auto& [day, count] : Days) lines += "\nday\t" + FormatDate(day) + "\t" + std::to_string(count);
    return EncryptStringChk(lines + "\n");
}

std::optional<GuardRecord> GuardRecord::Read(TextView framed) {
    return TrapOr(
        std::optional<GuardRecord>(),
        [&]() -> std::optional<GuardRecord> {
            Text plain;
            NoLog log;
            if (!ChkEncryptString(framed, plain, log)) return std::nullopt;
            const std::vector<TextView> lines = SplitViews(plain, '\n');
            if (At(lines, 0) != FirstLine || !lines.back().empty()) return std::nullopt;
            GuardRecord read;
            for (size_t index = 1; index + 1 < lines.size(); ++index) ReadLine(lines[index], read);
            if (!read.NewestStamp.empty()) StampToDate(read.NewestStamp);
            return read;
        },
        [](const RuntimeError&) { /* damaged */ });
}

}  // namespace tb
