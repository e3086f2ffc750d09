#include "ui/UICheckBox.h"

#include <QCheckBox>

#include "UINative.h"

UICheckBox::UICheckBox(UIRoot* root, const char* text) : UIElement(root, makeNative(new QCheckBox()))
{
    auto* box = static_cast<QCheckBox*>(nativeWidget(this));
    QObject::connect(box, &QCheckBox::clicked, box, [this](bool) {
        UIEventChanged e;
        sigChanged(&e, this);
    });
    setText(text);
}

void UICheckBox::setText(const char* text)
{
    m_text = text ? text : "";
    static_cast<QCheckBox*>(nativeWidget(this))->setText(QString::fromUtf8(m_text.c_str()));
}

void UICheckBox::setChecked(bool checked) { static_cast<QCheckBox*>(nativeWidget(this))->setChecked(checked); }

void UICheckBox::click() { static_cast<QCheckBox*>(nativeWidget(this))->click(); }

bool UICheckBox::isChecked() const { return static_cast<const QCheckBox*>(nativeWidget(this))->isChecked(); }
