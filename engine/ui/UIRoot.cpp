#include "ui/UIRoot.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

#include "UIInputRouter.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UIAutomation.h"
#include "ui/UIElement.h"

struct UIRootPrivate {
    UIInputRouter* router = nullptr;
    UIElement* focus = nullptr;
};

namespace {

const char* const k_file = "engine/ui/UIRoot";
UIRoot* s_root = nullptr;

int s_argc = 1;
char s_arg0[] = "kuvo";
char* s_argv[] = {s_arg0, nullptr};

// A dark palette for long sessions in front of a 3D view: neutral greys, light text, a muted blue
// for selection.
QPalette dark_palette()
{
    QPalette p;
    const QColor window(45, 45, 48), base(30, 30, 30), text(220, 220, 220), button(60, 60, 64);
    const QColor disabled(127, 127, 127), highlight(61, 111, 180);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::ToolTipBase, window);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, disabled);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, button);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, QColor(255, 80, 80));
    p.setColor(QPalette::Link, QColor(74, 144, 217));
    p.setColor(QPalette::Highlight, highlight);
    p.setColor(QPalette::HighlightedText, Qt::white);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, disabled);
    return p;
}

// The interface uses DejaVu Sans from the system fonts so that text measures the same everywhere.
// The application outlives every root, so the fonts are registered with it once.
void load_fonts()
{
    static bool loaded = false;
    if (loaded)
        return;
    loaded = true;
    for (const char* file : {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf"}) {
        QString path = QString("/usr/share/fonts/truetype/dejavu/") + file;
        if (QFontDatabase::addApplicationFont(path) < 0)
            jLog::warning("%s:cannot load font \"%s\"", "UIRoot::UIRoot", path.toUtf8().constData());
    }
    QFont font("DejaVu Sans");
    font.setPixelSize(12);
    QApplication::setFont(font);
}

} // namespace

UIRoot::UIRoot() : m_private(jNew<UIRootPrivate>(k_file, __LINE__, "UIRoot::UIRoot"))
{
    if (s_root)
        jLog::error("%s:%s", "UIRoot::UIRoot", "only one root at a time");
    s_root = this;
    // Qt cannot start a second application after the first one ended, so the application the
    // first root starts lives until the process exits and later roots join it.
    if (!QApplication::instance())
        new QApplication(s_argc, s_argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setPalette(dark_palette());
    load_fonts();
    m_private->router = new UIInputRouter(this);
    QApplication::instance()->installEventFilter(m_private->router);
    m_automation = jNew<UIAutomation>(k_file, __LINE__, "UIRoot::UIRoot", this);
}

UIRoot::~UIRoot()
{
    release();
    jDelete(m_automation, k_file, __LINE__, "UIRoot::~UIRoot");
    QApplication::instance()->removeEventFilter(m_private->router);
    delete m_private->router;
    jDelete(m_private, k_file, __LINE__, "UIRoot::~UIRoot");
    if (s_root == this)
        s_root = nullptr;
}

UIRoot* UIRoot::get() { return s_root; }

void UIRoot::release()
{
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->isVisible())
            w->hide();
    }
    m_automation->clearAnswers();
    m_private->focus = nullptr;
}

void UIRoot::processEvents() { QApplication::processEvents(); }

bool UIRoot::isHeadless() const
{
    QString platform = QGuiApplication::platformName();
    return platform == "offscreen" || platform == "minimal";
}

UIElement* UIRoot::getFocus() const { return m_private->focus; }

void UIRoot::setFocusElement(UIElement* element)
{
    UIElement* old = m_private->focus;
    if (old == element)
        return;
    m_private->focus = element;
    if (old) {
        UIEventFocus lost{false};
        old->sigFocus(&lost, old);
    }
    if (element) {
        UIEventFocus gained{true};
        element->sigFocus(&gained, element);
    }
}

void UIRoot::forgetElement(UIElement* element)
{
    if (m_private->focus == element)
        m_private->focus = nullptr;
}
