#include "editor/MsgBox.h"

#include "ui/UIAutomation.h"
#include "ui/UIFixture.h"

using MsgBoxTest = UIFixture;

TEST_F(MsgBoxTest, YesConfirmsAndNoRefuses)
{
    root()->getAutomation()->answerYes();
    root()->getAutomation()->answerNo();
    EXPECT_TRUE(msgBox("Delete the selected parameters?", "Warning", root(), true));
    EXPECT_FALSE(msgBox("Delete the selected parameters?", "Warning", root(), true));
    EXPECT_EQ(root()->getAutomation()->pendingAnswers(), 0);
}

TEST_F(MsgBoxTest, PlainBoxIsAcknowledgedWithOk)
{
    root()->getAutomation()->answerOk();
    root()->getAutomation()->answerCancel();
    EXPECT_TRUE(msgBox("Cannot be animated.", "Warning", root(), false));
    EXPECT_FALSE(msgBox("Cannot be animated.", "Warning", root(), false));
}

TEST_F(MsgBoxTest, WithoutAnAnswerItRefusesAndSaysSo)
{
    EXPECT_FALSE(msgBox("Delete?", "Warning", root(), true));
    expectLogged("msgBox:no answer queued for \"Warning\"");
}

TEST_F(MsgBoxTest, NullApplicationUsesTheLiveRoot)
{
    root()->getAutomation()->answerYes();
    EXPECT_TRUE(msgBox("Delete?", "Warning", nullptr, true));
}
