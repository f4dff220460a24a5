#include <gtest/gtest.h>

#include "submissions/SubmissionRig.h"

namespace tb {
namespace {

struct DialogRig : SubmissionRig {
    Text Stored(const Text& key) { return Program.Settings->GetXMLString("SubCat", key, "none"); }
    Text Answers() {
        return Stored("LastCategoryID") + " " + Stored("LastConfidenceID") + " " + Stored("LastTop") + " " +
               Stored("LastLeft");
    }
    // What the queue file says.
    Text Queued(const Text& name) { return File("InProcess/" + name).substr(0, 8); }
};

TEST(Qualifiers, ShowsTheCategoriesButTheGeneralOne) {
    DialogRig rig;
    rig.Qualifiers.Meanwhile = [&](QualifiersDialog& dialog) {
        EXPECT_TRUE(rig.Program.ModalDialogOpen());
        ASSERT_EQ(dialog.Categories().size(), 2U);
        const QualifiersDialog::Category& first = dialog.Categories()[0];
        EXPECT_EQ(first.Name + first.Caption + first.ToolTip + first.Tag, "optCat0BankBank spoof2");
        EXPECT_TRUE(first.Selected);
        // The groups do not unselect each other.
        dialog.SelectConfidence(0);
        EXPECT_TRUE(dialog.Categories()[0].Selected);
        EXPECT_FALSE(dialog.Confidences()[3].Selected);
    };
    rig.DropMail("H\r\n\r\nB");
    EXPECT_FALSE(rig.Program.ModalDialogOpen());
    EXPECT_EQ(rig.Queued("0.E"), " 2 , 0 ,");
    EXPECT_EQ(rig.Answers(), "2 0 1234.5 60");
    rig.Qualifiers.Meanwhile = nullptr;
    rig.DropMail("H\r\n\r\nC");
    EXPECT_EQ(rig.Qualifiers.Places[0].Top, (768 * 15 - 3000) / 2.0);
    EXPECT_EQ(rig.Qualifiers.Places[1].Top, 1234.5);
}

TEST(Qualifiers, OpensTheHelpAtItsTopicOrSaysThatItCannot) {
    DialogRig rig;
    rig.Program.HelpFile = "Trawlbeam.chm";
    QualifiersDialog dialog(rig.Program, rig.Log);
    dialog.cmdHelp();
    EXPECT_EQ(rig.System.Processes.Started, Lines{"hh.exe -mapid 2000 /app\\Trawlbeam.chm"});
    EXPECT_EQ(rig.Log.Take(), Lines{});
    rig.System.Processes.StartedNumber = 0;
    dialog.cmdHelp();
    EXPECT_EQ(rig.Log.Take(), Lines{"0 Error starting help: " + Error(ErrorNumber::FileNotFound).Line()});
}

TEST(Qualifiers, TakesWhatIsSelected) {
    using End = FakeQualifiers::End;
    const Text none = "0 Error setting up Submissions Category: " + ErrorText(9);
    const Text cancelled = "64|Email Submission|Canceling submission at user request";
    const Text noNumber = "0|Trawlbeam|Error Submissions Category cmdOK Click: " + ErrorText(13);
    const struct {
        Text Category, Confidence;
        End How;
        Text Answers, Queued;
        Lines Shown;
        Text Logged;
    } cases[] = {
        {"2", "4", End::OK, "2 4 1234.5 60", " 2 , 4 ,", {}, ""},
        {"02", "4", End::OK, "0 4 1234.5 60", " 0 , 4 ,", {}, ""},
        {"2", "5", End::OK, "2 0 1234.5 60", " 2 , 0 ,", {}, none},
        {"2", "4", End::Cancel, "2 4 0 0", "", {cancelled}, ""},
        {"2", "4", End::Close, "2 4 0 0", "", {cancelled}, ""},
        // An id that is no number: the dialog says so and stays until it is closed.
        {"x", "4", End::OK, "x 4 0 0", "", {noNumber, cancelled}, ""},
    };
    for (const auto& [category, confidence, how, answers, queued, shown, logged] : cases) {
        DialogRig rig;
        rig.Program.Settings->WriteXMLString("SubCat", "LastCategoryID", category);
        rig.Program.Settings->WriteXMLString("SubCat", "LastConfidenceID", confidence);
        rig.Qualifiers.How = how;
        rig.DropMail("H\r\n\r\nB");
        EXPECT_EQ(rig.Answers(), answers) << category << confidence;
        EXPECT_EQ(rig.Queued("0.E"), queued);
        EXPECT_EQ(rig.TakeShown(), shown);
        EXPECT_EQ(Join(rig.Log.Take(), "&"), logged);
    }
}

TEST(Qualifiers, NeedsNoReferenceDataAndMindsABadPlace) {
    DialogRig rig;
    rig.Program.Settings->ReplaceGlobals("CATEGORIES", ParseXml("<C><C ID='1'/></C>"));
    rig.Start();
    rig.DB->SubmitEvilURL("http://a.example");
    EXPECT_EQ(rig.Queued("0.U"), " 0 , 3 ,");
    rig.Program.Settings->ReplaceGlobals("CATEGORIES", ParseXml("<C><C ID='2'/><C ID='3'/></C>"));
    rig.Qualifiers.Meanwhile = [](QualifiersDialog& dialog) {
        EXPECT_EQ(dialog.Categories().size(), 2U) << "late data";
    };
    rig.DB->SubmitEvilURL("http://late.example");
    rig.Program.Settings->WriteXMLString("SubCat", "LastTop", "high");
    rig.DB->SubmitEvilURL("http://b.example");
    EXPECT_EQ(rig.TakeShown().back(), "64|URL Submission|Canceling submission at user request");
    EXPECT_FALSE(rig.Program.ModalDialogOpen());
}

}  // namespace
}  // namespace tb
