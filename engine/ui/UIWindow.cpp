#include "ui/UIWindow.h"

#include <QBoxLayout>
#include <QLabel>

#include "UINative.h"

namespace {

const char* const k_title_bar = "kuvo_title_bar";

UINative* make_window_native()
{
    auto* frame = new QWidget();
    auto* outer = new QVBoxLayout(frame);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    auto* bar = new QLabel(frame);
    bar->setObjectName(k_title_bar);
    bar->setContentsMargins(6, 3, 6, 3);
    bar->setStyleSheet("QLabel { background: #1f1f22; color: #dcdcdc; font-weight: bold; }");
    bar->hide();
    outer->addWidget(bar);
    auto* body = new QWidget(frame);
    makeBoxLayout(body, true, 4, 0);
    outer->addWidget(body, 1);
    return makeNative(frame, body);
}

QLabel* title_bar(const UINative* native)
{
    return native->widget ? native->widget->findChild<QLabel*>(k_title_bar, Qt::FindDirectChildrenOnly) : nullptr;
}

} // namespace

UIWindow::UIWindow(UIRoot* root, const char* title, int width, int height)
    : UIElement(root, make_window_native())
{
    setTitle(title);
    if (width > 0 && height > 0)
        setSize(width, height);
}

void UIWindow::setTitle(const char* title)
{
    m_title = title ? title : "";
    QString text = QString::fromUtf8(m_title.c_str());
    if (QLabel* bar = title_bar(native()))
        bar->setText(text);
    if (QWidget* w = nativeWidget(this))
        w->setWindowTitle(text);
}

void UIWindow::setTitleable(bool titleable)
{
    m_titleable = titleable;
    if (QLabel* bar = title_bar(native()))
        bar->setVisible(titleable);
}

void UIWindow::setSize(int width, int height)
{
    if (QWidget* w = nativeWidget(this))
        w->resize(width, height);
}

void UIWindow::setPosition(int x, int y)
{
    if (QWidget* w = nativeWidget(this))
        w->move(x, y);
}

void UIWindow::show()
{
    if (QWidget* w = nativeWidget(this))
        w->show();
}

void UIWindow::hide()
{
    if (QWidget* w = nativeWidget(this))
        w->hide();
}

bool UIWindow::isShown() const
{
    const QWidget* w = nativeWidget(this);
    return w && w->isVisible();
}
