#include <gmock/gmock.h>

#include <httplib.h>
#include "fakes/RecordedLog.h"
#include "fakes/TestFolder.h"
#include "service/mail/MailTexts.h"
#include "service/mail/UrlScan.h"
#include "service/web/HttpServer.h"
#include "service/web/ServicePages.h"
#include "sitedb/codec/Base64.h"
#include "sitedb/codec/UrlEncode.h"

namespace tb {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const Text EmailPost =
    "TRN=EML&Key=AB%2D1&Category_ID=2&Confidence_ID=3&From=Bad+Guy+%3Cbad%40evil%2Eexample%3E&Subject=Win+100%25+now"
    "&Header=From%3A+Bad+Guy+%3Cbad%40evil%2Eexample%3E%0D%0ASubject%3A+Win+100%25+now"
    "&Body64=Q2xpY2sgaGVyZQ0KaHR0cDovL2V2aWwuZXhhbXBsZS9hP2I9MQ0K";
const Text UrlPost =
    "TRN=URL&Key=AB%2D1&Category_ID=2&Confidence_ID=4&Visible_URL=http%3A%2F%2Fevil%2Eexample%2Fa%2Cb%3Fx%3D1%26y%3D2"
    "&Main_URL=http%3A%2F%2Fevil%2Eexample%2Fa";

Text EmailOf(const Text& subject, const Text& head, const Text& body) {
    return "TRN=EML&Key=k&Category_ID=2&Confidence_ID=3&From=&Subject=" + UrlEncode(subject) +
           "&Header=" + UrlEncode(head) + "&Body64=" + UrlEncode(Base64Encode(body));
}

Text Replaced(Text text, const Text& from, const Text& to) { return text.replace(text.find(from), from.size(), to); }

class SubmissionPagesTest : public testing::Test {
protected:
    SubmissionPagesTest() {
        Pages pages;
        AddSubmissionPages(pages, Intake, Log);
        Server = std::make_unique<HttpServer>(std::move(pages), Log);
        Port = Server->Start({"127.0.0.1"}, 0);
    }
    // The reply, or the status that is not 200.
    Text Post(const Text& page, const Text& body) {
        httplib::Client client("127.0.0.1", Port);
        const auto response = client.Post("/" + page + ".aspx", body, "application/x-www-form-urlencoded");
        if (!response) return "no reply";
        return response->status == 200 ? response->body : std::to_string(response->status) + " " + response->body;
    }

