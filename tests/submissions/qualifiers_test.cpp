#include <gtest/gtest.h>

#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

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

TEST(Qualifiers, ShowsTheCategoriesButTheGeneralOne) {
    DialogRig rig;
    rig.Qualifiers.Meanwhile = [&](QualifiersDialog& dialog) {
        EXPECT_TRUE(rig.Program.ModalDialogOpen());
        ASSERT_EQ(dialog.Categories().size(), 2U);
        const QualifiersDialog::Category& first = dialog.Categories()[0];
        EXPECT_EQ(first.Name + first.Caption + first.ToolTip + first.Tag, "optCat0BankBank spoof2");
        dialog.SelectConfidence(0);
        EXPECT_FALSE(dialog.Confidences()[3].Selected);
    };
    EXPECT_EQ(rig.Answer(), "2 0 1234.5 60 | 2 , 0 ,");
    rig.Answer("C");
    EXPECT_EQ(rig.Qualifiers.Places[0].Top, (768 * 15 - 3000) / 2.0);
    EXPECT_EQ(rig.Qualifiers.Places[1].Top, 1234.5);
}

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

TEST(Qualifiers, TakesReferenceDataThatComeLaterAndMindsABadPlace) {
    DialogRig rig;
    rig.Program.Settings->ReplaceGlobals("CATEGORIES", ParseXml("<C><C ID='1'/></C>"));
    rig.Start();
    EXPECT_EQ(rig.Answer(), "0 3 1234.5 60 | 0 , 3 ,");
    rig.Program.Settings->ReplaceGlobals("CATEGORIES", ParseXml("<C><C ID='0'/><C ID='3'/></C>"));
    rig.Offer("LastTop", "high");
    rig.Answer("C");
    EXPECT_EQ(rig.TakeShown().back(), "64|Email Submission|Canceling submission at user request");
    EXPECT_FALSE(rig.Program.ModalDialogOpen());
    rig.Offer("LastTop", "0");
    rig.Qualifiers.Meanwhile = [](QualifiersDialog& dialog) { EXPECT_EQ(dialog.Categories().size(), 2U); };
    EXPECT_EQ(rig.Answer("D"), "0 3 1234.5 60 | 0 , 3 ,");
}

}  // namespace
}  // namespace tb
