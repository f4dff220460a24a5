// Sends mails down the whole road of a submission: dropped in the Internet message format, queued, posted to a service.
// The files are on the disk, the requests on the wire; the dialog is answered with OK.
//   mail_road FOLDER PORT BATCH <names
// FOLDER is the program's, empty; PORT that of the service on 127.0.0.1. Standard input names a file for each mail. As
// many as BATCH are dropped before a run sends them. Prints lines of fields with a TAB between, an event each:
//   mail NAME queued FILE | large | repeat | other TEXT      what came of the drop
//   sent FILE accepted REPLY | refused REPLY | failed | unparsable
//   store ID KEY TEXT                                        the list at the end, read from the disk by a new start
//   left FILE                                                what waits in the queue at the end
// Bytes other than visible ASCII and blanks stand as \xHH.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>

#include "base/errors.h"
#include "base/numbers.h"
#include "components/tbSender/tbSender.h"
#include "components/tbXML/XmlParser.h"
#include "fakes/FakePlatform.h"
#include "mail_road/LoopbackHttp.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/SystemClock.h"
#include "submissions/SubmissionDB.h"

namespace {

using tb::Text;
using tb::TextView;

// Runs at the end that make up for requests that failed.
constexpr int MoreRuns = 4;
constexpr tb::ClipboardFormat MailFormat = -16000;

void Print(std::initializer_list<TextView> fields) {
    Text line;
    for (const TextView field : fields) line += (line.empty() ? "" : "\t") + tb::Quoted(field, field.size());
    std::puts(line.c_str());
}

struct Formats : tb::ClipboardFormats {
    tb::ClipboardFormat Register(const Text& name) override {
        return name == "Internet Message (rfc822/rfc1522)" ? MailFormat : tb::ClipboardFormat(MailFormat - 1);
    }
};

struct SaysOK : tb::QualifiersView {
    tb::WindowExtent Extent(const tb::QualifiersDialog&) override { return {4000, 3000}; }
    void ShowModal(tb::QualifiersDialog& dialog, const tb::WindowPosition& place) override { dialog.cmdOK(place); }
};

struct DroppedMail : tb::DropData {
    explicit DroppedMail(Text mail) : Mail(std::move(mail)) {}
    bool Has(tb::ClipboardFormat format) override { return format == MailFormat; }
    Text Bytes(tb::ClipboardFormat) override { return Mail; }
    Text PlainText() override { return {}; }
    tb::NativeData* Native() override { return nullptr; }
    Text Mail;
};

struct Here : tb::FakeProcesses {
    explicit Here(std::filesystem::path folder) : Folder(std::move(folder)) {}
    std::filesystem::path Executable() override { return Folder / "Trawlbeam.exe"; }
    std::filesystem::path Folder;
};

struct NoLog : tb::LogSink {
    void WriteLog(const Text&, tb::LogLevel) noexcept override {}
};

// The program, as far as submissions need it.
class Road {
public:
    Road(const std::filesystem::path& folder, const Text& port)
        : m_Queue(folder / "Data" / "InProcess"), m_Process(folder) {
        std::filesystem::create_directories(m_Queue / "Error");
        m_Program.Settings =
            std::make_unique<tb::xmlINI>(tb::xmlINI::Surroundings{m_Files, m_Clock, m_System.Dialogs, {}, "Trawlbeam"});
        m_Program.Settings->SetGlobals("SERVERS",
                                       tb::ParseXml("<SERVERS><E NAME='SUBDBSVR'><Server WEIGHT='100' ACTIVE='Y'>"
                                                    "http://127.0.0.1:" +
                                                    port + "</Server></E></SERVERS>"));
        m_Program.Settings->SetGlobals("CATEGORIES", tb::ParseXml("<CATEGORIES><C ID='2' NAME='Bank'/></CATEGORIES>"));
        m_Program.Settings->WriteXMLString("MAIN", "KEY", "ROAD-1");
        m_Program.Settings->WriteXMLString("MAIN", "ConfirmSubmission", "0");
        Start();
    }

