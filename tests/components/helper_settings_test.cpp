// The helper's configuration and its file: what was saved comes back, and nothing else is taken for it.
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "base/bytes.h"
#include "components/tbBHOCfg/BHOSettings.h"
#include "fakes/FakeFiles.h"
#include "fakes/Raised.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {
namespace {

const std::filesystem::path File = "/p/TB.BIN";
constexpr std::int32_t Damaged = 321;

struct World {
    World() { Files.Folders.insert("/p"); }
    Text& Bytes() { return Files.Contents[File]; }
    // The number that loading the bytes into settings raises, which then must not have changed.
    std::int32_t Load(const Text& bytes) {
        Bytes() = bytes;
        BHOSettings settings;
        settings.Set(BHOSection::Options, 0, "AutoLaunch", "1");
        const BHOSettings before = settings;
        const std::int32_t number = Raised([&] { settings.Load(Files, File); });
        if (number != 0) {
            EXPECT_EQ(settings, before);
        }
        return number;
    }
    FakeFiles Files;
};

BHOSettings Sample() {
    BHOSettings settings;
    settings.Set(BHOSection::Options, 0, "checkoff", "1");
    settings.Set(BHOSection::Product, 0, "ProductName", "Trawl\xe9");
    settings.Set(BHOSection::Alert, 0, "FormTopInterval", "30");
    settings.Add(BHOSection::Graphics);
    const std::size_t second = settings.Add(BHOSection::Graphics);
    settings.Set(BHOSection::Graphics, second, "Text", Text("a\0b", 3));
    settings.Set(BHOSection::Strings, settings.Add(BHOSection::Strings), "Name", "Why");
    settings.Set(BHOSection::Components, settings.Add(BHOSection::Components), "ToolTip", Text(70000, 't'));
    return settings;
}

TEST(BHOSettings, KnowTheirSectionsAndNames) {
    BHOSettings settings = Sample();
    EXPECT_EQ(settings.Get(BHOSection::Options, 0, "ShowAlert"), "1") << "what a fresh one has";
    EXPECT_EQ(settings.Get(BHOSection::Options, 0, "CHECKOFF"), "1") << "names without case";
    settings.Set(BHOSection::Options, 0, "CheckOff", "");
    EXPECT_EQ(settings.Get(BHOSection::Options, 0, "CheckOff"), "");
    EXPECT_EQ(Raised([&] { settings.Set(BHOSection::Strings, 0, "Text", Text(BHOLongestValue + 1, 'x')); }), 6);
    EXPECT_EQ(Raised([&] { settings.Set(BHOSection::Strings, 0, "Width", "1"); }), 438);
    EXPECT_EQ(Raised([&] { settings.Get(BHOSection::Graphics, 2, "Name"); }), 9);
    EXPECT_EQ(Raised([&] { settings.Add(BHOSection::Product); }), 5);
    EXPECT_EQ(Raised([&] { settings.Count(static_cast<BHOSection>(7)); }), 5);
    EXPECT_EQ(Raised([&] {
                  for (std::size_t count = 0; count < BHOMostElements; ++count) settings.Add(BHOSection::Graphics);
              }),
              6);
}

TEST(BHOSettings, ComeBackFromTheFile) {
    World world;
    BHOSettings().Save(world.Files, File);
    const Text before = world.Bytes();
    const BHOSettings saved = Sample();
    // Opening, writing, flushing or replacing fails.
    for (int call = 1; call <= 4; ++call) {
        world.Files.FailAt(call);
        EXPECT_EQ(Raised([&] { saved.Save(world.Files, File); }), 61) << call;
        world.Files.FailNoMore();
        EXPECT_THAT(world.Files.Contents, testing::ElementsAre(testing::Pair(File, before))) << call;
    }
    saved.Save(world.Files, File);
    BHOSettings loaded;
    loaded.Set(BHOSection::Alert, 0, "Caption", "goes");
    loaded.Load(world.Files, File);
    EXPECT_EQ(loaded, saved);
    world.Files.Contents.clear();
    EXPECT_EQ(Raised([&] { loaded.Load(world.Files, File); }), 53);
}

TEST(BHOSettings, RefuseEveryDamagedFile) {
    World world;
    BHOSettings small = Sample();
    small.Set(BHOSection::Components, 0, "ToolTip", "t");
    small.Save(world.Files, File);
    const Text good = world.Bytes();
    ASSERT_EQ(world.Load(good), 0);
    for (std::size_t size = 0; size < good.size(); ++size) {
        ASSERT_EQ(world.Load(good.substr(0, size)), Damaged) << "cut at " << size;
    }
    for (std::size_t place = 0; place < good.size(); ++place) {
        for (int bit = 0; bit < 8; ++bit) {
            Text flipped = good;
            flipped[place] = static_cast<char>(flipped[place] ^ (1 << bit));
            ASSERT_EQ(world.Load(flipped), Damaged) << "bit " << bit << " of byte " << place;
        }
    }
    EXPECT_EQ(world.Load(good + '\0'), Damaged);
    // A checksum is no proof: what it covers is looked at as closely.
    const auto resealed = [](Text bytes) {
        PutLittleEndian(bytes.size() - 14, &bytes[6], 4);
        PutLittleEndian(static_cast<std::uint32_t>(cCRC32().GetStringCrc32(TextView(bytes).substr(14), 0)), &bytes[10],
                        4);
        return bytes;
    };
    ASSERT_EQ(world.Load(resealed(good)), 0);
    for (std::size_t size = 14; size < good.size(); ++size) {
        ASSERT_EQ(world.Load(resealed(good.substr(0, size))), Damaged) << "cut at " << size;
    }
    EXPECT_EQ(world.Load(resealed(good + '\0')), Damaged);
    Text changed = good;
    changed[changed.find("CheckOff")] = 'X';
    EXPECT_EQ(world.Load(resealed(changed)), Damaged) << "no such name";
    changed = good;
    changed[14] = 2;
    EXPECT_EQ(world.Load(resealed(changed)), Damaged) << "two elements of options";
}

// The worked example of docs/formats/tb-bin.md: files of earlier programs stay readable.
TEST(BHOSettings, ReadTheExampleFile) {
    std::ifstream file(TRAWLBEAM_SOURCE "/fuzz/corpus/configuration/TB.BIN", std::ios::binary);
    const Text example(std::istreambuf_iterator<char>(file), {});
    World world;
    world.Bytes() = example;
    BHOSettings settings;
    settings.Load(world.Files, File);
    EXPECT_EQ(settings.Get(BHOSection::Product, 0, "ProductName"), "Trawlbeam");
    EXPECT_EQ(settings.Get(BHOSection::Options, 0, "MessageDetail"), "2");
    EXPECT_EQ(settings.Get(BHOSection::Strings, 0, "Text"), "caf\xe9");
    settings.Save(world.Files, File);
    EXPECT_EQ(world.Bytes(), example);
}

}  // namespace
}  // namespace tb
