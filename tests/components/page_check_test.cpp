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
        {"about:blank", ""},
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
    struct Case {
        const char* What;
        std::function<void(FakeServices&)> Change;
        bool Blocked;
        std::size_t Boxes;
    };
    const Case cases[] = {
        {"listed", [](FakeServices&) {}, true, 1},
        {"listed, no alert", [](FakeServices& world) { world.Given.ShowAlert = false; }, true, 0},
        {"not listed", [](FakeServices& world) { world.Reply = "OK"; }, false, 0},
        {"not judged", [](FakeServices& world) { world.Reply = ""; }, false, 0},
        {"no answer in time", [](FakeServices& world) { world.Reply.reset(); }, false, 0},
        {"check off", [](FakeServices& world) { world.Given.CheckOff = true; }, false, 0},
        {"no program", [](FakeServices& world) { world.Runs = false; }, false, 0},
        {"no bridge", [](FakeServices& world) { world.Broken = true; }, false, 0},
        {"no bridge, with messages", [](FakeServices& world) { world.Broken = world.Given.Messages = true; }, false, 1},
    };
    for (const Case& tried : cases) {
        FakeServices services;
        tried.Change(services);
        PageCheck check(services);
        EXPECT_EQ(check.MustBlock("http://a.example"), tried.Blocked) << tried.What;
        EXPECT_EQ(services.Shown.size(), tried.Boxes) << tried.What;
        // An alert for each page, a failure once.
        EXPECT_EQ(check.MustBlock("http://a.example"), tried.Blocked) << tried.What;
        EXPECT_EQ(services.Shown.size(), tried.Boxes * (tried.Blocked ? 2 : 1)) << tried.What;
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
    ASSERT_EQ(services.Shown.size(), 1U);
    EXPECT_EQ(services.Shown[0], "Name: This page was blocked, because it is known as malicious:\r\nhttp://a.example/" +
                                     Text(103, 'x') + "...\r\n\r\nValidated: x");
    check.MustBlock("http://a.example/" + Text(103, 'x'));
    EXPECT_NE(services.Shown.at(1).find("xxx\r\n"), Text::npos) << "as long as is shown";
}

}  // namespace
}  // namespace tb
