// What the browser helper lets pass and what it blocks.
#include <gtest/gtest.h>

#include <functional>

#include "components/TrawlbeamHelper/PageCheck.h"

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

}  // namespace
}  // namespace tb
