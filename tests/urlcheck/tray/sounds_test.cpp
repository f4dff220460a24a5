#include <gtest/gtest.h>

#include "fakes/FakeSound.h"
#include "urlcheck/sounds/Sounds.h"
#include "urlcheck/sounds/WaveFile.h"

namespace tb {
namespace {

Text Chunk(const Text& name, const Text& content) {
    return name + Text(1, static_cast<char>(content.size())) + Text(3, '\0') + content + Text(content.size() % 2, '\0');
}

Text Wave(const Text& chunks) { return Chunk("RIFF", "WAVE" + chunks); }

const Text Format = Chunk("fmt ", Text(16, '\1'));

TEST(Sounds, ArePlayedWithoutBlockingAndWithoutCuttingOffAnother) {
    FakeSound device;
    const Text click = Wave(Format + Chunk("data", "click"));
    const Text alert = Wave(Format + Chunk("LIST", "odd") + Chunk("data", "alert!"));
    Sounds sounds(device, click, alert);
    sounds.PlayAlertSound(false);
    sounds.PlayClickSound(false);
    sounds.PlayAlertSound(true);
    sounds.PlayClickSound(true);
    ASSERT_EQ(device.Played.size(), 2U);
    EXPECT_EQ(*device.Played[0].Wave, alert);
    EXPECT_EQ(*device.Played[1].Wave, click);
    EXPECT_EQ(device.Played[0].Flags, 8215U);
}

TEST(Sounds, WhatIsNoWholeWaveFileIsNeverPlayed) {
    const Text whole = Wave(Format + Chunk("data", "samples!"));
    ASSERT_TRUE(IsWaveFile(whole));
    EXPECT_TRUE(IsWaveFile(whole + "behind it"));
    for (size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(IsWaveFile(TextView(whole).substr(0, length))) << length;
    }
    for (const Text& chunks : {Format, Chunk("data", "no format"), Chunk("fmt ", "short") + Chunk("data", "x"),
                               Format + "data\xFF\xFF\xFF\xFF"}) {
        EXPECT_FALSE(IsWaveFile(Wave(chunks)));
    }
    FakeSound device;
    Sounds sounds(device, "", "not a wave");
    sounds.PlayAlertSound(true);
    sounds.PlayClickSound(true);
    EXPECT_TRUE(device.Played.empty());
}

}  // namespace
}  // namespace tb
