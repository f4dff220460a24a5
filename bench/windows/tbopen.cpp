// tbopen SKIN.xml: prints how long a window with 20 pictures takes from its making to its first paint, in milliseconds:
// the median of many, with the skin and, in turns with it, without any. Needs a display.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "components/tbXML/XmlParser.h"
#include "fakes/FakePlatform.h"
#include "fakes/RecordedLog.h"
#include "platform/win32/MessageLoop.h"
#include "platform/win32/Win32Files.h"
#include "ui/skin/tbSkin.h"
#include "ui/window/Label.h"
#include "ui/window/win32/Win32WindowSystem.h"

namespace {

using namespace tb;
using Stopwatch = std::chrono::steady_clock;

constexpr size_t Rounds = 101;
constexpr int Pictures = 20;
constexpr const char* WindowName = "frmTrawlMain";

// The main window of the skin, with that many of its logo on the ground.
ElementPtr SkinWithPictures(const char* file) {
    Win32Files disk;
    const ElementPtr skin = ParseXml(ReadWholeFile(disk, file));
    const ElementPtr logo = skin->FindElementAttribute2("Name", "Globals")->FindElementAttribute2("Name", "TrawlLogo");
    Text graphics = "<Graphics>";
    for (int index = 0; index < Pictures; ++index) {
        graphics += "<Image Left='" + std::to_string(150 + index % 5 * 1500) + "' Top='" +
                    std::to_string(900 + index / 5 * 1200) + "'>" + logo->Body() + "</Image>";
    }
    skin->FindElementAttribute2("Name", WindowName)->AddElement(ParseXml(graphics + "</Graphics>"));
    return skin;
}

struct Bench {
    // From the making of the window to the return from what paints it; it is gone afterwards.
    double Open(const ElementPtr& skin) {
        Program.SkinRoot = skin;
        const auto begun = Stopwatch::now();
        Form form(Family, WindowName);
        auto& bar = form.AddWith<tbSkin>("tbSkin1", Program, Log);
        form.LoadEvent.Connect([&] {
            bar.DressWindow();
            bar.SetCaption("Trawlbeam");
        });
        form.Move(0, 0, 9600, 6900);
        form.Show();
        ServeWaitingMessages();
        const double took = std::chrono::duration<double, std::milli>(Stopwatch::now() - begun).count();
        form.Unload();
        return took;
    }

    FakeSystem System;
    App Program{System, TestDeployment()};
    RecordedLog Log;
    Win32WindowSystem Windows{{"TestForm", "TestBox"}, [](const RuntimeError& error) { throw error; }};
    Forms Family{&Windows};
};

double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void Measure(const char* file) {
    Bench bench;
    const ElementPtr skin = SkinWithPictures(file);
    std::vector<double> dressed;
    std::vector<double> plain;
    for (size_t round = 0; round < Rounds; ++round) {
        dressed.push_back(bench.Open(skin));
        plain.push_back(bench.Open(nullptr));
    }
    if (!bench.Log.Lines.empty()) throw std::runtime_error(bench.Log.Lines.front());
    std::printf("first_ms=%.1f dressed_ms=%.1f plain_ms=%.1f\n", dressed.front(), Median(dressed), Median(plain));
}

}  // namespace

int main(int count, char** words) {
    int status = 0;
    tb::Trap(
        [&] {
            if (count != 2) throw std::runtime_error("usage: tbopen SKIN.xml");
            Measure(words[1]);
        },
        [&](const tb::RuntimeError& error) {
            std::fprintf(stderr, "tbopen: %s\n", error.Line().c_str());
            status = 1;
        });
    return status;
}
