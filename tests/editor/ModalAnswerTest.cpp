#include "editor/DialogFileEx.h"
#include "editor/MsgBox.h"
#include "ui/UIAutomation.h"
#include "ui/UIFixture.h"

using ModalAnswerTest = UIFixture;

// Load and save take the queued answers in order; a cancelled run forgets the earlier choice, an
// answer meant for another kind of dialog cancels with a warning, and without an answer a
// headless run cancels and says so instead of blocking.
TEST_F(ModalAnswerTest, FileDialogsTakeQueuedPathsInOrder)
{
    UIAutomation* hook = root()->getAutomation();
    hook->answerFile("/tmp/a.anim");
    hook->answerCancel();
    hook->answerYes();
    hook->answerFile("/tmp/c.anim");
    DialogFileEx dialog(root(), "Load", false);
    EXPECT_TRUE(dialog.modality());
    EXPECT_EQ(dialog.getPath(), "/tmp/a.anim");
    EXPECT_FALSE(dialog.modality());
    EXPECT_TRUE(dialog.getPath().empty());
    EXPECT_FALSE(dialog.modality());
    expectLogged("DialogFile::modality:the queued answer is not a file for \"Load\"; cancelled");
    EXPECT_TRUE(dialog.modality());
    EXPECT_EQ(dialog.getPath(), "/tmp/c.anim");
    EXPECT_FALSE(dialog.modality());
    expectLogged("DialogFile::modality:no answer queued for \"Load\" and no display to ask on; cancelled");
}

// Yes and OK confirm, No and Cancel refuse, and no answer refuses with a warning; without an
// application the live root answers.
TEST_F(ModalAnswerTest, MessageBoxesTakeQueuedAnswers)
{
    UIAutomation* hook = root()->getAutomation();
    hook->answerYes();
    hook->answerNo();
    hook->answerOk();
    hook->answerCancel();
    EXPECT_TRUE(msgBox("Delete the selected parameters?", "Warning", root(), true));
    EXPECT_FALSE(msgBox("Delete the selected parameters?", "Warning", root(), true));
    EXPECT_TRUE(msgBox("Cannot be animated.", "Warning", nullptr, false));
    EXPECT_FALSE(msgBox("Cannot be animated.", "Warning", nullptr, false));
    EXPECT_FALSE(msgBox("Delete?", "Warning", root(), true));
    expectLogged("msgBox:no answer queued for \"Warning\" and no display to ask on; cancelled");
}
