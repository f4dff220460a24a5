// Settings over files in memory, a clock that stands, and message boxes that are kept.
#pragma once

#include <utility>

#include "fakes/FakePlatform.h"
#include "ui/settings/xmlINI.h"

namespace tb {

struct SettingsRig {
    static constexpr const char* File = "app/Trawlbeam.ini";

    FakeFiles Storage;
    FakeClock Time;
    FakeDialogs Messages;
    DateSeparators Separators;

    SettingsRig() {
        Storage.Folders = {"app"};
        Time.Present = Date(CivilDate{2026, 11, 21, 10, 11, 12});
    }

    xmlINI Make() { return xmlINI({Storage, Time, Messages, Separators, "Trawlbeam"}); }
    // Settings that have loaded `content`.
    xmlINI Loaded(const Text& content) {
        Storage.Contents[File] = content;
        xmlINI settings = Make();
        settings.LoadINI(File);
        return settings;
    }
    Text& Content() { return Storage.Contents[File]; }
    // What came since the last call, "buttons|title|prompt".
    std::vector<Text> Shown() { return std::exchange(Messages.Shown, {}); }
};

}  // namespace tb
