#include <gtest/gtest.h>

#include "fakes/RecordedLog.h"
#include "shell/cController.h"

namespace tb {
namespace {

using Lines = std::vector<Text>;

class ControllerTest : public ::testing::Test {
protected:
    ControllerTest() {
        m_Controller.LogMessage.Connect([this](const Text& line, LogLevel level) { m_Log.WriteLog(line, level); });
        m_Controller.Shutdown.Connect([this] { m_Log.Lines.push_back("Shutdown"); });
    }
    Lines Done() { return m_Log.Take(); }

    RecordedLog m_Log;
    cController m_Controller;
};

TEST_F(ControllerTest, ExitWaitsForTheLastActivity) {
    EXPECT_TRUE(m_Controller.StartActivity("A", true));
    EXPECT_TRUE(m_Controller.StartActivity("quiet", false));
    m_Controller.NeedToExit(true);
    EXPECT_FALSE(m_Controller.StartActivity("B", false));
    EXPECT_EQ(Done(),
              (Lines{"1 Controller StartActivity (Count = 1): A", "1 Controller NeedToExit = True",
                     "1 Controller.NeedToExit: Deferring shutdown.", "1 Controller StartActivity DECLINED: B"}));
    m_Controller.EndActivity("quiet", false);
    EXPECT_FALSE(m_Controller.CanExit());
    EXPECT_TRUE(Done().empty());
    m_Controller.EndActivity("A", true);
    EXPECT_EQ(Done(), (Lines{"1 Controller EndActivity (Count = 0): A", "Shutdown"}));
    // The owed shutdown stays on record, whatever happens to the wish to exit.
    m_Controller.EndActivity("B", false);
    EXPECT_EQ(Done(), (Lines{"1 Controller EndActivity UNDERRUN: B", "Shutdown"}));
    m_Controller.NeedToExit(false);
    EXPECT_TRUE(m_Controller.StartActivity("C", false));
    m_Controller.EndActivity("C", false);
    EXPECT_EQ(Done(), (Lines{"1 Controller NeedToExit = False", "Shutdown"}));
    EXPECT_EQ(m_Controller.ActivityCount(), 0);
}

TEST_F(ControllerTest, ExitIsGrantedAtOnceWhenNothingRuns) {
    m_Controller.EndActivity("nothing", true);
    m_Controller.ConfirmExit(true);
    m_Controller.NeedToExit(true);
    EXPECT_EQ(Done(), (Lines{"1 Controller EndActivity UNDERRUN: nothing", "1 Controller ConfirmExit = True",
                             "1 Controller NeedToExit = True", "Shutdown"}));
    EXPECT_TRUE(m_Controller.ConfirmExit());
}

}  // namespace
}  // namespace tb
