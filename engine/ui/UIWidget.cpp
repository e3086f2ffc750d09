#include "ui/UIWidget.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>
#include <QVBoxLayout>

#include "UINative.h"
#include "kit/jLog.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UIDialog.h"
#include "ui/UIEditLine.h"
#include "ui/UIRoot.h"
#include "ui/UITreeBox.h"

struct UIWidgetState {
    QEventLoop* loop = nullptr;
    bool forceClose = true;
    bool escClose = true;
};

namespace {

// The native window: its close button and Escape go to the widget's own rules.
class WidgetDialog : public QDialog {
public:
    explicit WidgetDialog(UIWidget* owner) : m_owner(owner) {}

    UIWidgetState state;

protected:
    void closeEvent(QCloseEvent* e) override
    {
        e->ignore();
        m_owner->closeRequested();
    }
    void keyPressEvent(QKeyEvent* e) override
    {
        if (e->key() != Qt::Key_Escape)
            return QDialog::keyPressEvent(e);
        if (state.escClose)
            m_owner->closeRequested();
        e->accept();
    }

private:
    UIWidget* m_owner;
};

UINative* make_widget_native(UIWidget* owner, const UIRect& rect, int style)
{
    auto* dialog = new WidgetDialog(owner);
    if (style == UI_WIDGET_TOOL)
        dialog->setWindowFlag(Qt::Tool, true);
    dialog->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addStretch(1);
    if (rect.width > 0 && rect.height > 0)
        dialog->setGeometry(rect.x, rect.y, rect.width, rect.height);
    return makeNative(dialog);
}

// The first T at or below e, in child order, that accept takes.
template <class T, class Accept>
T* find_in(UIElement* e, const Accept& accept)
{
    if (!e)
        return nullptr;
    if (T* hit = dynamic_cast<T*>(e); hit && accept(hit))
        return hit;
    for (int i = 0; i < e->getNumChilds(); ++i) {
        if (T* hit = find_in<T>(e->getChild(i), accept))
            return hit;
    }
    return nullptr;
}

template <class T>
T* find_in(UIElement* e)
{
    return find_in<T>(e, [](T*) { return true; });
}

const char* const k_modality = "UIWidget::modality";

// How the messages name the kinds of answer a UIWidget does not take.
const char* kind_name(UIAnswerKind kind)
{
    switch (kind) {
    case UIAnswerKind::Yes: return "Yes";
    case UIAnswerKind::No: return "No";
    case UIAnswerKind::FilePath: return "file";
    default: return "colour";
    }
}

// Makes the item at the answer's path current in the panel's first tree box and, for a TreeItem
// answer, activates it; false (logged) when no item lies there.
bool answer_tree(UIElement* panel, const jString& title, const UIAnswer& answer)
{
    UITreeBox* tree = find_in<UITreeBox>(panel);
    int item = tree ? tree->findItem(answer.text.c_str()) : -1;
    if (item < 0) {
        jLog::error("%s:no tree item \"%s\" in \"%s\"", k_modality, answer.text.c_str(), title.c_str());
        return false;
    }
    return answer.kind == UIAnswerKind::TreeItem ? tree->activateItem(item) : tree->setCurrentItem(item);
}

// Clicks the first shown button of the panel with this text; false (logged) when none is shown.
bool press_button(UIElement* panel, const jString& title, const char* text)
{
    auto shown = [text](UIButton* b) { return b->getText() == text && nativeWidget(b)->isVisible(); };
    UIButton* button = find_in<UIButton>(panel, shown);
    if (!button) {
        jLog::error("%s:no button \"%s\" shown in \"%s\"", k_modality, text, title.c_str());
        return false;
    }
    button->click();
    return true;
}

// Types text into the panel's first edit line (its search box), raising sigChanged as the user's
// typing does; false (logged) when the panel has no edit line.
bool type_search(UIElement* panel, const jString& title, const char* text)
{
    UIEditLine* search = find_in<UIEditLine>(panel);
    if (!search) {
        jLog::error("%s:no search box in \"%s\"", k_modality, title.c_str());
        return false;
    }
    search->setText(text);
    UIEventChanged e;
    search->sigChanged(&e, search);
    return true;
}

} // namespace

UIWidget::UIWidget(UIRoot* root, const UIRect& rect, int style) : UIElement(root, make_widget_native(this, rect, style)) {}

UIWidget::~UIWidget() { close(); }

UIWidgetState* UIWidget::state() const { return &static_cast<WidgetDialog*>(nativeWidget(this))->state; }

