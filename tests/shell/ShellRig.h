// The program around the controller, without Windows: fakes, the start chain, and what later parts would answer.
#pragma once

#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/FakeSound.h"
#include "fakes/FakeTrayIcon.h"
#include "shell/Start.h"

namespace tb {

// Notes what it is asked, in order.
class RecordedServices : public ControllerServices {
public:
    void Asked(const FakeWeb::Request& request) {
        Did("update " + request.Key);
        if (OnUpdate) OnUpdate();
    }
    bool SendVersions() override {
        Did("versions");
        if (OnVersions) OnVersions();
        return ReportsTaken;
    }
    bool CanUpdate(Text& reason) override {
        reason = Reason;
        return Reason.empty();
    }
    void CheckForUpdates() override { Did("program update"); }
    void ProcessSubmissions() override {
        Did("submissions");
        if (OnSubmissions) OnSubmissions();
    }
    bool ShowMainPanel(std::int16_t panel) override {
        Did("panel " + std::to_string(panel));
        return HasWindows;
    }
    void CloseMainWindow() override { Did("close main"); }
    bool ToggleDropZone(bool& visible) override {
        visible = DropZone = !DropZone;
        return HasWindows;
    }
    void CloseDropZone() override { Did("close drop zone"); }
    bool ShowAbout() override { return HasWindows; }
    void DropSubmissions() override { Did("drop"); }
    void CloseNotifications() override { Did("close notifications"); }
    void ShowProgress(std::int16_t percent) override { Did("progress " + std::to_string(percent)); }

    void Did(const Text& what) { Done.push_back(what); }
    std::vector<Text> Take() { return std::exchange(Done, {}); }

    std::vector<Text> Done;
    std::function<void()> OnUpdate;
    std::function<void()> OnVersions;
    std::function<void()> OnSubmissions;
    Text Reason = "not now";
    bool ReportsTaken = false;
    bool HasWindows = false;
    bool DropZone = true;
};

class RecordedGates : public StartGates {
public:
    bool CheckLoadDefaults() override {
        if (OnDefaults) OnDefaults();
        return Pass("defaults");
    }
    bool CheckInstallPendingUpdates() override { return Pass("pending"); }
    bool CheckName() override { return Pass("name"); }
    bool CheckUpdaterRunning() override { return Pass("updater"); }
    bool CheckForMissingComponents() override { return Pass("missing"); }
    bool CheckExpireOrWarnVersion() override { return Pass("version"); }
    bool CheckLoadReferenceData() override { return Pass("reference"); }
    void AddComponents() override { Pass("components"); }
    void ShowSplash() override { Pass("splash"); }
    void CloseSplash() override { Pass("close splash"); }
    void SetupBrowserHelper() override { Pass("helper"); }
    void SetupTrawlDrop() override { Pass("drop zone"); }

    bool Pass(const Text& gate) {
        Passed.push_back(gate);
        if (OnGate) OnGate(gate);
        if (gate == Throws) throw RuntimeError(5, "planted");
        return gate == Stops;
    }

    std::function<void()> OnDefaults;
    std::function<void(const Text& gate)> OnGate;
    std::vector<Text> Passed;
    Text Stops;
    Text Throws;
};

struct ShellRig {
    explicit ShellRig(const Text& settings = {}, const Deployment& product = TestDeployment())
        : Program{System, product} {
        if (!settings.empty()) {
            System.Files.Contents["/app/Trawlbeam.ini"] =
                "<INI DATE='01/01/2026 00:00:00'>\r\n" + settings + "</INI>\r\n";
        }
        Gates.OnDefaults = [this] {
            Document servers;
            servers.LoadXML("<SERVERS NAME='SERVERS'><ELEMENT NAME='EVILDBSVR'/></SERVERS>");
            Program.Settings->ReplaceGlobals("SERVERS", servers.Root());
        };
        Web.Meanwhile = [this](const FakeWeb::Request& request) { Services.Asked(request); };
        Chain = std::make_unique<Start>(Program, Log, Gates, [this] {
            auto made = std::make_shared<frmController>(
                Windows, frmController::Parts{Program, Log, Services, Tables, Web.Factory(), Tray, Device,
                                              [this](const Text& line) { Log.WriteLog(line, LogLevel::Always); }});
            if (OnMade) OnMade(*made);
            return made;
        });
    }
    static Text Section(const Text& name, const Text& key, const Text& value) {
        return "<SECTION name='" + name + "'>\r\n<ELEMENT NAME='" + key + "'>" + value + "</ELEMENT>\r\n</SECTION>\r\n";
    }
    frmController& Controller() { return *Chain->Controller(); }

    FakeSystem System;
    App Program;
    ProgramLog Log{Program};
    Forms Windows;
    FakeTrayIcon Tray;
    FakeSound Device;
    RecordedServices Services;
    SiteTables Tables{Program};
    FakeWeb Web;
    RecordedGates Gates;
    std::function<void(frmController&)> OnMade;
    std::unique_ptr<Start> Chain;
};

}  // namespace tb
