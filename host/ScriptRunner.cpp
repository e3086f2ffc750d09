#include "ScriptRunner.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <QImage>
#include <QSet>
#include <QWidget>
#include <cstdio>

#include "AutomationScript.h"
#include "TrackEditorPlugin.h"
#include "editor/ButtonLookup.h"
#include "editor/Locale.h"
#include "editor/ToolButton.h"
#include "kit/jLog.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UICheckBox.h"
#include "ui/UIHostBridge.h"
#include "ui/UIRoot.h"

namespace {

bool is_shown(const UIElement* e)
{
    for (; e; e = e->getParent()) {
        if (e->isHidden())
            return false;
    }
    return true;
}

int modifiers_of(const ScriptCommand& c)
{
    return (c.ctrl ? UI_MOD_CTRL : 0) | (c.shift ? UI_MOD_SHIFT : 0) | (c.alt ? UI_MOD_ALT : 0);
}

} // namespace

ScriptRunner::ScriptRunner(const Host& host) : m_host(host) {}

int ScriptRunner::run(const AutomationScript& script, const std::string& name)
{
    m_host.root->getAutomation()->clearAnswers();
    m_answer_lines.clear();
    int failures = 0;
    for (const ScriptCommand& c : script.getCommands()) {
        if (c.verb == ScriptCommand::QUIT)
            break;
        std::string reason;
        bool held = execute(c, reason);
        m_host.root->processEvents();
        track_answers();
        if (!held) {
            std::fprintf(stderr, "%s:%d: %s\n", name.c_str(), c.line, reason.c_str());
            ++failures;
        }
    }
    for (int line : m_answer_lines) {
        std::fprintf(stderr, "%s:%d: no dialog took this answer\n", name.c_str(), line);
        ++failures;
    }
    m_host.root->getAutomation()->clearAnswers();
    return failures == 0 ? 0 : 1;
}

void ScriptRunner::track_answers()
{
    size_t pending = static_cast<size_t>(m_host.root->getAutomation()->pendingAnswers());
    while (m_answer_lines.size() > pending)
        m_answer_lines.pop_front();
}

bool ScriptRunner::execute(const ScriptCommand& c, std::string& reason)
{
    UIAutomation* automation = m_host.root->getAutomation();
    switch (c.verb) {
    case ScriptCommand::FRAMES: frames(c.count); return true;
    case ScriptCommand::IDLE: idle(c.seconds); return true;
    case ScriptCommand::PRESS: return press(c.text, reason);
    case ScriptCommand::KEY: return key(c, reason);
    case ScriptCommand::CLICK:
    case ScriptCommand::DCLICK:
    case ScriptCommand::DRAG:
    case ScriptCommand::WHEEL: return pointer(c, reason);
    case ScriptCommand::TYPE:
        if (automation->typeText(c.text.c_str()))
            return true;
        reason = "no field has the keyboard focus to type into";
        return false;
    case ScriptCommand::ANSWER: return answer(c, reason);
    case ScriptCommand::EXPECT_TITLE: return expect_title(c.text, reason);
    case ScriptCommand::EXPECT_LOG:
        if (m_host.log->contains(c.text))
            return true;
        reason = "no log line contains \"" + c.text + "\"";
        return false;
    case ScriptCommand::EXPECT_NO_ERRORS: return expect_no_errors(reason);
    case ScriptCommand::SCREENSHOT: return screenshot(c.text, reason);
    case ScriptCommand::QUIT: return true;
    }
    return true;
}

void ScriptRunner::frames(int count)
{
    for (int i = 0; i < count; ++i) {
        m_host.frame(FRAME_TIME);
        m_host.root->processEvents();
    }
}

void ScriptRunner::idle(float seconds)
{
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000.0f), &loop, &QEventLoop::quit);
    loop.exec();
}

bool ScriptRunner::press(const std::string& name, std::string& reason)
{
    UIElement* found = ButtonLookup::find(m_host.editor, name.c_str());
    if (!found) {
        reason = "the editor has no button \"" + name + "\"";
        return false;
    }
    if (!is_shown(found)) {
        reason = "button \"" + name + "\" is hidden";
        return false;
    }
    if (auto* tool = dynamic_cast<ToolButton*>(found)) {
        if (tool->click())
            return true;
        reason = "button \"" + name + "\" is disabled";
        return false;
    }
    if (auto* box = dynamic_cast<UICheckBox*>(found)) {
        box->click();
        return true;
    }
    static_cast<UIButton*>(found)->click();
    return true;
}

