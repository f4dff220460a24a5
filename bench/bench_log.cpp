// What a debug line costs while debug mode is off, against one verdict of the same run: the line alone, which is the
// test of its level in the program's own log with settings present, and the line with the composing of its text, as the
// verdict does it for each request. The last lines give the shares of the verdict.
#include <cstdio>

#include "bench/ListedSites.h"
#include "bench/MedianReporter.h"
#include "fakes/FakePlatform.h"
#include "shell/helpers/ProgramLog.h"
#include "urlcheck/StandaloneVerdictHost.h"

namespace {

using tb::Text;

// Answers with the program's settings and log, as the controller does.
class SettingsHost : public tb::StandaloneVerdictHost {
public:
    SettingsHost(tb::App& app, tb::ProgramLog& log) : StandaloneVerdictHost(log), m_App(app), m_Log(log) {}
    Text GetXMLString(const Text& section, const Text& key, const Text& fallback) override {
        return m_App.Settings->GetXMLString(section, key, fallback);
    }
    bool IsDebugMode() override { return m_Log.IsDebugMode(); }

private:
    tb::App& m_App;
    tb::ProgramLog& m_Log;
};

struct World {
    World() {
        Program.Settings = std::make_unique<tb::xmlINI>(
            tb::xmlINI::Surroundings{System.Files, System.Clock, System.Dialogs, {}, "Trawlbeam"});
        Program.Settings->LoadINI("/app/Trawlbeam.ini");
        for (const char* key : {"Sound", "AlertSound", "Splash"}) Program.Settings->WriteXMLString("Main", key, "1");
        tb::FillList(EvilDB);
    }

    tb::FakeSystem System;
    tb::App Program{System, tb::TestDeployment()};
    tb::ProgramLog Log{Program};
    SettingsHost Host{Program, Log};
    std::shared_ptr<tb::EvilDB> List = std::make_shared<tb::EvilDB>(System.Files, Host, std::filesystem::path());
    tb::EvilDB& EvilDB = *List;
    tb::UrlVerdict Verdict{List, Host};
};

World& TheWorld() {
    static World world;
    return world;
}

void Verdict(benchmark::State& state, const Text& kind) { tb::RunChecks(state, TheWorld().Verdict, kind); }

void SkippedLine(benchmark::State& state, const Text& /*kind*/) {
    tb::LogSink& log = TheWorld().Log;
    const Text line = "Checking: http://www.harmless.example/news/today.html (OK)";
    for (auto _ : state) log.WriteLog(line, tb::LogLevel::Debug);
}

void ComposedLine(benchmark::State& state, const Text& kind) {
    tb::LogSink& log = TheWorld().Log;
    const std::vector<Text> urls = tb::UrlsOf(kind);
    const Text result = "OK";
    size_t next = 0;
    for (auto _ : state) {
        const Text& url = urls[next++ % urls.size()];
        log.WriteLog("Checking: " + url + " (" + tb::RemoveAll(result, "\r\n") + ")", tb::LogLevel::Debug);
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    // The URLs whose line is a debug line: those that pass.
    const std::vector<Text> kinds{"misses", "long"};
    for (const Text& kind : kinds) {
        tb::Register("verdict", kind, &Verdict);
        tb::Register("skipped line", kind, &SkippedLine);
        tb::Register("composed line", kind, &ComposedLine);
    }
    tb::MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\ndebug mode off    verdict ns   skipped line ns   share   composed first ns   share\n");
    for (const Text& kind : kinds) {
        const double verdict = reporter.Median("verdict/" + kind);
        const double skipped = reporter.Median("skipped line/" + kind);
        const double composed = reporter.Median("composed line/" + kind);
        std::printf("%-16s %11.0f %17.2f %6.2f%% %19.1f %6.2f%%\n", kind.c_str(), verdict, skipped,
                    100 * skipped / verdict, composed, 100 * composed / verdict);
    }
    if (!TheWorld().System.TakeLog().empty()) std::printf("a debug line was written: the figures are worthless\n");
}
