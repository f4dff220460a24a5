// What is handed in, and what is asked about it.
#include <gtest/gtest.h>

#include "base/bytes.h"
#include "submissions/CEmailMessage.h"
#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

const Text NotUnderstood = "64|Trawlbeam|This is not a URL or Email message that Trawlbeam understands.";
const Text Headers = "__substg1.0_007D001E";
const Text Html = "__substg1.0_1013001E";
const Text Rtf = "__substg1.0_10090102";
const Text Plain = "__substg1.0_1000001E";

// A block with that count and room for that many descriptors.
Text DescriptorOf(std::uint32_t count, size_t room) {
    Text bytes(4 + room * 332, '\0');
    PutLittleEndian(count, bytes.data(), 4);
    return bytes;
}

FakeDrop Stored(const SubmissionDB& db, const Text& descriptor, std::vector<StoredMessage> messages) {
    FakeDrop drop;
    drop.Formats[db.cfFileGroupDescriptor];
    drop.Descriptor = descriptor;
    drop.Messages = std::move(messages);
    return drop;
}

TEST(Drop, TakesTheFirstFormatThatItKnows) {
    const Text queues[] = {"", "0.U", "0.E 1.E", "0.E"};
    for (size_t known = 0; known < std::size(queues); ++known) {
        SubmissionRig rig;
        FakeDrop drop;
        const auto one = [](const Text& body) { return StoredMessage({{Headers, "H"}, {Plain, body}}); };
        if (known > 1) drop = Stored(*rig.DB, DescriptorOf(2, 2), {one("1"), one("2")});
        if (known > 2) drop.Formats[rig.DB->cfInternetMessage] = "H\r\n\r\nB";
        if (known > 0) drop.Formats[PlainTextFormat] = " http://a.example/ ";
        rig.DB->DoDrop(drop);
        EXPECT_EQ(rig.Queue(), queues[known]);
        EXPECT_EQ(rig.TakeShown(), known == 0 ? Lines{NotUnderstood} : Lines());
    }
}

TEST(Drop, SplitsAMail) {
    // The mail, and what is queued of it; a block of memory can have room behind the mail.
    const std::pair<Text, Text> cases[] = {{"H\r\n\r\nB1\r\n\r\nB2", "H\r\n\r\nB1\r\n\r\nB2\r\n"},
                                           {"H\r\n\r\n\r\n\r\n\r\n\r\nB", "H\r\n\r\nB\r\n"},
                                           {"H\n\r\n", "H\n\r\n\r\n\r\n"},
                                           {Text("H\r\n\r\nB\0\0x\0", 10), "H\r\n\r\nB\r\n"}};
    for (const auto& [mail, queued] : cases) {
        SubmissionRig rig;
        rig.DropMail(mail);
        EXPECT_TRUE(rig.Queued("0.E").starts_with(" 2 , 3 , "));
        EXPECT_EQ(rig.Handed("0.E"), queued) << Quoted(mail);
    }
}

TEST(Drop, RefusesRepeatedAndLargeMails) {
    SubmissionRig rig;
    rig.DropMail("X-Old-Subject: a\r\nSubject: b\r\n\r\nBody one");
    EXPECT_EQ(rig.Qualifiers.Captions, Lines{"a"});
    // Not a repeat while the first one waits.
    EXPECT_EQ(rig.TakeShown(), Lines());
    rig.DB->Add("EMAIL", "s", "1-1", 1, {}, "752");
    rig.DropMail("subject:b\r\n\r\nBody one");
    rig.DropMail("Hi\r\n\r\nBody one");
    const Text again = "64|Trawlbeam|Previously Submitted Email: \r\n";
    EXPECT_EQ(rig.TakeShown(), (Lines{again + "b\r\n\r\n", again}));
    EXPECT_EQ(rig.System.Processes.Trims.size(), 2U);
    EXPECT_EQ(rig.Queue(), "0.E");
    rig.DropMail(Text(0x4FFFF6, 'h') + "\r\n\r\n" + Text(10, 'b'));
    EXPECT_EQ(rig.TakeShown(), Lines());
    rig.DropMail(Text(0x4FFFF7, 'h') + "\r\n\r\n" + Text(10, 'b'));
    EXPECT_EQ(rig.TakeShown(), Lines{"48|Trawlbeam|Email message is too large"});
    EXPECT_EQ(rig.Queue(), "0.E 1.E");
}

