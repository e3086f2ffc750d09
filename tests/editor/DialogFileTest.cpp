#include "editor/DialogFileEx.h"

#include "ui/UIAutomation.h"
#include "ui/UIFixture.h"

using DialogFileTest = UIFixture;

TEST_F(DialogFileTest, KeepsTheRequest)
{
    DialogFileEx dialog(root(), "Load", false);
    dialog.setCurrentPath("/data/tracks");
    dialog.setFilter(".anim");
    EXPECT_EQ(dialog.getTitle(), "Load");
    EXPECT_FALSE(dialog.isSave());
    EXPECT_EQ(dialog.getCurrentPath(), "/data/tracks");
    EXPECT_EQ(dialog.getFilter(), ".anim");
    EXPECT_TRUE(dialog.getPath().empty());
    DialogFileEx save(root(), "Save", true);
    EXPECT_TRUE(save.isSave());
}

TEST_F(DialogFileTest, QueuedFileAnswerIsAccepted)
{
    root()->getAutomation()->answerFile("/tmp/walk.anim");
    DialogFileEx dialog(root(), "Load", false);
    dialog.setFilter(".anim");
    EXPECT_TRUE(dialog.modality());
    EXPECT_EQ(dialog.getPath(), "/tmp/walk.anim");
    EXPECT_EQ(root()->getAutomation()->pendingAnswers(), 0);
}

TEST_F(DialogFileTest, QueuedCancelLeavesNoPath)
{
    root()->getAutomation()->answerCancel();
    DialogFileEx dialog(root(), "Save", true);
    EXPECT_FALSE(dialog.modality());
    EXPECT_TRUE(dialog.getPath().empty());
}

TEST_F(DialogFileTest, AnswersAreTakenInOrder)
{
    root()->getAutomation()->answerFile("/tmp/a.anim");
    root()->getAutomation()->answerCancel();
    root()->getAutomation()->answerFile("/tmp/c.anim");
    DialogFileEx dialog(root(), "Load", false);
    EXPECT_TRUE(dialog.modality());
    EXPECT_EQ(dialog.getPath(), "/tmp/a.anim");
    // A cancelled run forgets the earlier choice.
    EXPECT_FALSE(dialog.modality());
    EXPECT_TRUE(dialog.getPath().empty());
    EXPECT_TRUE(dialog.modality());
    EXPECT_EQ(dialog.getPath(), "/tmp/c.anim");
}

TEST_F(DialogFileTest, WithoutAnAnswerItCancelsAndSaysSo)
{
    DialogFileEx dialog(root(), "Load", false);
    EXPECT_FALSE(dialog.modality());
    expectLogged("no answer queued for \"Load\"");
    EXPECT_TRUE(dialog.getPath().empty());
}

TEST_F(DialogFileTest, AnAnswerMeantForAnotherDialogCancels)
{
    root()->getAutomation()->answerYes();
    DialogFileEx dialog(root(), "Open", false);
    EXPECT_FALSE(dialog.modality());
    expectLogged("the queued answer is not a file for \"Open\"");
    EXPECT_EQ(root()->getAutomation()->pendingAnswers(), 0);
}
