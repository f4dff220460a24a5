#include <gtest/gtest.h>

#include "fakes/FakeSound.h"
#include "urlcheck/sounds/Sounds.h"
#include "urlcheck/sounds/WaveFile.h"

namespace tb {
namespace {

Text Number(std::uint32_t number) {
    Text bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

Text Chunk(const Text& name, const Text& content) {
    return name + Number(static_cast<std::uint32_t>(content.size())) + content +
           (content.size() % 2 ? Text(1, '\0') : "");
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
    EXPECT_TRUE(device.Played.empty());
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
    EXPECT_FALSE(IsWaveFile(Wave(Chunk("data", "no format"))));
    for (const Text& chunks :
         {Format, Chunk("fmt ", "short") + Chunk("data", "x"), Format + "data" + Number(0xFFFFFFFF)}) {
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