TEST(Drop, ReadsStoredMessages) {
    const Text forwarded =
        "64|Trawlbeam|You submitted a forwarded Email message that Trawlbeam does not support.\r\n"
        "Please submit the original message.";
    const Text nul("\0", 1);
    const struct {
        std::map<Text, Text> Streams;
        Text PlainText, Queued, Shown;
        bool IsMail = true;
    } cases[] = {
        {{{Headers, "H" + nul + "x"}, {Html, "t" + nul + "x"}, {Rtf, "r"}}, "", "0.E H\r\n\r\nt\r\n", ""},
        {{{Headers, "H"}, {Rtf, "r" + nul + "tf"}, {Plain, "p"}}, "", "0.E H\r\n\r\nr" + nul + "tf\r\n", ""},
        {{{Headers, "H"}, {Html, "FAIL"}, {Plain, "p"}}, "", "0.E H\r\n\r\np\r\n", ""},
        {{{Html, "html"}}, "", "", forwarded},
        {{}, " http://a.example/ ", "0.U http://a.example", ""},
        {{}, "hello", "", NotUnderstood},
        {{{Headers, "H"}, {Plain, "p"}}, "", "", NotUnderstood, false},
    };
    for (const auto& [streams, text, queued, shown, isMail] : cases) {
        SubmissionRig rig;
        FakeDrop drop = Stored(*rig.DB, DescriptorOf(1, 1), {StoredMessage(streams)});
        if (!isMail) drop.Messages[0].ClassId = "{other}";
        if (!text.empty()) drop.Formats[PlainTextFormat] = text;
        rig.DB->DoDrop(drop);
        EXPECT_EQ(Join(rig.TakeShown(), "&"), shown);
        const Text name = rig.Queue();
        EXPECT_EQ(name.empty() ? name : name + " " + rig.Handed(name), queued);
    }
}

TEST(Drop, BelievesNoCount) {
    const std::pair<Text, std::int32_t> cases[] = {{Text("\1\0\0", 3), 0},
                                                   {DescriptorOf(1, 0), 1},
                                                   {DescriptorOf(2, 3), 2},
                                                   {DescriptorOf(0x7FFFFFFF, 2), 2},
                                                   {DescriptorOf(0xFFFFFFFF, 2), -1}};
    for (const auto& [descriptor, count] : cases) {
        SubmissionRig rig;
        FakeDrop drop = Stored(*rig.DB, descriptor, {});
        EXPECT_EQ(rig.DB->GetMessageCount(&drop), count);
        // Nothing is behind any index.
        rig.DB->DoDrop(drop);
        EXPECT_EQ(rig.TakeShown(), Lines(static_cast<size_t>(std::max(count, 0)), NotUnderstood));
    }
}

