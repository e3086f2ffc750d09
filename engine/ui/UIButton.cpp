#include "ui/UIButton.h"

#include <QCursor>
#include <QPixmap>
#include <QPushButton>

#include "UINative.h"
#include "kit/jLog.h"

UIButton::UIButton(UIRoot* root, const char* text, const char* icon)
    : UIElement(root, makeNative(new QPushButton()))
{
    auto* button = static_cast<QPushButton*>(nativeWidget(this));
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, button, [this]() {
        UIEventMouse e;
        e.x = QCursor::pos().x();
        e.y = QCursor::pos().y();
        e.button = UI_MOUSE_LEFT;
        sigClick(&e, this);
    });
    setText(text);
    if (icon)
        setIcon(icon);
}

void UIButton::setText(const char* text)
{
    m_text = text ? text : "";
    if (auto* button = static_cast<QPushButton*>(nativeWidget(this)))
        button->setText(QString::fromUtf8(m_text.c_str()));
}

bool UIButton::setIcon(const char* path)
{
    QPixmap image;
    if (!path || !image.load(QString::fromUtf8(path))) {
        jLog::error("%s:cannot read icon \"%s\"", "UIButton::setIcon", path ? path : "");
        return false;
    }
    if (auto* button = static_cast<QPushButton*>(nativeWidget(this)))
        button->setIcon(QIcon(image));
    return true;
}

void UIButton::click()
{
    if (auto* button = static_cast<QPushButton*>(nativeWidget(this)))
        button->click();
}