    TestFolder Folder;
    RecordedLog Log;
    ServiceStore Store{Folder.Path(), ServiceStore::Opening::OrNew};
    SubmissionIntake Intake{Folder.Path()};
    Submissions Held{Store};
    std::unique_ptr<HttpServer> Server;
    int Port = 0;
};

TEST_F(SubmissionPagesTest, KeepWhatClientsPost) {
    EXPECT_EQ(Post("SubmitEmail", EmailPost), "01-000001 Thank you for your submission.");
    EXPECT_EQ(Post("SubmitURL", UrlPost), "01-000002 Thank you for your submission.");
    const Submission email = Held.Find(1).value();
    EXPECT_THAT((std::vector<Text>{email.Client, email.From, email.Subject}),
                ElementsAre("AB-1", "Bad Guy <bad@evil.example>", "Win 100% now"));
    EXPECT_THAT((std::vector{email.Category, email.Confidence}), ElementsAre(2, 3));
    EXPECT_LE(SystemUtcNow().Seconds() - email.Received.Seconds(), 60);
    EXPECT_EQ(Held.Find(2)->What, Submission::Kind::Url);
    EXPECT_EQ(Held.Find(2)->Head, "http://evil.example/a");
    // The largest mail that a client takes, as long as a post can get, and every byte.
    Text bytes;
    for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
    const Text longest(5'242'000, '\xFF');
    EXPECT_THAT(Post("SubmitEmail", EmailOf(longest, longest + bytes, bytes)), StartsWith("01-000003 "));
    EXPECT_EQ(Held.Find(3)->Head, longest + bytes);
    EXPECT_EQ(Held.Find(3)->Content, bytes);
    EXPECT_TRUE(Log.Lines.empty());
}

TEST_F(SubmissionPagesTest, RefuseRepeatsAndNameTheEarlierOne) {
    Post("SubmitEmail", EmailPost);
    EXPECT_EQ(Post("SubmitEmail", Replaced(EmailPost, "100%25", "200%25")),
              "-1 Thank you. This e-mail is known already, by the number 01-000001.");
    EXPECT_THAT(Post("SubmitEmail", EmailOf("", "", "")), StartsWith("01-000002 "));
    EXPECT_THAT(Post("SubmitURL", UrlPost), StartsWith("01-000003 "));
    EXPECT_EQ(Post("SubmitURL", Replaced(UrlPost, "AB%2D1", "C")),
              "-1 Thank you. This URL is known already, by the number 01-000003.");
    EXPECT_THAT(Post("SubmitURL", Replaced(UrlPost, "y%3D2", "y%3D3")), StartsWith("01-000004 "));
    // A mail of just that text is something else.
    EXPECT_THAT(Post("SubmitEmail", EmailOf("", "", "http://evil.example/a,b?x=1&y=2")), StartsWith("01-000005 "));
    EXPECT_EQ(Held.Count(), 5);
}

TEST_F(SubmissionPagesTest, TurnDownWhatNoClientSends) {
    const std::tuple<Text, Text, Text> cases[] = {
        {"SubmitEmail", "", "400 The field TRN is missing."},
        {"SubmitEmail", UrlPost, "400 The field TRN must be EML here."},
        {"SubmitURL", EmailPost, "400 The field TRN must be URL here."},
        {"SubmitEmail", Replaced(EmailPost, "Header", "Headers"), "400 The field Header is missing."},
        {"SubmitEmail", Replaced(EmailPost, "ID=2", "ID=two"), "400 The field Category_ID is no number."},
        {"SubmitURL", Replaced(UrlPost, "ID=4", "ID=32768"), "400 The field Confidence_ID is no number."},
        {"SubmitEmail", EmailPost + "%3D", "400 The field Body64 is no Base64."},
        {"SubmitEmail", EmailPost + "-abc", "400 The field Body64 is no Base64."},
        {"SubmitURL", Replaced(UrlPost, "Visible_URL=", "Visible_URL=&x="), "400 The field Visible_URL is empty."},
        {"SubmitURL", UrlPost + Text(65536, 'x'), "413 "},
        {"SubmissionStatus", "TRN=EML&Key=AB%2D1&SubIds=01-000001", "400 The field TRN must be UPD here."},
    };
    for (const auto& [page, body, answer] : cases) EXPECT_THAT(Post(page, body), StartsWith(answer)) << body;
    EXPECT_EQ(Held.Count(), 0);
}

TEST_F(SubmissionPagesTest, TellWhatIsKnownOfTheSubmissionsAskedFor) {
    EXPECT_EQ(Post("SubmissionStatus", "TRN=UPD&Key=AB%2D1&SubIds=01-000001"), "");
    Post("SubmitEmail", EmailPost);
    Post("SubmitURL", UrlPost);
    EXPECT_TRUE(Held.Judge(2, {2, 0}));
    EXPECT_FALSE(Held.Judge(3, {2, 2}));
    EXPECT_EQ(Post("SubmissionStatus", "TRN=UPD&Key=AB%2D1&SubIds=01-000002,12-000345,1-1,01-000002,,x,-1-1,99-999999"),
              "01-000002=2,0\n01-000001=1,1\n");
}

TEST_F(SubmissionPagesTest, AnswerErrorWhereTheyCannotStore) {
    {
        const Transaction import(Store, Transaction::Kind::Write);
        EXPECT_THAT(Post("SubmitURL", UrlPost), StartsWith("Error: "));
    }
    EXPECT_EQ(Log.Lines, std::vector<Text>{"0 a submission was not stored: database is locked"});
    EXPECT_THAT(Post("SubmitURL", UrlPost), StartsWith("01-000001 "));
    Store.Prepare("UPDATE submissions SET number = ?1").Bind(1, Submissions::Most - 1).Run();
    EXPECT_THAT(Post("SubmitEmail", EmailPost), StartsWith("99-032767 "));
    EXPECT_THAT(Post("SubmitEmail", EmailOf("", "", "more")), StartsWith("Error: "));
}

TEST(SubmissionIds, AreReadInBothForms) {
    EXPECT_EQ(SubmissionIdText(32768), "02-000000");
    for (const std::int64_t number : {std::int64_t{1}, std::int64_t{32767}, std::int64_t{32768}, Submissions::Most}) {
        EXPECT_EQ(SubmissionNumber(SubmissionIdText(number)), number);
    }
    EXPECT_EQ(SubmissionNumber("1-345"), 345);
    for (const char* text : {"", "-", "1", "01-000000", "0-5", "1--5", "1-32768", "100-1", "1-1 ", "1-0000001"}) {
        EXPECT_FALSE(SubmissionNumber(text)) << text;
    }
}

TEST(UrlScan, FindsLinks) {
    const std::pair<Text, Text> cases[] = {
        {"http://a.example/x, (https://b.example/y/) or http://a.example/x.", "http://a.example/x https://b.example/y"},
        {"<a href=\"HTTP://A.example/?x=1&amp;y=2#z\">q</a><img src='http://b.example/i.gif'>",
         "HTTP://A.example/?x=1&y=2 http://b.example/i.gif"},
        {"http://0x7f.1/a http://user@3232235777/", "http://127.0.0.1/a http://user@192.168.1.1"},
        {"http://a.example/go?to=http://b.example", "http://a.example/go?to=http://b.example"},
        {"&lt;http://a.example&gt;", "http://a.example"},
        {"http:// http:/a http://% httphttps://a.example https://", "https://a.example"},
        {"http://a.example/" + Text(5000, 'x'), "http://a.example/" + Text(2031, 'x')},
    };
    for (const auto& [given, urls] : cases) EXPECT_EQ(Join(UrlsIn(given), " "), urls);
}

TEST(MailTexts, AreWithoutTheirEncoding) {
    const Text mixed = "Subject: x\r\nContent-Type: MULTIPART/mixed;\r\n\tboundary=\"a b\"";
    const Text quoted = "Content-Transfer-Encoding: Quoted-Printable";
    const Text base64 = "Content-transfer-encoding: base64\n";
    const Text html = "<a href=\"http://a.example/?id=AB\" class=\"x\">";
    // Headers of mails within mails.
    const auto mails = [](int depth) {
        Text headers = "Content-Type: message/rfc822";
        while (--depth > 0) headers += "\n\nContent-Type: message/rfc822";
        return headers + "\n\nSubject: inner";
    };
    // Headers, body, and the texts.
    const std::tuple<Text, Text, Text> cases[] = {
        {"", "plain", "plain"},
        {quoted, "http://a.ex=\r\nample/=3Fx=3D=e9=", "http://a.example/?x=\xE9="},
        {quoted, html, html},
        {base64, "aHR0cDov\nL2EuZXhh\nbXBsZQ==\n-- \nof a list", "http://a.example-- \nof a list"},
        {mixed,
         "preamble\r\n--a b\r\n\r\nfirst\r\n--a b\r\nContent-Type: image/gif\r\n\r\nGIF\r\n--a b\r\n" + base64 +
             "\r\nYg==\r\n--a b--\r\nepilogue",
         "first\r\n|b"},
        {mixed, "--a b\r\nContent-Type: message/rfc822\r\n\r\nSubject: y\r\n\r\ninner", "inner"},
        {mixed, "--a b\r\nContent-Type: multipart/x; boundary=c\n\n--c\n\n1\n--c\n\n2\n--a b\n\n3", "1\n|2\n|3"},
        {mixed, "--a b\n" + mails(9) + "\n\ndeep", "deep"},
        {mixed, "--a b\n" + mails(10) + "\n\ndeep", ""},
        {mixed, html, html},
        {mixed, "--a b\r\nno headers", "no headers"},
        {"Content-Type: multipart/x; boundary=\"", "--\r\n\r\nx", "--\r\n\r\nx"},
    };
    for (const auto& [headers, body, texts] : cases)
        EXPECT_EQ(Join(MailTexts(headers, body), "|"), texts) << Quoted(body);
}

}  // namespace
}  // namespace tb
