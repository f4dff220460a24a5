// The browser helper: what it lets pass and blocks, and the file of its configuration.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>

#include "base/bytes.h"
#include "components/TrawlbeamHelper/PageCheck.h"
#include "components/tbBHOCfg/BHOSettings.h"
#include "fakes/FakeFiles.h"
#include "fakes/Raised.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {
namespace {

struct FakeServices : HelperServices {
    HelperOptions Options() override { return Given; }
    bool Reachable() override {
        if (Broken) throw RuntimeError(429, "no bridge");
        return Runs;
    }
    Text Addresses(const Text& host) override {
        Asked += host + ' ';
        return Known;
    }
    std::optional<Text> Ask(const Text& fields) override {
        Asked += fields;
        return Reply;
    }
    void Show(const Text& title, const Text& message) noexcept override {
        Shown.push_back(title + ": " + message);
        if (WhileShown) WhileShown();
    }

    HelperOptions Given;
    bool Runs = true;
    bool Broken = false;
    Text Known = "192.0.2.1 192.0.2.2";
    std::optional<Text> Reply = "Validated: x";
    Text Asked;
    std::vector<Text> Shown;
    std::function<void()> WhileShown;
};

TEST(PageCheck, AsksForWebPagesWithTheirAddresses) {
    const std::pair<Text, Text> cases[] = {
        {"http://a.example/x?y", "a.example Check\thttp://a.example/x?y\t192.0.2.1 192.0.2.2"},
        {"HTTPS://u:p@a.example:8443", "a.example Check\tHTTPS://u:p@a.example:8443\t192.0.2.1 192.0.2.2"},
        {"http://a.ex\tam\r\nple#b", "a.example Check\thttp://a.example#b\t192.0.2.1 192.0.2.2"},
        {"http://[::1]/", "Check\thttp://[::1]/"},
        {"http:", "Check\thttp:"},
        {"ftp://a.example/", ""},
        {"httpx://a.example/", ""},
        {"", ""},
    };
    for (const auto& [url, asked] : cases) {
        FakeServices services;
        EXPECT_EQ(PageCheck(services).MustBlock(url), !asked.empty()) << url;
        EXPECT_EQ(services.Asked, asked);
    }
    FakeServices services;
    services.Known.clear();
    PageCheck(services).MustBlock("http://a.example");
    EXPECT_EQ(services.Asked, "a.example Check\thttp://a.example");
}

TEST(PageCheck, BlocksOnlyWhatTheProgramNames) {
    // What is unlike, whether the page is blocked, and the boxes after one page and after another.
    const std::tuple<std::function<void(FakeServices&)>, bool, std::size_t, std::size_t> cases[] = {
        {[](FakeServices&) {}, true, 1, 2},
        {[](FakeServices& world) { world.Given.ShowAlert = false; }, true, 0, 0},
        {[](FakeServices& world) { world.Reply = "OK"; }, false, 0, 0},
        {[](FakeServices& world) { world.Reply = ""; }, false, 0, 0},
        {[](FakeServices& world) { world.Reply.reset(); }, false, 0, 0},
        {[](FakeServices& world) { world.Given.CheckOff = true; }, false, 0, 0},
        {[](FakeServices& world) { world.Runs = false; }, false, 0, 0},
        {[](FakeServices& world) { world.Broken = true; }, false, 0, 0},
        {[](FakeServices& world) { world.Broken = world.Given.Messages = true; }, false, 1, 1},
    };
    for (const auto& [change, blocked, boxes, boxesAfterTwo] : cases) {
        FakeServices services;
        change(services);
        PageCheck check(services);
        EXPECT_EQ(check.MustBlock("http://a.example"), blocked);
        EXPECT_EQ(services.Shown.size(), boxes);
        check.MustBlock("http://a.example");
        EXPECT_EQ(services.Shown.size(), boxesAfterTwo);
    }
}

TEST(PageCheck, TellsTheReasonAndOneAtATime) {
    FakeServices services;
    services.Given.Title = "Name";
    PageCheck check(services);
    bool inner = false;
    services.WhileShown = [&] { inner = check.MustBlock("http://frame.example"); };
    EXPECT_TRUE(check.MustBlock("http://a.example/" + Text(300, 'x')));
    services.WhileShown = nullptr;
    EXPECT_TRUE(inner) << "a frame of the page under the box";
    // It is shown up to 120 characters.
    check.MustBlock("http://a.example/" + Text(103, 'x'));
    const Text shown =
        "Name: This page was blocked, because it is known as malicious:\r\nhttp://a.example/" + Text(103, 'x');
    EXPECT_EQ(services.Shown, (std::vector<Text>{shown + "...\r\n\r\nValidated: x", shown + "\r\n\r\nValidated: x"}));
}

const std::filesystem::path File = "/p/TB.BIN";
constexpr std::int32_t Damaged = 321;
constexpr std::size_t HeaderSize = 14;

BHOSettings Sample() {
    BHOSettings settings;
    settings.Set(BHOSection::Options, 0, "checkoff", "1");
    settings.Set(BHOSection::Product, 0, "ProductName", "Trawl\xe9");
    settings.Set(BHOSection::Alert, 0, "FormTopInterval", "30");
    settings.Add(BHOSection::Graphics);
    settings.Set(BHOSection::Graphics, settings.Add(BHOSection::Graphics), "Text", Text("a\0b", 3));
    settings.Set(BHOSection::Components, settings.Add(BHOSection::Components), "ToolTip", "t");
    settings.Set(BHOSection::Strings, settings.Add(BHOSection::Strings), "Name", "Why");
    return settings;
}

Text Saved(const BHOSettings& settings) {
    FakeFiles files;
    files.Folders = {"/p"};
    settings.Save(files, File);
    return files.Contents[File];
}

// The number that loading the bytes raises, and then the settings must be what they were.
std::int32_t Load(const Text& bytes, BHOSettings& settings) {
    FakeFiles files;
    files.Folders = {"/p"};
    files.Contents[File] = bytes;
    const BHOSettings before = settings;
    const std::int32_t number = Raised([&] { settings.Load(files, File); });
    EXPECT_EQ(number != 0, settings == before);
    return number;
}

TEST(BHOSettings, KnowTheirSectionsAndNames) {
    BHOSettings settings = Sample();
    const Text fresh =
        settings.Get(BHOSection::Options, 0, "ShowAlert") + settings.Get(BHOSection::Options, 0, "MessageDetail");
    EXPECT_EQ(fresh, "12");
    EXPECT_EQ(settings.Get(BHOSection::Options, 0, "CHECKOFF"), "1") << "names without case";
    settings.Set(BHOSection::Options, 0, "CheckOff", "");
    EXPECT_EQ(settings.Get(BHOSection::Options, 0, "CheckOff"), "");
    EXPECT_EQ(Raised([&] { settings.Set(BHOSection::Strings, 0, "Text", Text(BHOLongestValue + 1, 'x')); }), 6);
    EXPECT_EQ(Raised([&] { settings.Set(BHOSection::Strings, 0, "Width", "1"); }), 438);
    EXPECT_EQ(Raised([&] { settings.Get(BHOSection::Graphics, 2, "Name"); }), 9);
    EXPECT_EQ(Raised([&] { settings.Add(BHOSection::Product); }), 5);
    EXPECT_EQ(Raised([&] { settings.Count(static_cast<BHOSection>(7)); }), 5);
    for (std::size_t count = 2; count < BHOMostElements; ++count) settings.Add(BHOSection::Graphics);
    EXPECT_EQ(Raised([&] { settings.Add(BHOSection::Graphics); }), 6);
}

TEST(BHOSettings, ComeBackFromTheFileButFromNoDamagedOne) {
    BHOSettings saved = Sample();
    saved.Set(BHOSection::Components, 0, "ToolTip", Text(70000, 't'));
    BHOSettings loaded;
    loaded.Set(BHOSection::Alert, 0, "Caption", "goes");
    EXPECT_EQ(Load(Saved(saved), loaded), 0);
    EXPECT_EQ(loaded, saved);
    const Text good = Saved(Sample());
    // A checksum is no proof: what it covers is looked at as closely.
    const auto resealed = [](Text bytes) {
        PutLittleEndian(bytes.size() - HeaderSize, &bytes[6], 4);
        const std::int32_t checksum = cCRC32().GetStringCrc32(TextView(bytes).substr(HeaderSize), 0);
        PutLittleEndian(static_cast<std::uint32_t>(checksum), &bytes[10], 4);
        return bytes;
    };
    EXPECT_EQ(resealed(good), good);
    for (std::size_t place = 0; place < good.size(); ++place) {
        ASSERT_EQ(Load(good.substr(0, place), loaded), Damaged) << "cut at " << place;
        for (int bit = 0; bit < 8; ++bit) {
            Text flipped = good;
            flipped[place] = static_cast<char>(flipped[place] ^ (1 << bit));
            ASSERT_EQ(Load(flipped, loaded), Damaged) << "bit " << bit << " of byte " << place;
        }
        if (place < HeaderSize) continue;
        ASSERT_EQ(Load(resealed(good.substr(0, place)), loaded), Damaged) << "cut at " << place;
    }
    EXPECT_EQ(Load(good + '\0', loaded), Damaged);
    EXPECT_EQ(Load(resealed(good + '\0'), loaded), Damaged);
    Text changed = good;
    changed[changed.find("CheckOff")] = 'X';
    EXPECT_EQ(Load(resealed(changed), loaded), Damaged) << "no such name";
    changed = good;
    changed[HeaderSize] = 2;
    EXPECT_EQ(Load(resealed(changed), loaded), Damaged) << "two elements of options";
}

// The worked example of docs/formats/tb-bin.md: files of earlier programs stay readable.
TEST(BHOSettings, ReadTheExampleFile) {
    std::ifstream file(TRAWLBEAM_SOURCE "/fuzz/corpus/configuration/TB.BIN", std::ios::binary);
    const Text example(std::istreambuf_iterator<char>(file), {});
    BHOSettings settings;
    EXPECT_EQ(Load(example, settings), 0);
    EXPECT_EQ(settings.Get(BHOSection::Product, 0, "ProductName"), "Trawlbeam");
    EXPECT_EQ(settings.Get(BHOSection::Options, 0, "MessageDetail"), "2");
    EXPECT_EQ(settings.Get(BHOSection::Strings, 0, "Text"), "caf\xe9");
    EXPECT_EQ(Saved(settings), example);
}

}  // namespace
}  // namespace tb
