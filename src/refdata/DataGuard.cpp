#include "refdata/DataGuard.h"

#include "base/errors.h"
#include "platform/AtomicWrite.h"
#include "refdata/DataFile.h"
#include "refdata/Defaults.h"
#include "refdata/Reference.h"
#include "refdata/mFileInfo.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

struct NoLog : LogSink {
    void WriteLog(const Text& /*message*/, LogLevel /*level*/) noexcept override {}
};

}  // namespace

bool DataGuard::WasRefused(const Text& File, const Date& date) const {
    const auto found = m_Access.Program.RefusedFiles.find(File);
    return found != m_Access.Program.RefusedFiles.end() && found->second == date;
}

bool DataGuard::Admits(const Text& File, const Text& plain, const Date& date) const {
    if (!IsOn()) return true;
    const Text defect = DefectOf(File, plain);
    if (defect.empty()) return true;
    m_Access.Program.RefusedFiles[File] = date;
    m_Access.Log.WriteLog("Refused the servers' " + File + ": " + defect, LogLevel::Always);
    return false;
}

void DataGuard::KeepLast(const Text& File) const noexcept {
    if (!IsOn()) return;
    Trap(
        [&] {
            Files& files = m_Access.Program.System.Files;
            const std::filesystem::path path = m_Access.DataFile(File);
            if (!files.Exists(path)) return;
            const Text framed = ReadWholeFile(files, path);
            // What cannot be used must not take the place of what can.
            if (!DefectOfFrame(File, framed).empty()) return;
            WriteFileAtomically(files, m_Access.DataFile(File + LastSuffix),
                                [&](FileWriter& writer) { writer.Write(framed); });
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error keeping " + File + LastSuffix + ": " + error.Line(), LogLevel::Always);
        });
}

Text DataGuard::FileForStart(const Text& File) const {
    Text last = File + LastSuffix;
    if (!IsOn() || !m_Access.Program.System.Files.Exists(m_Access.DataFile(last))) return File;
    const Text defect = DefectOnDisk(File, File);
    if (defect.empty() || !DefectOnDisk(File, last).empty()) return File;
    m_Access.Log.WriteLog(File + " cannot be used (" + defect + "), taking " + last, LogLevel::Always);
    MakeOld(File);
    return last;
}

Text DataGuard::DefectOf(const Text& File, const Text& plain) const noexcept {
    Text defect;
    Trap(
        [&] {
            if (File == Defaults::FileName) Defaults::Check(m_Access.Program, plain);
            if (File == Reference::FileName) Reference::Check(m_Access.Program, plain);
        },
        [&](const RuntimeError& error) { defect = error.Description; });
    return defect;
}

Text DataGuard::DefectOfFrame(const Text& File, const Text& framed) const noexcept {
    NoLog quiet;
    Text plain;
    return ChkEncryptString(framed, plain, quiet) ? DefectOf(File, plain) : "no whole frame";
}

Text DataGuard::DefectOnDisk(const Text& File, const Text& Name) const noexcept {
    Text defect;
    Trap([&] { defect = DefectOfFrame(File, ReadWholeFile(m_Access.Program.System.Files, m_Access.DataFile(Name))); },
         [&](const RuntimeError& error) { defect = error.Description; });
    return defect;
}

void DataGuard::MakeOld(const Text& File) const noexcept {
    Trap(
        [&] {
            Files& files = m_Access.Program.System.Files;
            const std::filesystem::path path = m_Access.DataFile(File);
            if (files.Exists(path)) SetFileDates(files, path, OldestDate(), OldestDate(), OldestDate(), true);
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error dating " + File + ": " + error.Line(), LogLevel::Always);
        });
}

}  // namespace tb
