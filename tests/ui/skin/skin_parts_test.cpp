#include <gtest/gtest.h>

#include "SkinRig.h"
#include "ui/skin/Lighten.h"
#include "ui/skin/SkinDresser.h"
#include "ui/skin/Tokens.h"
#include "ui/skin/WindowSkin.h"

namespace tb {
namespace {

TEST(SkinCascade, KeepsTheLastValueThatIsNotEmpty) {
    SkinCascade cascade;
    const struct {
        const char* Name;
        ElementPtr Where;
        const char* Answer;
        const char* Stored;
    } reads[] = {{"a", Xml("<E a='1'/>"), "1", "1"},
                 {"A", Xml("<E/>"), "1", "1"},
                 {"a", Xml("<E a=''/>"), "1", "1"},
                 {"a", Xml("<E A='2'/>"), "2", "2"},
                 {"a", nullptr, "", "2"},
                 {"a", Xml("<E a='1'/>"), "1", "1"},
                 {"b", Xml("<E/>"), "", "none"},
                 {"b", Xml("<E b=''/>"), "", "none"}};
    for (const auto& read : reads) {
        EXPECT_EQ(cascade.FindSkinAttribute(read.Where, read.Name), read.Answer);
        EXPECT_EQ(cascade.GetSkinCollection(read.Name, "none"), read.Stored);
    }
}

TEST(WindowSkin, EntersWhatTheLevelsName) {
    const struct {
        const char* Root;
        const char* Window;
        // None at all for null.
        const char* Override;
        const char* Collection;
    } cases[] = {
        {"URL='u' EdgeRadius='9' Height='777'",
         "EdgeRadius='' Foo='7' color='9' Id='4' Height='3000' FormBackColor='11'", nullptr,
         "url=u edgeradius=9 height=777 FormBackColor=11 foo=7 color=- id=- captionfontname=Tahoma nothing=-"},
        {"", "EdgeRadius='15'", "", "EdgeRadius=5 formbackcolor=-"},
        {"", "EdgeRadius='15'", "EdgeRadius='20' Only='1'", "EdgeRadius=20 only=-"},
        {"FormBackColor='100'", "FormBackColor='200'", "", "FormBackColor=100"},
        {"FormBackColor='100'", "FormBackColor='200'", nullptr, "FormBackColor=200"},
        {"", "top='1' left='2' Text='3' ForeColor='4' body='5' BackColor='6' back='7' form='8' me='9'", nullptr,
         "top=1 left=2 text=3 forecolor=4 body=5 backcolor=- back=- form=- me=-"},
    };
    for (const auto& one : cases) {
        SkinRig rig;
        rig.SetSkin("<W Name='FRMMESSAGE' " + Text(one.Window) + "/>", one.Root);
        if (one.Override != nullptr) rig.SetOverride("<W Name='frmMessage' " + Text(one.Override) + "/>");
        const WindowSkin skin = ReadWindowSkin(rig.Program, "frmMessage");
        for (const Text& entry : Split(one.Collection, ' ')) {
            const Text name = entry.substr(0, entry.find('='));
            EXPECT_EQ(name + "=" + skin.Cascade.GetSkinCollection(name, "-"), entry) << one.Window;
        }
    }
    // The group of the defaults enters whole, between the root and the window.
    SkinRig rig;
    rig.SetSkin("<W Name='frmMessage' s='3'/>", "p='1' q='1' s='1'");
    rig.SetOverride("<W Name='frmOther'/>", "q='2' s='2'");
    const WindowSkin skin = ReadWindowSkin(rig.Program, "frmMessage");
    Text values;
    for (const char* name : {"p", "q", "s"}) values += skin.Cascade.GetSkinCollection(name, "-");
    EXPECT_EQ(values, "123");
    EXPECT_EQ(ReadWindowSkin(rig.Program, "frmOther").Builtin, nullptr) << "an override alone skins nothing";
    EXPECT_FALSE(ReadWindowSkin(rig.Program, "frmOther").Cascade.Has("edgeradius"));
    EXPECT_EQ(FindPlainAttribute(Xml("<E h='1'/>"), Xml("<E H='2'/>"), "h"), "2");
    EXPECT_EQ(FindPlainAttribute(Xml("<E h='1'/>"), Xml("<E h=''/>"), "h"), "1");
}

TEST(Tokens, AreExpandedInTheirOrder) {
    SkinRig rig;
    rig.Program.HomeURL = "http://h/";
    rig.System.Versions.Versions[rig.System.Processes.Executable()] = {
        {"Comments", "See {AppURL}{CrLf}{AppCompanyName}"}, {"CompanyName", "Co"}, {"LegalCopyright", "(c)"}};
    EXPECT_EQ(ExpandTokens(rig.Program, "{AppComments}|{AppProductName}|{appurl}"),
              "See http://h/\r\n{AppCompanyName}|Trawlbeam|{appurl}");
    EXPECT_EQ(ExpandTokens(rig.Program, "{AppCompanyName}{AppCopyright}{AppPath}|{AppDataPath}"),
              "Co(c)" + rig.Program.AppPath() + "|" + rig.Program.AppPath() + "\\Data");
    rig.System.Versions.Versions.clear();
    EXPECT_EQ(ExpandTokens(rig.Program, "<{AppComments}>"), "<>");
}

TEST(Lighten, RoundsToTheEvenOneAndKeepsWhite) {
    constexpr std::int32_t Face = SystemColors::ButtonFace.Bits();
    // Colour, factor, result.
    // What becomes of colours.
    const std::pair<std::int32_t, std::vector<std::pair<std::int32_t, std::int32_t>>> factors[] = {
        {10,
         {{5, 6}, {15, 16}, {25, 28}, {35, 38}, {45, 50}, {0xE0E0E0, 0xF6F6F6}, {0x804020, 0x8D4623}, {Face, Face}}},
        {30, {{200, 255}}},
        {-50, {{0xFFFFFE, 0x80807F}, {0x070503, 0x040202}}},
        {-100, {{0xFFFFFF, 0xFFFFFF}}},
        {0, {{0x123456, 0x123456}}},
        {INT32_MIN, {{0x123456, 0}}},
        {INT32_MAX, {{0x123456, 0xFFFFFF}}}};
    for (const auto& [factor, colors] : factors) {
        for (const auto& [color, result] : colors) EXPECT_EQ(AdjustColor(color, factor).Bits(), result) << color;
    }
    const Picture given{"file", PictureKind::Gif, {3, 1}, {0xFFFFFFFF, 0xFF804020, 0}};
    const PictureRef lighter = AdjustPicture(std::make_shared<Picture>(given), 10);
    EXPECT_EQ(lighter->Pixels, (std::vector<std::uint32_t>{0xFFFFFFFF, 0xFF8D4623, 0}));
    EXPECT_EQ(lighter->Bytes, "") << "it is no longer what the file shows";
}

TEST(SkinDresser, PassesSoManyArguments) {
    const std::vector<std::optional<size_t>> passed = {0, 1, 2, 3, 4, 4, 5, std::nullopt, std::nullopt};
    for (size_t count = 0; count < passed.size(); ++count) EXPECT_EQ(ArgumentsPassed(count), passed[count]) << count;
}

}  // namespace
}  // namespace tb
