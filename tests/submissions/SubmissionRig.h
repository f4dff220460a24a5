// The program as submissions see it: files, web and dialogs in memory, and whatever is dropped on it.
#pragma once

#include "components/tbXML/XmlParser.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "shell/helpers/DebugSwitch.h"
#include "submissions/SubmissionDB.h"

namespace tb {

using Lines = std::vector<Text>;

class FakeFormats : public ClipboardFormats {
public:
    ClipboardFormat Register(const Text&) override { return --m_Last; }

private:
    ClipboardFormat m_Last = -16000;
};

class FakeQualifiers : public QualifiersView {
public:
    enum class End { OK, Cancel, Close };

    WindowExtent Extent(const QualifiersDialog&) override { return {4000, 3000}; }
    void ShowModal(QualifiersDialog& dialog, const WindowPosition& place) override {
        Captions.push_back(dialog.Caption());
        Places.push_back(place);
        if (Meanwhile) Meanwhile(dialog);
        if (How == End::OK) dialog.cmdOK(Left);
        if (How == End::Cancel) dialog.cmdCancel();
    }
    End How = End::OK;
    // Where the window stands when it is closed.
    WindowPosition Left{1234.5, 60};
    std::function<void(QualifiersDialog&)> Meanwhile;
    Lines Captions;
    std::vector<WindowPosition> Places;
};

// A stored message; a stream whose bytes are "FAIL" cannot be read.
struct StoredMessage : MessageStorage {
    explicit StoredMessage(std::map<Text, Text> streams = {}) : Streams(std::move(streams)) {}
    Text ClassIdText() override { return ClassId; }
    std::optional<Text> Stream(const Text& name) override {
        const auto found = Streams.find(name);
        if (found == Streams.end()) return std::nullopt;
        if (found->second == "FAIL") throw Error(ErrorNumber::DeviceIO);
        return found->second;
    }
    std::map<Text, Text> Streams;
    Text ClassId = "{00020D0B-0000-0000-C000-000000000046}";
};

class FakeDrop : public DropData, public NativeData {
public:
    std::map<ClipboardFormat, Text> Formats;
    Text Descriptor;
    std::vector<StoredMessage> Messages;

    bool Has(ClipboardFormat format) override { return Formats.count(format) > 0; }
    Text Bytes(ClipboardFormat format) override { return Formats[format]; }
    Text PlainText() override { return Formats[PlainTextFormat]; }
    NativeData* Native() override { return this; }
    Text DescriptorBytes() override { return Descriptor; }
    std::unique_ptr<MessageStorage> Storage(std::int32_t index) override {
        const auto number = static_cast<size_t>(index);
        return number < Messages.size() ? std::make_unique<StoredMessage>(Messages[number]) : nullptr;
    }
};

struct SubmissionRig {
    SubmissionRig() {
        SubmissionQueue(System.Files, "/app/Data").MakeFolders();
        Program.Settings =
            std::make_shared<xmlINI>(xmlINI::Surroundings{System.Files, System.Clock, System.Dialogs, {}, "Trawlbeam"});
        const auto global = [&](const Text& name, const Text& xml) {
            Program.Settings->SetGlobals(name, ParseXml(xml));
        };
        global("SERVERS", "<SERVERS><E NAME='SUBDBSVR'/><E NAME='SUBSTATSVR'/></SERVERS>");
        global("CATEGORIES",
               "<CATEGORIES><C ID='1' NAME='General' DESC='General'/><C ID='2' NAME='Bank' DESC='Bank spoof'/>"
               "<C ID='x' NAME='Odd'/></CATEGORIES>");
        Set("KEY", "AB-1");
        Start();
    }
    // A start of the program on what lies on the disk.
    void Start() {
        DB = std::make_shared<SubmissionDB>(SubmissionDB::Parts{{Program, Log, Web.Factory()}, Formats, Qualifiers});
        DB->LogMessage.Connect([this](const Text& line, LogLevel level) { Log.WriteLog(line, level); });
        DB->RedisplaySubmissions.Connect([this] { ++Redisplayed; });
        DB->Setup();
    }
    void Set(const Text& key, const Text& value) { Program.Settings->WriteXMLString("MAIN", key, value); }
    void SetDebug() { Set(DebugSwitch(), "1"); }

    void DropMail(const Text& mail) {
        FakeDrop drop;
        drop.Formats[DB->cfInternetMessage] = mail;
        DB->DoDrop(drop);
    }
    Text& File(const Text& name) { return System.Files.Contents["/app/Data/" + name]; }
    // A file of the queue.
    Text& Queued(const Text& name) { return File("InProcess/" + name); }
    // What stands in it behind the first line.
    Text Handed(const Text& name) { return Queued(name).substr(Queued(name).find("\r\n") + 2); }
    // Names in the queue, joined by blanks; those in the error folder behind "!".
    Text Queue() const {
        Text names;
        for (const auto& [path, content] : System.Files.Contents) {
            if (path.parent_path() == "/app/Data/InProcess") names += " " + path.filename().string();
            if (path.parent_path() == "/app/Data/InProcess/Error") names += " !" + path.filename().string();
        }
        return names.empty() ? names : names.substr(1);
    }
    // What `tell` says of each submission, in order.
    Lines Each(const std::function<Text()>& tell) {
        Lines told;
        for (std::int32_t index = 1; index <= DB->Count(); ++index) {
            DB->MoveToItem(index);
            told.push_back(tell());
        }
        return told;
    }
    Text PlainId() { return DB->DecryptSubID(DB->GetAttributeValue("ID")); }
    // The stored submissions: name, plain identifier, body, key.
    Lines Stored() {
        return Each([this] { return Join({DB->Name(), PlainId(), DB->Body(), DB->GetAttributeValue("UKey")}, "|"); });
    }
    Lines TakeShown() { return std::exchange(System.Dialogs.Shown, {}); }

    FakeSystem System;
    App Program{System, TestDeployment()};
    RecordedLog Log;
    FakeWeb Web;
    FakeFormats Formats;
    FakeQualifiers Qualifiers;
    std::shared_ptr<SubmissionDB> DB;
    int Redisplayed = 0;
};

}  // namespace tb
