// Our address reader against the system's.
#include <winsock2.h>

#include <gtest/gtest.h>

#include <random>

#include "urlcheck/url/inet_addr.h"

namespace tb {
namespace {

std::optional<IPv4> SystemAddress(const Text& text) {
    const std::uint32_t address = ::inet_addr(text.c_str());
    if (address == INADDR_NONE) return std::nullopt;
    return ntohl(address);
}

// One part of an address: mostly near the edges of its range, in any base, sometimes no number at all.
Text RandomPart(std::mt19937& random) {
    static const std::uint32_t edges[] = {0,     1,        7,        8,          9,          10,         127,
                                          128,   255,      256,      257,        511,        65535,      65536,
                                          65537, 16777215, 16777216, 2130706433, 3232235777, 4294967294, 4294967295};
    static const char* const oddities[] = {
        "",    "08",  "0x", "0X1f", "00", "007", "0x0", "4294967296",           "99999999999",
        "1a",  "0xg", "+1", "-1",   "a",  "1e3", "0b1", "00000000000000000001", "0377",
        "0400"};
    const unsigned kind = random() % 10;
    if (kind == 0) return oddities[random() % std::size(oddities)];
    const std::uint32_t value = kind < 5 ? edges[random() % std::size(edges)] : random() % 300;
    char text[40];
    static const char* const pictures[] = {"%u", "%u", "0%o", "0x%x", "0X%X"};
    std::snprintf(text, sizeof text, pictures[random() % std::size(pictures)], value);
    return text;
}

TEST(InetAddr, AgreesWithTheSystemOnWrittenForms) {
    const Text forms =
        "3232235777 0xC0.0xA8.0x01.0x01 0300.0250.1.1 127.1 10.1.515 10.66051 010.1.2.3 0 2130706433 08.1.2.3 "
        "1.2.3.256 "
        "1.2.3.4. 1.2.3.4.5 256.1 1.16777216 4294967295 4294967296 [::1]:80 .1 1..2 evil.example 192.168.1.1 0.0.0.0 "
        "255.255.255.254";
    for (const Text& text : Split(forms, ' ')) {
        EXPECT_EQ(tb::inet_addr(text), SystemAddress(text)) << text;
    }
}

TEST(InetAddr, AgreesWithTheSystemOnGeneratedForms) {
    std::mt19937 random(20261121);
    int addresses = 0;
    constexpr int Forms = 20000;
    for (int form = 0; form < Forms; ++form) {
        Text text = RandomPart(random);
        for (unsigned more = random() % 5; more > 0; --more) text += "." + RandomPart(random);
        const std::optional<IPv4> expected = SystemAddress(text);
        addresses += expected ? 1 : 0;
        ASSERT_EQ(tb::inet_addr(text), expected) << text;
    }
    // Both answers must have been met often.
    EXPECT_GT(addresses, Forms / 10);
    EXPECT_LT(addresses, Forms * 9 / 10);
}

// Where ours differs on purpose.
TEST(InetAddr, TakesNeitherBlanksNorTheBroadcastAddress) {
    for (const Text text : {"1.2.3.4 ", "1.2.3.4 x", " ", "255.255.255.255", "0xffffffff"}) {
        EXPECT_EQ(tb::inet_addr(text), std::nullopt) << text;
    }
    EXPECT_NE(SystemAddress("1.2.3.4 "), std::nullopt);
}

}  // namespace
}  // namespace tb