TEST(Drop, TakesURLs) {
    const Text single = "64|Trawlbeam|Please submit URLS individually as a single line of text: \r\n";
    const Text prefix = "64|Trawlbeam|Please submit URLS beginning with 'http://' or 'https://': \r\n";
    const Text repeated = "Previously submitted URLS: ";
    const Text longest = "http://" + Text(793, 'x');
    const struct {
        Text Confirm, Given, Queued, Told;  // "queued" are the second lines of the files
        bool Debug = false;
    } cases[] = {
        {"1", "evil.example", "", prefix + "evil.example"},
        {"1", "http://a/\r\nhttp://b/", "", single + "http://a/\nhttp://b/"},
        {"0", "\nhttp://a/", "", single + "\nhttp://a/"},
        {"1", "HTTPfoo", "HTTPfoo", ""},
        {"1", "http://a.example/p?x=2", "", "0|Trawlbeam|" + repeated + "http://a.example/p?x=2"},
        {"", "http://a.example/p/", "", "0 " + repeated + "http://a.example/p"},
        {"1", longest + "/", longest, ""},
        {"1", longest + "x", "", "0|Trawlbeam|" + repeated + longest + "x"},
        {"1", "evil.example", "http://evil.example", "", true},
        {"0", "a\n\nhttp://a.example/p/\nHttp://a.example/p", "http://a http: Http://a.example/p",
         "0 " + repeated + "http://a.example/p", true},
    };
    for (const auto& [confirm, given, queued, told, debug] : cases) {
        SubmissionRig rig;
        if (debug) rig.SetDebug();
        rig.Set("ConfirmSubmission", confirm);
        rig.DB->Add("URL", "http://a.example/p", "1-1", 1, {}, "k");
        rig.DB->SubmitEvilURL(given);
        Lines lines;
        for (const Text& name : Split(rig.Queue(), ' ')) lines.push_back(rig.Handed(name));
        EXPECT_EQ(Join(lines, " "), queued) << given;
        EXPECT_EQ(Join(rig.TakeShown(), "&") + Join(rig.Log.Take(), "&"), told);
        // The caption is what was given, and nobody is asked about what is refused before.
        const bool early = told.starts_with("64");
        EXPECT_EQ(rig.Qualifiers.Captions, early ? Lines() : Lines{given});
        EXPECT_EQ(rig.System.Processes.Trims.empty(), early || told.empty());
    }
}

TEST(Drop, ReplacesNoFileThatWaits) {
    SubmissionRig rig;
    rig.DB->SubmitEvilURL("http://evil.example/a,b?x=1&y=2");
    EXPECT_EQ(rig.Queued("0.U"), " 2 , 3 ,http://evil.example/a,b\r\nhttp://evil.example/a,b?x=1&y=2");
    rig.System.Files.Contents.clear();
    rig.Start();
    rig.Queued("0.E") = "waits";
    rig.Queued("1.U") = "another kind";
    rig.DropMail("H\r\n\r\nB");
    EXPECT_EQ(rig.Queue() + rig.Queued("0.E"), "0.E 1.E 1.Uwaits");
    EXPECT_EQ(rig.DB->LastSubmissionID(), 2);
}

// Runs begin behind the questions, and not in a program that ended inside one; what it had handed in stays queued.
TEST(HandIn, AsksForARunUnlessTheProgramGoes) {
    SubmissionRig rig;
    Text queued;
    rig.DB->RunWanted.Connect([&] { queued = rig.Queue(); });
    FakeDrop drop;
    drop.Formats[PlainTextFormat] = "http://a.example/";
    rig.DB->HandIn(drop);
    EXPECT_EQ(queued, "0.U");
    rig.DB->HandInURL("http://b.example/");
    EXPECT_EQ(queued, "0.U 1.U");
    rig.Qualifiers.Meanwhile = [&](QualifiersDialog&) {
        rig.DB.reset();
        rig.Program.Settings.reset();
    };
    rig.DB->HandIn(drop);
    EXPECT_EQ(queued, "0.U 1.U");
    EXPECT_EQ(rig.Queue(), "0.U 1.U 2.U");
}

struct DialogRig : SubmissionRig {
    // Hands in a mail; what is stored then, and the beginning of the queue file.
    Text Answer(const Text& body = "B") {
        DropMail("H\r\n\r\n" + body);
        Text answers;
        for (const char* key : {"LastCategoryID", "LastConfidenceID", "LastTop", "LastLeft"}) {
            answers += Program.Settings->GetXMLString("SubCat", key, "none") + " ";
        }
        return answers + "|" + Queued("0.E").substr(0, 8);
    }
    void Offer(const Text& key, const Text& value) { Program.Settings->WriteXMLString("SubCat", key, value); }
};