    void Drop(const Text& name) {
        std::ifstream file(name, std::ios::binary);
        if (!file) throw std::runtime_error("cannot read " + name);
        DroppedMail mail(Text(std::istreambuf_iterator<char>(file), {}));
        const std::set<Text> before = Waiting();
        m_DB->DoDrop(mail);
        const std::vector<Text> shown = std::exchange(m_System.Dialogs.Shown, {});
        std::vector<Text> queued;
        for (const Text& waiting : Waiting()) {
            if (before.count(waiting) == 0) queued.push_back(waiting);
        }
        if (shown.empty() && queued.size() == 1) return Print({"mail", name, "queued", queued.front()});
        const Text told = shown.size() == 1 && queued.empty() ? shown.front() : Text();
        if (told.find("|Previously Submitted Email: ") != Text::npos) return Print({"mail", name, "repeat"});
        if (told.find("|Email message is too large") != Text::npos) return Print({"mail", name, "large"});
        Print({"mail", name, "other", tb::Join(shown, " ")});
    }

    void Send() {
        m_DB->ProcessSubmissions();
        m_System.Dialogs.Shown.clear();
    }

    void Finish() {
        for (int run = 0; run < MoreRuns && !Waiting().empty(); ++run) Send();
        Start();
        for (std::int32_t index = 1; index <= m_DB->Count(); ++index) {
            m_DB->MoveToItem(index);
            Print({"store", m_DB->DecryptSubID(m_DB->GetAttributeValue("ID")), m_DB->GetAttributeValue("UKey"),
                   m_DB->Body()});
        }
        for (const Text& file : Waiting()) Print({"left", file});
    }

private:
    void Start() {
        m_DB = std::make_shared<tb::SubmissionDB>(
            tb::SubmissionDB::Parts{{m_Program, m_Log, [this] { return MakeSender(); }}, m_Formats, m_Dialog});
        m_DB->LogMessage.Connect([this](const Text& line, tb::LogLevel) { Follow(line); });
        m_DB->Setup();
    }
    std::unique_ptr<tb::Sender> MakeSender() {
        return std::make_unique<tb::tbSender>(tb::tbSender::Parts{m_Http, m_System.Random, m_Files, {}});
    }
    std::set<Text> Waiting() {
        std::set<Text> names;
        for (const std::filesystem::path& name : m_Files.List(m_Queue)) names.insert(name.string());
        return names;
    }
    // The log tells which file is at work and what became of it.
    void Follow(const Text& line) {
        const auto told = [&](TextView begin) { return line.compare(0, begin.size(), begin) == 0; };
        if (constexpr TextView begin = "Processing Submission File "; told(begin)) {
            m_File = line.substr(begin.size());
        } else if (constexpr TextView accepted = "Update Submission: "; told(accepted)) {
            Print({"sent", m_File, "accepted", line.substr(accepted.size())});
        } else if (told("Deleting submission email (Code -1): ")) {
            Print({"sent", m_File, "refused", line.substr(line.rfind("-1 "))});
        } else if (told("Error parsing email, ")) {
            Print({"sent", m_File, "unparsable"});
        } else if (told("Error submitting email")) {
            Print({"sent", m_File, "failed"});
        }
    }

    std::filesystem::path m_Queue;
    tb::PosixFiles m_Files;
    tb::SystemClock m_Clock;
    tb::FakeSystem m_System;
    Here m_Process;
    tb::App m_Program{
        tb::Platform{m_Clock, m_System.Random, m_System.Pump, m_Files, m_System.Dialogs, m_System.Resources, m_Process,
                     m_System.Shell, m_System.Versions, m_System.Registry, m_System.Machine, m_System.WindowText},
        tb::TestDeployment()};
    NoLog m_Log;
    tb::LoopbackHttp m_Http;
    Formats m_Formats;
    SaysOK m_Dialog;
    std::shared_ptr<tb::SubmissionDB> m_DB;
    Text m_File;
};

}  // namespace

int main(int count, char** words) {
    int status = 0;
    tb::Trap(
        [&] {
            if (count != 4) throw std::runtime_error("usage: mail_road FOLDER PORT BATCH <names");
            const std::int32_t batch = tb::ToInt32(words[3]);
            Road road(words[1], words[2]);
            std::int32_t dropped = 0;
            for (Text name; std::getline(std::cin, name);) {
                road.Drop(name);
                if (++dropped % batch == 0) road.Send();
            }
            road.Finish();
        },
        [&](const tb::RuntimeError& error) {
            std::fprintf(stderr, "mail_road: %s\n", error.Line().c_str());
            status = 1;
        });
    return status;
}
