#include "ui/settings/SettingsTable.h"

namespace tb {

namespace {

constexpr TextView OptionsPage = "options panel";
constexpr TextView Preferences = "the preferences panel";
constexpr TextView Development = "the development panel";

using Table = std::vector<Setting>;

void AddMain(Table& table) {
    const SettingReader shown{OptionsPage, ""};
    table.push_back({"Main",
                     "AutoTrimSubDays",
                     "age from which submissions leave the store: \"Never\", \"60 Days\", \"120 Days\" or \"240 Days\"",
                     {{"submission store, at load", "Never"}, shown},
                     Preferences,
                     "Never"});
    table.push_back({"Main",
                     "ConfirmSubmission",
                     "whether submitting shows its thanks; \"0\" in debug mode also lets several URLs through at once",
                     {{"submitting a URL, at its beginning", "1"},
                      {"submitting a URL, before it names earlier submissions", "0"},
                      {"sending submissions", "0"},
                      shown},
                     Preferences,
                     "1"});
    table.push_back({"Main",
                     "AutoUpdate",
                     "whether the update cycle looks for program updates",
                     {{"update cycle", "0"}, shown},
                     Preferences,
                     "1"});
    table.push_back(
        {"Main", "Sound", "sound of clicks and other actions", {{"action sounds", "0"}, shown}, Preferences});
    table.push_back({"Main", "AlertSound", "sound when a URL is blocked", {{"verdict", "0"}, shown}, Preferences});
    table.push_back({"Main", "Splash", "splash window at start", {{"start", "0"}, shown}, Preferences});
    table.push_back({"Main",
                     "CountryPopup",
                     "window that tells a URL's country and score; in debug mode only",
                     {{"verdict, in debug mode", "1"}, shown},
                     Preferences});
    table.push_back({"Main", "Country", "the home country of the URL score", {{"URL score", ""}}, ""});
    table.push_back({"Main",
                     "KEY",
                     "the client identifier that web requests carry",
                     {{"site list, submissions, updates, version report, web panel", ""}},
                     ""});
    table.push_back({"Main",
                     "BackColor",
                     "background colour of windows without a skin, decimal, red lowest",
                     {{"start", "14737632"}},
                     "the colour picker"});
    table.push_back({"Main", "Slider", "place of the colour picker's slider", {}, "the colour picker"});
    table.push_back({"Main",
                     "LastTop",
                     "top of the main window, twips",
                     {{"main window, when it opens", "centred", true}},
                     "the main window, when it closes"});
    table.push_back({"Main",
                     "LastLeft",
                     "left of the main window, twips",
                     {{"main window, when it opens", "centred", true}},
                     "the main window, when it closes"});
    table.push_back({"Main",
                     "MinFreeMem",
                     "lower bound of the working set, bytes; 0 in both leaves the memory alone",
                     {{"memory trimming", "value of the defaults data, else 3145728", true}},
                     ""});
    table.push_back({"Main",
                     "MaxFreeMem",
                     "upper bound of the working set, bytes",
                     {{"memory trimming", "value of the defaults data, else 6291456", true}},
                     ""});
    table.push_back({"Main",
                     "BlockSendSubmission",
                     "any value but \"0\" asks before each submission is sent",
                     {{"sending submissions", "0"}, shown},
                     Development});
    table.push_back({"Main",
                     "TestVersion",
                     "folder of a test version on the update server; empty for the released one",
                     {{"update download", ""}, shown},
                     Development});
    table.push_back(
        {"Main",
         "LastUpdateDate",
         "last check for updates, MM/DD/YYYY HH:MM:SS",
         {{"whether a check is due", "a day before now", true}, {"update check, for its log line", ""}, shown},
         "the update check, the development panel"});
    table.push_back({"Main",
                     "LastUpdateVersion",
                     "version that the last check found",
                     {{"update check", "0"}, shown},
                     "the update check, the development panel"});
    table.push_back({"Main",
                     "",
                     "the debug switch: any value but \"0\" turns debug mode on. Its key is told to operators only",
                     {{"log, and all that shows or does more in debug mode", "0"}},
                     ""});
}

void AddDesktop(Table& table) {
    const SettingReader shown{OptionsPage, ""};
    table.push_back({"Desktop",
                     "Show",
                     "whether the drop zone is on the desktop",
                     {{"start", "1"}, {"tray menu", "1"}, {"exit, before it stores the drop zone's place", "1"}, shown},
                     Preferences,
                     "1"});
    table.push_back({"Desktop",
                     "AlwaysOnTop",
                     "whether the drop zone stays above other windows",
                     {{"start", "1"}, shown},
                     Preferences,
                     "1"});
    table.push_back({"Desktop",
                     "Size",
                     "size of the drop zone: \"Small\", \"Medium\" or \"Large\"; any other text is Small",
                     {{"start", "Large"}, {"development panel, when cancelled", "Large"}, shown},
                     Development,
                     "Large"});
    table.push_back({"Desktop",
                     "Translucent",
                     "how opaque the drop zone is, per cent, \"30\" to \"100\"",
                     {{"start", "80"}, {"development panel, when cancelled", "80"}, shown},
                     Development});
    table.push_back({"Desktop",
                     "LastTop",
                     "top of the drop zone, twips",
                     {{"start", "screen height less 1.5 drop zones", true}},
                     "the exit"});
    table.push_back({"Desktop",
                     "LastLeft",
                     "left of the drop zone, twips",
                     {{"start", "screen width less 1.5 drop zones", true}},
                     "the exit"});
}

void AddBrowserHelper(Table& table) {
    const SettingReader shown{OptionsPage, ""};
    table.push_back({"BHO",
                     "REGBHO",
                     "\"1\" keeps the browser helper's registry key in place, another value removes it",
                     {{"browser helper key", "1"}, shown},
                     Development});
    table.push_back({"BHO",
                     "CHECKEVIL",
                     "\"0\" switches the browser helper's URL check off",
                     {{"browser helper's settings file", ""}, shown},
                     Development});
    table.push_back({"BHO",
                     "ERRORMESSAGES",
                     "\"1\" lets the browser helper show its errors",
                     {{"browser helper's settings file", ""}, shown},
                     Development});
    table.push_back({"BHO",
                     "AUTOLAUNCH",
                     "the browser helper's own flag, \"1\" or \"0\", taken over from its settings file",
                     {},
                     "the start"});
}

void AddTimers(Table& table) {
    table.push_back({"TIMERS", "SUBDB_ENABLED", "whether the submission timer runs", {{"submission timer", "1"}}, ""});
    table.push_back({"TIMERS",
                     "SUBDB_INTERVAL",
                     "seconds between submission runs; -1 counts as missing",
                     {{"submission timer", "value of the defaults data, else 60", true}},
                     ""});
    table.push_back({"TIMERS",
                     "EVILDB_ENABLED",
                     "whether the update cycle runs, and with it the tries for defaults that the start did not get",
                     {{"update timer, at each cycle", "1"}},
                     ""});
    table.push_back(
        {"TIMERS",
         "EVILDB_INTERVAL",
         "seconds between update cycles; -1 counts as missing",
         {{"update timer, at start and when defaults come late", "value of the defaults data, else 60", true}},
         ""});
    table.push_back(
        {"TIMERS", "FREEMEM_ENABLED", "whether memory is trimmed by time", {{"update timer, at each trim", "1"}}, ""});
    table.push_back(
        {"TIMERS",
         "FREEMEM_INTERVAL",
         "seconds between trims; -1 counts as missing",
         {{"update timer, at start and when defaults come late", "value of the defaults data, else 1800", true}},
         ""});
}

void AddSubmissionDialog(Table& table) {
    constexpr TextView dialog = "the submission dialog";
    table.push_back({"SubCat",
                     "LastCategoryID",
                     "category that the submission dialog offers",
                     {{"submission dialog", "2"}},
                     dialog});
    table.push_back({"SubCat",
                     "LastConfidenceID",
                     "confidence that the submission dialog offers, 0 to 4",
                     {{"submission dialog", "3"}},
                     dialog});
    table.push_back(
        {"SubCat", "LastTop", "top of the submission dialog, twips", {{"submission dialog", "centred", true}}, dialog});
    table.push_back({"SubCat",
                     "LastLeft",
                     "left of the submission dialog, twips",
                     {{"submission dialog", "centred", true}},
                     dialog});
}

Table MakeTable() {
    Table table;
    AddMain(table);
    AddDesktop(table);
    AddBrowserHelper(table);
    AddTimers(table);
    AddSubmissionDialog(table);
    return table;
}

void AppendCode(Text& page, TextView text) {
    if (text.empty()) {
        page += "empty";
    } else {
        page += '`';
        page += text;
        page += '`';
    }
}

void AppendReaders(Text& page, const std::vector<SettingReader>& readers) {
    if (readers.empty()) page += "nobody";
    TextView separator;
    for (const SettingReader& reader : readers) {
        page += separator;
        page += reader.Who;
        page += ": ";
        if (reader.Described) {
            page += reader.Default;
        } else {
            AppendCode(page, reader.Default);
        }
        separator = "; ";
    }
}

void AppendRow(Text& page, const Setting& setting) {
    page += "| ";
    if (setting.Key.empty()) {
        page += "(hidden)";
    } else {
        AppendCode(page, setting.Key);
    }
    page += " | ";
    page += setting.Meaning;
    page += " | ";
    AppendReaders(page, setting.Readers);
    page += " | ";
    page += setting.Writers.empty() ? "nobody" : setting.Writers;
    page += " | ";
    if (!setting.StartValue.empty()) AppendCode(page, setting.StartValue);
    page += " |\n";
}

}  // namespace

const std::vector<Setting>& SettingsTable() {
    static const Table table = MakeTable();
    return table;
}

Text SettingsMarkdown() {
    Text text =
        "# Settings\n\n"
        "Made from `src/ui/settings/SettingsTable.cpp`; do not edit. `TRAWLBEAM_WRITE_DOCS=1` in the environment of "
        "the\n"
        "test `settings_test` writes this page anew.\n\n"
        "Settings are texts by section and key, in the file that [the settings file](formats/settings-file.md)\n"
        "describes. Sections and keys are found without regard to case. Flags are `1` and `0`; only `1` is on where\n"
        "nothing else is said. A missing value and an empty one are the same, and whoever reads it says what it then\n"
        "counts as: the column \"read by\" gives that default behind each reader. The column \"at start\" gives what\n"
        "each start fills in, in memory, while the value is missing or empty. Nothing reaches the file before the "
        "next\n"
        "save: OK on a panel of options, an update check, the exit.\n";
    TextView section;
    for (const Setting& setting : SettingsTable()) {
        if (setting.Section != section) {
            section = setting.Section;
            text += "\n## ";
            text += section;
            text += "\n\n| key | what it is | read by: default | written by | at start |\n";
            text += "| --- | --- | --- | --- | --- |\n";
        }
        AppendRow(text, setting);
    }
    return text;
}

}  // namespace tb