bool ScriptRunner::pointer(const ScriptCommand& c, std::string& reason)
{
    const UIElement* target = m_host.editor;
    if (!c.view.empty()) {
        target = m_host.api->findView(m_host.editor, c.view.c_str());
        if (!target) {
            reason = "the editor has no view \"" + c.view + "\"";
            return false;
        }
    }
    UIAutomation* automation = m_host.root->getAutomation();
    int x = 0, y = 0;
    automation->elementPoint(target, static_cast<int>(c.points[0]), static_cast<int>(c.points[1]), x, y);
    bool done = false;
    if (c.verb == ScriptCommand::CLICK) {
        done = automation->click(x, y);
    } else if (c.verb == ScriptCommand::DCLICK) {
        done = automation->mouseDClick(x, y);
    } else if (c.verb == ScriptCommand::WHEEL) {
        done = automation->mouseWheel(x, y, static_cast<int>(c.points[2]), modifiers_of(c));
    } else {
        int mods = modifiers_of(c);
        int x2 = 0, y2 = 0;
        automation->elementPoint(target, static_cast<int>(c.points[2]), static_cast<int>(c.points[3]), x2, y2);
        done = automation->mouseDown(x, y, UI_MOUSE_LEFT, mods);
        // A drag arrives as a run of moves, as from a hand.
        const int steps = 8;
        for (int i = 1; done && i <= steps; ++i) {
            done = automation->mouseMove(x + (x2 - x) * i / steps, y + (y2 - y) * i / steps, mods);
            m_host.root->processEvents();
        }
        done = done && automation->mouseUp(x2, y2, UI_MOUSE_LEFT, mods);
    }
    if (!done)
        reason = "no window under the pointer at " + std::to_string(x) + ", " + std::to_string(y);
    return done;
}

bool ScriptRunner::key(const ScriptCommand& c, std::string& reason)
{
    // Keys go to the editor, as after a click into it, unless one of its fields has the focus.
    QWidget* editor = UIHostBridge::widgetOf(m_host.editor);
    QWidget* focused = QApplication::focusWidget();
    if (editor && (!focused || !editor->isAncestorOf(focused)))
        m_host.editor->setFocus();
    if (m_host.root->getAutomation()->keyPress(c.keyCode, modifiers_of(c)))
        return true;
    reason = "no window takes the key";
    return false;
}

bool ScriptRunner::answer(const ScriptCommand& c, std::string& reason)
{
    UIAutomation* automation = m_host.root->getAutomation();
    if (c.text == "choose")
        automation->answerTreeItem(c.argument.c_str());
    else if (c.text == "select")
        automation->answerSelectItem(c.argument.c_str());
    else if (c.text == "press")
        automation->answerButton(tr(c.argument.c_str())); // scripts name buttons by translation key
    else if (c.text == "find")
        automation->answerFind(c.argument.c_str());
    else if (c.text == "screenshot")
        automation->answerScreenshot(c.argument.c_str());
    else if (c.text == "file")
        automation->answerFile(c.argument.c_str());
    else if (c.text == "ok")
        automation->answerOk();
    else if (c.text == "cancel")
        automation->answerCancel();
    else if (c.text == "yes")
        automation->answerYes();
    else if (c.text == "no")
        automation->answerNo();
    else if (c.text == "color")
        automation->answerColor(vec4(c.points[0], c.points[1], c.points[2], c.points[3]));
    else {
        reason = "unknown answer \"" + c.text + "\"";
        return false;
    }
    m_answer_lines.push_back(c.line);
    return true;
}

bool ScriptRunner::expect_title(const std::string& text, std::string& reason) const
{
    std::string title = m_host.api->getTitle(m_host.editor);
    if (title == text)
        return true;
    reason = "title is \"" + title + "\", expected \"" + text + "\"";
    return false;
}

bool ScriptRunner::expect_no_errors(std::string& reason) const
{
    for (const auto& line : m_host.log->lines()) {
        if (line.level >= jLogLevel::Error) {
            reason = std::to_string(m_host.log->countAtLeast(jLogLevel::Error)) +
                     " errors were logged, the first: " + line.text;
            return false;
        }
    }
    return true;
}

bool ScriptRunner::screenshot(const std::string& path, std::string& reason) const
{
    QImage image = m_host.mainWindow->grab().toImage();
    if (!image.save(QString::fromStdString(path), "PNG")) {
        reason = "cannot write screenshot \"" + path + "\"";
        return false;
    }
    // A capture of one flat colour means nothing was painted.
    QSet<QRgb> colours;
    for (int y = 0; y < image.height() && colours.size() < 16; y += 7) {
        for (int x = 0; x < image.width() && colours.size() < 16; x += 7)
            colours.insert(image.pixel(x, y));
    }
    if (colours.size() < 16) {
        reason = "screenshot \"" + path + "\" is blank: " + std::to_string(colours.size()) + " colours";
        return false;
    }
    return true;
}
