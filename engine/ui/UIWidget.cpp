#include "ui/UIWidget.h"

#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include "UINative.h"
#include "kit/jLog.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UIDialog.h"
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

template <class T>
T* find_in(UIElement* e)
{
    if (!e)
        return nullptr;
    if (T* hit = dynamic_cast<T*>(e))
        return hit;
    for (int i = 0; i < e->getNumChilds(); ++i) {
        if (T* hit = find_in<T>(e->getChild(i)))
            return hit;
    }
    return nullptr;
}

const char* kind_name(UIAnswerKind kind)
{
    switch (kind) {
    case UIAnswerKind::TreeItem: return "tree item";
    case UIAnswerKind::Ok: return "OK";
    case UIAnswerKind::Cancel: return "Cancel";
    case UIAnswerKind::Yes: return "Yes";
    case UIAnswerKind::No: return "No";
    case UIAnswerKind::FilePath: return "file";
    default: return "colour";
    }
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
    if (panel->getPreferredWidth() > 0 && panel->getPreferredHeight() > 0)
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
        jLog::error("%s:%s", "UIWidget::modality", "already running modally");
        return;
    }
    QWidget* w = nativeWidget(this);
    w->setWindowModality(Qt::ApplicationModal);
    w->show();
    QEventLoop loop;
    state()->loop = &loop;
    apply_answers();
    if (w->isVisible() && getRoot()->isHeadless()) {
        jLog::warning("%s:no answer queued for \"%s\", closed as cancelled", "UIWidget::modality", m_title.c_str());
        closeRequested();
    }
    if (w->isVisible())
        loop.exec();
    state()->loop = nullptr;
    w->setWindowModality(Qt::NonModal);
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
    UIDialog* dialog = find_in<UIDialog>(getUI());
    if (answer.kind == UIAnswerKind::TreeItem) {
        UITreeBox* tree = find_in<UITreeBox>(getUI());
        int item = tree ? tree->findItem(answer.text.c_str()) : -1;
        if (item < 0) {
            jLog::error("%s:no tree item \"%s\" in \"%s\"", "UIWidget::modality", answer.text.c_str(), m_title.c_str());
            return false;
        }
        return tree->activateItem(item);
    }
    if ((answer.kind == UIAnswerKind::Ok || answer.kind == UIAnswerKind::Cancel) && dialog) {
        (answer.kind == UIAnswerKind::Ok ? dialog->getOkButton() : dialog->getCancelButton())->click();
        return true;
    }
    if (answer.kind == UIAnswerKind::Ok || answer.kind == UIAnswerKind::Cancel) {
        closeRequested();
        return true;
    }
    jLog::error("%s:a %s answer does not fit \"%s\"", "UIWidget::modality", kind_name(answer.kind), m_title.c_str());
    return false;
}
