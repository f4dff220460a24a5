#include "refdata/VersionReport.h"

#include <gtest/gtest.h>

#include "refdata/RefDataRig.h"

namespace tb {
namespace {

class LimitedSender : public FakeSender {
public:
    LimitedSender(FakeWeb& web, std::uint64_t& limit) : FakeSender(web), m_Limit(limit) {}
    void ReplyLimit(std::uint64_t bytes) override { m_Limit = bytes; }

private:
    std::uint64_t& m_Limit;
};

TEST(SendVersions, PostsWhatRunsHere) {
    RefDataRig rig;
    std::uint64_t limit = 0;
    rig.Access.MakeSender = [&] { return std::make_unique<LimitedSender>(rig.Web, limit); };
    rig.Program.Settings->WriteXMLString("MAIN", "KEY", "A-1");
    rig.System.Registry.WriteText(RegistryRoot::LocalMachine, "Software\\Microsoft\\Internet Explorer", "Version",
                                  "9.11.9600.18376");
    VersionReport report(rig.Access);

    EXPECT_FALSE(report.SendVersions());
    EXPECT_EQ(rig.Log.Take(), (Lines{"0 Send version error: 5 Invalid procedure call or argument"}));
    rig.AddService("OtherSVR");
    EXPECT_FALSE(report.SendVersions());
    EXPECT_EQ(rig.Log.Take(), Lines());
    EXPECT_TRUE(rig.Web.Requests.empty());

    rig.AddService("VersionsSVR");
    EXPECT_TRUE(report.SendVersions());
    EXPECT_EQ(rig.Log.Take(), (Lines{"1 Sending version information..."}));
    const FakeWeb::Request& request = rig.Web.Requests.at(0);
    EXPECT_EQ(request.Operation + " " + request.Page, "POST Versions.aspx");
    EXPECT_EQ(request.Body, "Key=A%2D1&AppVer=1.0.0&OSVer=6.1.7601.2&IEVer=9.11.9600.18376&OEVer=0&OutVer=0");
    EXPECT_EQ(request.Key, "A%2D1");
    EXPECT_EQ(limit, Sender::SmallReplyLimit);

    rig.Web.Errors["Versions.aspx"] = "no answer";
    EXPECT_FALSE(report.SendVersions());
    EXPECT_EQ(rig.Log.Take(), (Lines{"1 Sending version information...", "1 Send versions error: no answer"}));
}

}  // namespace
}  // namespace tb