TEST(Qualifiers, TakesWhatIsSelected) {
    using End = FakeQualifiers::End;
    const Text cancelled = "64|Email Submission|Canceling submission at user request";
    const Text noNumber = "0|Trawlbeam|Error Submissions Category cmdOK Click: " + ErrorText(13);
    const std::tuple<Text, Text, End, Text, Text> cases[] = {
        {"2", "4", End::OK, "2 4 1234.5 60 | 2 , 4 ,", ""},
        {"02", "4", End::OK, "0 4 1234.5 60 | 0 , 4 ,", ""},
        {"2", "5", End::OK, "2 0 1234.5 60 | 2 , 0 ,", "0 Error setting up Submissions Category: " + ErrorText(9)},
        {"2", "4", End::Cancel, "2 4 0 0 |", cancelled},
        {"2", "4", End::Close, "2 4 0 0 |", cancelled},
        // An id that is no number: the dialog says so and stays until it is closed.
        {"x", "4", End::OK, "x 4 0 0 |", noNumber + "&" + cancelled},
    };
    for (const auto& [category, confidence, how, answer, told] : cases) {
        DialogRig rig;
        rig.Offer("LastCategoryID", category);
        rig.Offer("LastConfidenceID", confidence);
        rig.Qualifiers.How = how;
        EXPECT_EQ(rig.Answer(), answer);
        EXPECT_EQ(Join(rig.TakeShown(), "&") + Join(rig.Log.Take(), "&"), told);
    }
}

TEST(Qualifiers, ShowsTheCategoriesOfTheMomentButTheGeneralOneWhereItStoodLast) {
    DialogRig rig;
    rig.Program.Settings->ReplaceGlobals("CATEGORIES", ParseXml("<C><C ID='1'/><C ID='0'/><C ID='3'/></C>"));
    rig.Qualifiers.Meanwhile = [&](QualifiersDialog& dialog) {
        EXPECT_TRUE(rig.Program.ModalDialogOpen());
        EXPECT_EQ(dialog.Categories().size(), 2U);
        dialog.SelectConfidence(0);
        EXPECT_FALSE(dialog.Confidences()[3].Selected);
    };
    EXPECT_EQ(rig.Answer(), "0 0 1234.5 60 | 0 , 0 ,");
    rig.Answer("C");
    EXPECT_EQ(rig.Qualifiers.Places[0].Top, (768 * 15 - 3000) / 2.0);
    EXPECT_EQ(rig.Qualifiers.Places[1].Top, 1234.5);
    rig.Offer("LastTop", "high");
    rig.Answer("D");
    EXPECT_EQ(rig.TakeShown().back(), "64|Email Submission|Canceling submission at user request");
    EXPECT_FALSE(rig.Program.ModalDialogOpen());
}

TEST(Mail, KnowsItsFields) {
    CEmailMessage mail;
    EXPECT_TRUE(mail.CreateFromText(
        "Subject:a\r\nSUBJECT:  b \r\nFrom : x\r\n\tfrom: tab\r\nbcc\r\nCc: 7\r\nCc:\r\n\r\n\r\n\r\nB"));
    EXPECT_EQ(Join({mail.Subject(), mail.From(), mail.CC(), mail.MessageBody()}, "|"), "b|||\r\n\r\nB");
    // What a second text lacks stays; one that is no mail changes nothing.
    EXPECT_TRUE(mail.CreateFromText("to: x\r\n\r\nsecond"));
    EXPECT_FALSE(mail.CreateFromText("subject: no mail\n\nB"));
    EXPECT_EQ(mail.Subject() + mail.MessageTo() + mail.MessageBody(), "bxsecond");
    EXPECT_EQ(mail.SIZE(), static_cast<std::int32_t>(mail.CombineMessage().size()));
}

}  // namespace
}  // namespace tb
