// The program around the controller, without Windows: fakes below it, windows above it that note what they are asked,
// and in between an installation on which every gate of the start lets it pass.
#pragma once

#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/FakeSound.h"
#include "fakes/FakeTrayIcon.h"
#include "shell/Start.h"
#include "shell/helpers/Messages.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

using Lines = std::vector<Text>;

// Notes what it is asked, in order.
class RecordedWindows : public ProgramWindows, private QualifiersView, private MessageBoxes {
public:
    MessageBoxes* Messages() override { return HasMessages ? this : nullptr; }
    void ShowSplash() override { Did("splash"); }
    void ShowProgress(std::int16_t percent) override { Did("progress " + std::to_string(percent)); }
    void CloseSplash() override { Did("close splash"); }
    void SetupBrowserHelper() override { Did("helper"); }
    void SetupTrawlDrop() override { Did("drop zone"); }
    bool ShowMainPanel(std::int16_t panel) override {
        Did("panel " + std::to_string(panel));
        return HasWindows;
    }
    bool ToggleDropZone(bool& visible) override {
        visible = DropZone = !DropZone;
        return HasWindows;
    }
    bool ShowAbout() override { return HasWindows; }
    bool AllowInWindow(const Text& url) override {
        if (HasWindows) Did("allow " + url);
        return HasWindows;
    }
    QualifiersView& Qualifiers() override { return *this; }
    void CloseMainWindow() override { Did("close main"); }
    void CloseDropZone() override { Did("close drop zone"); }
    void CloseAbout() override { Did("close about"); }
    void CloseNotifications() override { Did("close notifications"); }

    void Did(const Text& what) {
        Done.push_back(what);
        if (OnCall) OnCall(what);
    }
    Lines Take() { return std::exchange(Done, {}); }

    Lines Done;
    std::function<void(const Text& what)> OnCall;
    bool HasWindows = false;
    bool HasMessages = false;
    bool DropZone = true;

private:
    WindowExtent Extent(const QualifiersDialog&) override { return {}; }
    void ShowModal(QualifiersDialog&, const WindowPosition&) override {}
    std::int32_t Show(const Message& message) override {
        Did("message " + std::to_string(message.Buttons) + "|" + message.Title + "|" + message.Prompt + "|" +
            message.HelpFile + std::to_string(message.Context));
        return AnswerYes;
    }
};

struct NoFormats : ClipboardFormats {
    ClipboardFormat Register(const Text& /*name*/) override { return 0; }
};

struct ShellRig {
    explicit ShellRig(const Text& settings = {}, const Deployment& product = TestDeployment())
        : Program{System, product} {
        if (!settings.empty()) {
            System.Files.Contents["/app/Trawlbeam.ini"] =
                "<INI DATE='01/01/2026 00:00:00'>\r\n" + settings + "</INI>\r\n";
        }
        for (const Text name : {"Trawlbeam.exe", "Trawlbeam.chm", "tbUpdater.exe", "MBListEx.ocx", "tbXML.dll",
                                "tbSender.dll", "tbDTab6.ocx", "TrawlbeamHelper.dll", "tbBHOCfg.dll", "tbBHBridge.dll"})
            System.Files.Contents["/app/" + name] = "x";
        System.Files.Contents[DefaultsFile] = Defaults({});
        System.Files.Contents[ReferenceFile] = EncryptStringChk(
            "<B><CATEGORIES><C ID='2' NAME='Spoof'/></CATEGORIES><SUBMISSIONS/><DISPOSITIONS/>"
            "<COUNTRIES/></B>");
        Web.Meanwhile = [this](const FakeWeb::Request& request) {
            if (OnRequest) OnRequest(request.Operation + " " + request.Page);
        };
        Use(Windows);
    }
    // Starts with these windows.
    void Use(ProgramWindows& windows) {
        Chain = std::make_unique<Start>(Access, Log, Tables, windows, [this, &windows] {
            auto made = std::make_shared<frmController>(
                Family, frmController::Parts{Access, Log, windows, Tables, Formats, Tray, Device,
                                             [this](const Text& line) { Log.WriteLog(line, LogLevel::Always); }});
            if (OnMade) OnMade(*made);
            return made;
        });
    }
    static Text Section(const Text& name, const Text& key, const Text& value) {
        return "<SECTION name='" + name + "'>\r\n<ELEMENT NAME='" + key + "'>" + value + "</ELEMENT>\r\n</SECTION>\r\n";
    }
    static Text Group(const Text& name, const Text& content) { return "<G NAME='" + name + "'>" + content + "</G>"; }
    // The defaults data with the servers of these services and further groups.
    static Text Defaults(const Text& groups,
                         const Lines& services = {"EVILDBSVR", "ReferenceSVR", "VersionsSVR", "UpdatesSVR"}) {
        Text servers;
        for (const Text& name : services) servers += "<E NAME='" + name + "'/>";
        return EncryptStringChk("<D>" + Group("SERVERS", servers) + groups + "</D>");
    }
    frmController& Controller() { return *Chain->Controller(); }
    // What was asked of the web since the last time, each with its key.
    Lines Asked() {
        Lines asked;
        for (const FakeWeb::Request& request : std::exchange(Web.Requests, {}))
            asked.push_back(request.Operation + " " + request.Page + (request.Key.empty() ? "" : " " + request.Key));
        return asked;
    }

    static constexpr const char* DefaultsFile = "/app/Data/defaults.bin";
    static constexpr const char* ReferenceFile = "/app/Data/reference.bin";

    FakeSystem System;
    App Program;
    ProgramLog Log{Program};
    Forms Family;
    FakeTrayIcon Tray;
    FakeSound Device;
    NoFormats Formats;
    RecordedWindows Windows;
    SiteTables Tables{Program};
    FakeWeb Web;
    const ServiceAccess Access{Program, Log, Web.Factory()};
    std::function<void(const Text& request)> OnRequest;
    std::function<void(frmController&)> OnMade;
    std::unique_ptr<Start> Chain;
};

}  // namespace tb
