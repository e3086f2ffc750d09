#include "ui/UILabel.h"

#include <QLabel>

#include "UINative.h"

UILabel::UILabel(UIRoot* root, const char* text) : UIElement(root, makeNative(new QLabel()))
{
    setText(text);
}

void UILabel::setText(const char* text)
{
    m_text = text ? text : "";
    if (auto* label = static_cast<QLabel*>(nativeWidget(this)))
        label->setText(QString::fromUtf8(m_text.c_str()));
}

void UILabel::setTextColor(const vec4& color)
{
    if (QWidget* label = nativeWidget(this)) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, toQColor(color.x, color.y, color.z, color.w));
        label->setPalette(palette);
    }
}
