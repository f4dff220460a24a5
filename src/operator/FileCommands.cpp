#include <filesystem>

#include "base/date.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "commandline/InputFiles.h"
#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "operator/Commands.h"
#include "operator/LastLine.h"
#include "platform/posix/PosixFiles.h"
#include "sitedb/SnapshotFile.h"
#include "sitedb/codec/Encryption.h"
#include "sitedb/codec/cCRC32.h"
#include "urlcheck/StandaloneVerdictHost.h"

namespace tb {

namespace {

void RequireStamp(const Text& stamp) {
    const bool digits = stamp.size() == 12 && stamp.find_first_not_of("0123456789") == Text::npos;
    if (!digits) throw UsageError("--stamp takes twelve digits, YYYYMMDDHHMM");
    const auto part = [&](size_t start, size_t length) { return ToInt32(stamp.substr(start, length)); };
    try {
        const Date date(CivilDate{part(0, 4), part(4, 2), part(6, 2), part(8, 2), part(10, 2), 0});
    } catch (const RuntimeError&) {
        throw UsageError("--stamp " + stamp + " is no date");
    }
}

// The whole file as text, checked before anything of it is shown.
Text Describe(FileReader& file) {
    SnapshotReader reader(file);
    const SnapshotHeader header = reader.ReadHeader();
    if (header.Version != SnapshotHeader::KnownVersion) {
        throw InputError("version " + std::to_string(header.Version) + " is not known");
    }
    Text entries;
    std::int32_t fingerprint = 0;
    for (std::int32_t index = 0; index < header.EntryCount; ++index) {
        const Text entry = reader.ReadEntry();
        fingerprint = cCRC32().GetStringCrc32(entry, fingerprint);
        entries += UnscrambleByLength(entry) + "\n";
    }
    if (fingerprint != header.Fingerprint) throw InputError("the fingerprint is wrong");
    return header.Stamp + "\t" + std::to_string(header.EntryCount) + "\t" +
           ToHex(static_cast<std::uint32_t>(fingerprint), 8) + "\n" + entries;
}

}  // namespace

void FrameCommand(const std::vector<Text>& words) {
    if (!words.empty()) throw UsageError("unexpected " + words.front());
    const Text plain = ReadStandardInput();
    if (plain.empty()) throw InputError("nothing on standard input, and a frame cannot be empty");
    WriteStandardOutput(EncryptStringChk(plain));
    FlushStandardOutput();
}

void UnframeCommand(const std::vector<Text>& words) {
    if (!words.empty()) throw UsageError("unexpected " + words.front());
    LastLine log;
    Text plain;
    if (!ChkEncryptString(ReadStandardInput(), plain, log)) {
        throw InputError("no intact frame on standard input: " + log.Or("the checksum is wrong"));
    }
    WriteStandardOutput(plain);
    FlushStandardOutput();
}

void SnapshotSaveCommand(const std::vector<Text>& words) {
    const Options options(words, {"--list", "--stamp", "--out"});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    const Text& list = options.Require("--list");
    const Text& stamp = options.Require("--stamp");
    const std::filesystem::path folder = options.Require("--out");
    RequireStamp(stamp);

    PosixFiles files;
    LastLine log;
    StandaloneVerdictHost host(log);
    EvilDB evilDB(files, host, folder);
    ForEachSiteLine(files, list,
                    [&](size_t, const std::vector<Text>& site) { evilDB.AddToDB(site[0], site[1], site[2]); });
    std::filesystem::create_directories(folder);
    evilDB.LogMessage.Connect([&](const Text& line, LogLevel level) { log.WriteLog(line, level); });
    const std::int32_t fingerprint = evilDB.LiveCount() == 0 ? 0 : evilDB.Fingerprint();
    if (!evilDB.SaveDB(stamp, fingerprint)) throw InputError(folder.string() + ": " + log.Or("not saved"));
}

void SnapshotShowCommand(const std::vector<Text>& words) {
    if (words.size() != 1) throw UsageError("snapshot show takes one file");
    PosixFiles files;
    try {
        WriteStandardOutput(Describe(*files.OpenForReading(words.front())));
    } catch (const RuntimeError& error) {
        if (error.Number != InputErrorNumber) throw UnreadableFile(words.front(), error, "a snapshot");
        throw InputError(words.front() + ": " + error.Description);
    }
    FlushStandardOutput();
}

}  // namespace tb
