#include "EditorApp.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QTimer>
#include <deque>
#include <filesystem>

#include "support/Scenario.h"

namespace {

// Answers a dialog; returns the titles and texts of the dialogs that opened meanwhile.
using Answer = std::function<std::string(QWidget*)>;
using Button = QMessageBox::StandardButton;

// Calls act and gives each modal dialog that opens meanwhile the next answer, from inside the
// dialog's own event loop; a dialog without an answer left is rejected. Returns the title and text of
// each dialog, one line each, those its answer saw after it.
std::string answering(const std::function<void()>& act, std::deque<Answer> answers)
{
    std::string seen;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            auto* box = qobject_cast<QMessageBox*>(dialog);
            seen += (dialog->windowTitle() + ": " + (box ? box->text() : "") + "\n").toStdString();
            if (answers.empty()) {
                qobject_cast<QDialog*>(dialog)->reject();
            } else {
                seen += answers.front()(dialog);
                answers.pop_front();
            }
        }
        timer.start(0);
    });
    timer.start(0);
    act();
    timer.stop();
    EXPECT_TRUE(answers.empty()) << answers.size() << " answers left; dialogs seen:\n" << seen;
    return seen;
}

// Answers a message box with button; NoButton expects none.
std::deque<Answer> press(Button button)
{
    if (button == QMessageBox::NoButton)
        return {};
    return {[button](QWidget* dialog) {
        qobject_cast<QMessageBox*>(dialog)->button(button)->click();
        return std::string();
    }};
}

// Chooses path in the file dialog, answering its question about replacing a file with replace.
Answer choose(const std::string& path, Button replace)
{
    return [=](QWidget* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        files->selectFile(QString::fromStdString(path));
        std::string seen = answering([files] { static_cast<QDialog*>(files)->accept(); }, press(replace));
        if (files->isVisible()) // the file was kept, so the dialog still asks for a name
            files->reject();
        return seen;
    };
}

// The application with the stand-in module, on a platform without a screen, with dialogs.
class EditorAppTest : public Scenario {
protected:
    void SetUp() override
    {
        static int argc = 1;
        static char* argv[] = {const_cast<char*>("test_host"), nullptr};
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        if (!QApplication::instance())
            new QApplication(argc, argv); // lives for the process, as the toolkit's own would
        Scenario::SetUp();
        setenv(RecoveryStore::FOLDER_VARIABLE, m_recovery.c_str(), 1);
        setenv(EditorPlugin::DIR_VARIABLE, KUVO_BIN_DIR "/stand_in_current", 1);
    }
    void TearDown() override
    {
        unsetenv(RecoveryStore::FOLDER_VARIABLE);
        unsetenv(EditorPlugin::DIR_VARIABLE);
        Scenario::TearDown();
    }

    TempDir m_dir;
    std::string m_recovery = m_dir.file("recovery");
};

// What the user answers at the start and on quitting, and what is left of the edits.
struct QuitCase {
    const char* name;
    Button restore, quit; // quit NoButton: nothing may be asked
    bool closes, saved, kept; // kept: a recovery copy is left for the next start
};

TEST_F(EditorAppTest, QuittingAsksAboutUnsavedEditsRestoredAtTheStart)
{
    const QuitCase cases[] = {
        {"cancel keeps running and the edits", QMessageBox::Yes, QMessageBox::Cancel, false, false, true},
        {"discard quits and keeps the copy", QMessageBox::Yes, QMessageBox::Discard, true, false, true},
        {"save writes the file and quits", QMessageBox::Yes, QMessageBox::Save, true, true, false},
        {"no deletes the copy and nothing is asked", QMessageBox::No, QMessageBox::NoButton, true, false, false},
    };
    std::string document = m_dir.file("walk.anim"), copy = m_recovery + "/walk-1-0.anim", error;
    for (const QuitCase& c : cases) {
        SCOPED_TRACE(c.name);
        std::filesystem::remove_all(m_recovery);
        std::filesystem::remove(document);
        ASSERT_TRUE(RecoveryStore(m_recovery).prepare(copy, document, error) && writeFileText(copy, "modified\n"));
        EditorApp app(HostOptions(), EditorApp::Asking::Always);
        std::string offer = answering([&] { ASSERT_TRUE(app.start()); }, press(c.restore));
        EXPECT_NE(offer.find("Restore unsaved edits: The editor stopped before the edits of " + document), offer.npos);
        EXPECT_EQ(answering([&] { app.window()->close(); }, press(c.quit)),
                  c.quit ? "Unsaved edits: The track has unsaved edits. Save them before quitting?\n" : "");
        EXPECT_EQ(app.window()->isVisible(), !c.closes);
        app.frame(0.0f);
        EXPECT_EQ(app.window()->windowTitle().startsWith(QString::fromStdString(document) + " - Anim* - "),
                  c.restore == QMessageBox::Yes && !c.saved);
        // What a save of the stand-in's edited document writes.
        EXPECT_EQ(readFileText(document), c.saved ? "modified\n" : "<missing>");
        EXPECT_EQ(RecoveryStore(m_recovery).newest().document, c.kept ? document : "");
    }
    expectLogged("quitting drops unsaved edits"); // the runs that kept the edits say where
}

// A Save As: the file chosen, the dialogs after the file dialog, and the file the document then has.
struct SaveAsCase {
    const char* name;
    std::string file;
    Button replace;
    std::string asked, content, document;
};

TEST_F(EditorAppTest, SaveAsWritesTheChosenFileAndAsksBeforeReplacingOne)
{
    EditorApp app(HostOptions(), EditorApp::Asking::Always);
    EXPECT_EQ(answering([&] { ASSERT_TRUE(app.start()); }, {}), "");
    std::string fresh = m_dir.file("fresh.anim"), old = m_dir.file("old.anim"), bad = old + "/x.anim";
    std::string replace = "Save Track As: old.anim already exists.\nDo you want to replace it?\n";
    ASSERT_TRUE(writeFileText(old, "kept\n"));
    const SaveAsCase cases[] = {
        {"a new file", fresh, QMessageBox::NoButton, "", "clean\n", fresh},
        {"no keeps the file", old, QMessageBox::No, replace, "kept\n", fresh},
        {"yes replaces it", old, QMessageBox::Yes, replace, "clean\n", old},
        {"a failed save shows why", bad, QMessageBox::NoButton,
         "Cannot save the track: cannot write " + bad + "\n", "<missing>", old},
    };
    QAction* saveAs = nullptr;
    for (QAction* action : app.window()->findChildren<QAction*>())
        if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S))
            saveAs = action;
    ASSERT_NE(saveAs, nullptr);
    for (const SaveAsCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(answering([&] { saveAs->trigger(); }, {choose(c.file, c.replace)}), "Save Track As: \n" + c.asked);
        EXPECT_EQ(readFileText(c.file), c.content);
        app.frame(0.0f);
        EXPECT_EQ(app.window()->windowTitle().toStdString(), c.document + " - Anim - demo.world - Kuvo Editor");
    }
    expectLogged("cannot write " + bad);
}

} // namespace
