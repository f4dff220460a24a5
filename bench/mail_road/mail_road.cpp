// Sends mails down the whole road of a submission: dropped in the Internet message format, queued, posted to a service.
// The files are in memory, the requests on the wire; the dialog is answered with OK.
//   mail_road PORT BATCH <names
// PORT is that of the service on 127.0.0.1. Standard input names a file for each mail. As many as BATCH are dropped
// before a run sends them. Prints lines of fields with a TAB between, an event each:
//   mail NAME queued FILE | large | repeat | other TEXT      what came of the drop
//   sent FILE accepted REPLY | refused REPLY | failed | unparsable
//   store ID KEY TEXT                                        the list at the end, read from its file by a new start
//   left FILE                                                what waits in the queue at the end
// Bytes other than visible ASCII and blanks stand as \xHH.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>

#include "base/numbers.h"
#include "bench/mail_road/LoopbackHttp.h"
#include "components/tbSender/tbSender.h"
#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

// Runs at the end that make up for requests that failed.
constexpr int MoreRuns = 4;

void Print(std::initializer_list<TextView> fields) {
    Text line;
    for (const TextView field : fields) line += (line.empty() ? "" : "\t") + Quoted(field, field.size());
    std::puts(line.c_str());
}

class Road : public SubmissionRig {
public:
    explicit Road(const Text& port) {
        Program.Settings->ReplaceGlobals("SERVERS",
                                         ParseXml("<SERVERS><E NAME='SUBDBSVR'><Server WEIGHT='100' ACTIVE='Y'>"
                                                  "http://127.0.0.1:" +
                                                  port + "</Server></E></SERVERS>"));
        Set("ConfirmSubmission", "0");
        Restart();
    }

    void DropFile(const Text& name) {
        std::ifstream file(name, std::ios::binary);
        if (!file) throw std::runtime_error("cannot read " + name);
        const std::vector<Text> before = Split(Queue(), ' ');
        DropMail(Text(std::istreambuf_iterator<char>(file), {}));
        const Text shown = Join(TakeShown(), " ");
        for (const Text& waiting : Split(Queue(), ' ')) {
            const bool isNew = std::find(before.begin(), before.end(), waiting) == before.end();
            if (shown.empty() && isNew) return Print({"mail", name, "queued", waiting});
        }
        if (shown.find("|Previously Submitted Email: ") != Text::npos) return Print({"mail", name, "repeat"});
        if (shown.find("|Email message is too large") != Text::npos) return Print({"mail", name, "large"});
        Print({"mail", name, "other", shown});
    }

    void Send() {
        DB->ProcessSubmissions();
        TakeShown();
    }

    void Finish() {
        for (int run = 0; run < MoreRuns && !Queue().empty(); ++run) Send();
        Restart();
        for (std::int32_t index = 1; index <= DB->Count(); ++index) {
            DB->MoveToItem(index);
            Print({"store", DB->DecryptSubID(DB->GetAttributeValue("ID")), DB->GetAttributeValue("UKey"), DB->Body()});
        }
        // What was put aside stands there behind "!".
        for (const Text& file : Split(Queue(), ' ')) {
            if (file[0] != '!') Print({"left", file});
        }
    }

private:
    void Restart() {
        const SenderFactory sender = [this] {
            return std::make_unique<tbSender>(tbSender::Parts{m_Http, System.Random, System.Files, {}});
        };
        DB = std::make_shared<SubmissionDB>(SubmissionDB::Parts{{Program, Log, sender}, Formats, Qualifiers});
        DB->LogMessage.Connect([this](const Text& line, LogLevel) { Follow(line); });
        DB->Setup();
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

    LoopbackHttp m_Http;
    Text m_File;
};

}  // namespace
}  // namespace tb

int main(int count, char** words) {
    int status = 0;
    tb::Trap(
        [&] {
            if (count != 3) throw std::runtime_error("usage: mail_road PORT BATCH <names");
            const std::int32_t batch = tb::ToInt32(words[2]);
            tb::Road road(words[1]);
            std::int32_t dropped = 0;
            for (tb::Text name; std::getline(std::cin, name);) {
                road.DropFile(name);
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
