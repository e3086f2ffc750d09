#include "ui/DialogColor.h"

#include <QColorDialog>

#include "UINative.h"
#include "kit/jLog.h"
#include "ui/UIAutomation.h"
#include "ui/UIRoot.h"

namespace {

QColorDialog* chooser_of(const UIElement* e) { return static_cast<QColorDialog*>(nativeWidget(e)); }

} // namespace

DialogColor::DialogColor(UIRoot* root, const char* title) : UIElement(root, makeNative(new QColorDialog()))
{
    QColorDialog* chooser = chooser_of(this);
    chooser->setOption(QColorDialog::ShowAlphaChannel, true);
    chooser->setOption(QColorDialog::DontUseNativeDialog, true);
    setTitle(title);
}

void DialogColor::setColor(const vec4& color)
{
    m_color = color;
    chooser_of(this)->setCurrentColor(toQColor(color.x, color.y, color.z, color.w));
}

void DialogColor::setTitle(const char* title)
{
    m_title = title ? title : "";
    chooser_of(this)->setWindowTitle(QString::fromUtf8(m_title.c_str()));
}

bool DialogColor::accept(const vec4& color)
{
    setColor(color);
    UIEventChanged e;
    sigChanged(&e, this);
    return true;
}

bool DialogColor::modality()
{
    UIAnswer answer;
    if (getRoot()->getAutomation()->takeAnswer(answer)) {
        if (answer.kind == UIAnswerKind::Color)
            return accept(answer.color);
        if (answer.kind != UIAnswerKind::Cancel)
            jLog::error("%s:the answer queued for \"%s\" is not a colour", "DialogColor::modality", m_title.c_str());
        return false;
    }
    if (getRoot()->isHeadless()) {
        jLog::warning("%s:no answer queued for \"%s\", closed as cancelled", "DialogColor::modality", m_title.c_str());
        return false;
    }
    QColorDialog* chooser = chooser_of(this);
    if (chooser->exec() != QDialog::Accepted)
        return false;
    QColor c = chooser->currentColor();
    return accept(vec4(c.redF(), c.greenF(), c.blueF(), c.alphaF()));
}
