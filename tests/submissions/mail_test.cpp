#include <gtest/gtest.h>

#include "submissions/CEmailMessage.h"

namespace tb {
namespace {

TEST(Mail, IsTakenApartAtItsFirstEmptyLine) {
    const struct {
        Text Mail;
        bool IsMail;
        Text Headers;
        Text Body;
    } cases[] = {
        {"\r\n\r\nX", true, "", "X"},
        {"A: b\r\n\r\n", true, "A: b", ""},
        {"H\r\n\r\n\r\n\r\nB", true, "H", "\r\n\r\nB"},
        {Text("H\0\r\n\r\nB\0", 8), true, Text("H\0", 2), Text("B\0", 2)},
        {"A: b\n\nX", false, "", ""},
        {"", false, "", ""},
    };
    for (const auto& [text, isMail, headers, body] : cases) {
        CEmailMessage mail;
        EXPECT_EQ(mail.CreateFromText(text), isMail) << text;
        EXPECT_EQ(mail.Headers(), headers);
        EXPECT_EQ(mail.MessageBody(), body);
        EXPECT_EQ(mail.CombineMessage(), isMail ? text : "");
        EXPECT_EQ(mail.SIZE(), isMail ? static_cast<std::int32_t>(text.size()) : 0);
    }
}

TEST(Mail, KnowsItsFields) {
    CEmailMessage mail;
    EXPECT_TRUE(mail.CreateFromText(
        "Subject:a\r\nSUBJECT:  b \r\nTo : x\r\n\tfrom: tab\r\nDate: 1 Jan 10:20:30\r\n folded: y\r\nbcc\r\n"
        "Return-Path: 1\r\nReceived: 2\r\nMessage-ID: \t3\r\nFrom: 4\r\nReply-To: 5\r\nSender: 6\r\nCc: 7\r\n"
        "In-Reply-To: 8\r\nReferences: 9\r\nKeywords: 10\r\nComments: 11\r\nEncrypted: 12\r\nCc:\r\n\r\nB"));
    EXPECT_EQ(Join({mail.Subject(), mail.MessageTo(), mail.SendDate(), mail.BCC(), mail.ReturnPath(), mail.Received(),
                    mail.MessageID(), mail.From(), mail.ReplyTo(), mail.Sender(), mail.CC(), mail.InReplyTo(),
                    mail.References(), mail.Keywords(), mail.Comments(), mail.Encrypted()},
                   "|"),
              "b||1 Jan 10:20:30||1|2|\t3|4|5|6||8|9|10|11|12");
    // What a second text lacks stays; one that is no mail changes nothing.
    EXPECT_TRUE(mail.CreateFromText("to: x\r\n\r\nsecond"));
    EXPECT_FALSE(mail.CreateFromText("subject: no mail"));
    EXPECT_EQ(mail.Subject() + mail.MessageTo() + mail.MessageBody(), "bxsecond");
}

}  // namespace
}  // namespace tb
