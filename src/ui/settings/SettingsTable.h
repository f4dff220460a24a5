// Every setting that the program knows, in one table. docs/settings.md is made of it.
#pragma once

#include <vector>

#include "base/text.h"

namespace tb {

// One place that reads a setting.
struct SettingReader {
    TextView Who;
    // What a missing or empty value counts as here.
    TextView Default;
    // The default is found out while the program runs, and `Default` is a description of it.
    bool Described = false;
};

struct Setting {
    // Sections and keys are found without regard to case; these are the spellings to write.
    TextView Section;
    // Empty for the one whose key no file of the program may hold whole.
    TextView Key;
    TextView Meaning;
    std::vector<SettingReader> Readers;
    // Who writes it, apart from a person with an editor; empty for nobody.
    TextView Writers;
    // What each start of the program writes into the settings held in memory while the value is missing or empty; empty
    // for nothing.
    TextView StartValue = {};
};

// By section; inside a section those with a start value stand in the order in which a start writes them.
const std::vector<Setting>& SettingsTable();

// The whole of docs/settings.md, with plain line feeds.
Text SettingsMarkdown();

}  // namespace tb