void UIWidget::setUI(UIElement* panel, const char* title)
{
    if (!panel) {
        jLog::error("%s:%s", "UIWidget::setUI", "panel");
        return;
    }
    if (UIElement* old = getUI())
        removeChild(old);
    addChild(panel, UI_EXPAND_BOTH);
    setTitle(title);
    if (panel->hasPreferredSize())
        setSize(panel->getPreferredWidth(), panel->getPreferredHeight());
}

UIElement* UIWidget::getUI() const { return getChild(0); }

void UIWidget::setTitle(const char* title)
{
    m_title = title ? title : "";
    nativeWidget(this)->setWindowTitle(QString::fromUtf8(m_title.c_str()));
}

void UIWidget::setIME(bool enabled) { nativeWidget(this)->setAttribute(Qt::WA_InputMethodEnabled, enabled); }
void UIWidget::setForceClose(bool force) { state()->forceClose = force; }
void UIWidget::setEscClose(bool close) { state()->escClose = close; }
void UIWidget::setSize(int width, int height) { nativeWidget(this)->resize(width, height); }
void UIWidget::setPosition(int x, int y) { nativeWidget(this)->move(x, y); }

void UIWidget::center()
{
    QWidget* w = nativeWidget(this);
    UIRect r = Widget::MakeCenter(w->width(), w->height());
    w->move(r.x, r.y);
}

void UIWidget::show()
{
    QWidget* w = nativeWidget(this);
    w->setWindowModality(Qt::NonModal);
    w->show();
}

void UIWidget::hide() { nativeWidget(this)->hide(); }

bool UIWidget::isShown() const { return nativeWidget(this)->isVisible(); }

bool UIWidget::isModal() const { return state()->loop != nullptr; }

void UIWidget::modality()
{
    if (isModal()) {
        jLog::error("%s:%s", k_modality, "already running modally");
        return;
    }
    QWidget* w = nativeWidget(this);
    // The window that was active gets the activation (and with it the keyboard focus) back.
    QPointer<QWidget> before = QApplication::activeWindow();
    w->setWindowModality(Qt::ApplicationModal);
    w->show();
    QEventLoop loop;
    state()->loop = &loop;
    apply_answers();
    if (w->isVisible() && getRoot()->isHeadless()) {
        jLog::warning("%s:no answer queued for \"%s\", closed as cancelled", k_modality, m_title.c_str());
        closeRequested();
    }
    if (w->isVisible())
        loop.exec();
    state()->loop = nullptr;
    w->setWindowModality(Qt::NonModal);
    if (before && before != w)
        before->activateWindow();
}

void UIWidget::close()
{
    QWidget* w = nativeWidget(this);
    if (!w)
        return;
    w->hide();
    if (state()->loop)
        state()->loop->quit();
}

void UIWidget::release()
{
    close();
    while (getNumChilds() > 0)
        removeChild(getChild(0));
}

void UIWidget::closeRequested()
{
    if (state()->forceClose)
        release();
    else
        close();
}

void UIWidget::apply_answers()
{
    UIAutomation* automation = getRoot()->getAutomation();
    UIAnswer answer;
    while (nativeWidget(this)->isVisible() && automation->takeAnswer(answer)) {
        if (!apply_answer(answer)) {
            closeRequested();
            return;
        }
    }
}

// Acts on the panel as the user would: the panel's own handlers decide what the answer means.
bool UIWidget::apply_answer(const UIAnswer& answer)
{
    switch (answer.kind) {
    case UIAnswerKind::TreeItem:
    case UIAnswerKind::TreeSelect: return answer_tree(getUI(), m_title, answer);
    case UIAnswerKind::Button: return press_button(getUI(), m_title, answer.text.c_str());
    case UIAnswerKind::Find: return type_search(getUI(), m_title, answer.text.c_str());
    case UIAnswerKind::Screenshot: return getRoot()->getAutomation()->saveScreenshot(this, answer.text.c_str());
    case UIAnswerKind::Ok:
    case UIAnswerKind::Cancel:
        if (UIDialog* dialog = find_in<UIDialog>(getUI()))
            (answer.kind == UIAnswerKind::Ok ? dialog->getOkButton() : dialog->getCancelButton())->click();
        else
            closeRequested();
        return true;
    default:
        jLog::error("%s:a %s answer does not fit \"%s\"", k_modality, kind_name(answer.kind), m_title.c_str());
        return false;
    }
}
