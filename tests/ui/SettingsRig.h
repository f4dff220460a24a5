// Settings over files in memory, a clock that stands, and message boxes that are kept.
#pragma once

#include "fakes/FakeFiles.h"
#include "ui/settings/xmlINI.h"

namespace tb {

class StandingClock : public Clock {
public:
    Date Moment{CivilDate{2026, 11, 21, 10, 11, 12}};
    Date Now() override { return Moment; }
};

class KeptDialogs : public Dialogs {
public:
    // "buttons title: prompt".
    std::vector<Text> Shown;
    std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons, const Text& title) override {
        Shown.push_back(std::to_string(buttons) + " " + title + ": " + prompt);
        return 1;
    }
    std::vector<Text> Take() {
        std::vector<Text> shown;
        shown.swap(Shown);
        return shown;
    }
};

struct SettingsRig {
    static constexpr const char* File = "app/Trawlbeam.ini";

    FakeFiles Storage;
    StandingClock Time;
    KeptDialogs Messages;
    DateSeparators Separators;

    SettingsRig() { Storage.Folders = {"app"}; }

    xmlINI Make() { return xmlINI({Storage, Time, Messages, Separators, "Trawlbeam"}); }
    // Settings that have loaded `content`.
    xmlINI Loaded(const Text& content) {
        Storage.Contents[File] = content;
        xmlINI settings = Make();
        settings.LoadINI(File);
        return settings;
    }
    Text& Content() { return Storage.Contents[File]; }
};

}  // namespace tb
