#include "ui/UIEditLine.h"

#include <QLineEdit>
#include <QRegularExpressionValidator>

#include "UINative.h"
#include "kit/jLog.h"

namespace {

QLineEdit* line_of(const UIElement* e)
{
    QWidget* w = nativeWidget(e);
    return w ? (qobject_cast<QLineEdit*>(w) ? static_cast<QLineEdit*>(w) : w->findChild<QLineEdit*>()) : nullptr;
}

const char* pattern_of(int mode)
{
    switch (mode) {
    case UI_EDIT_INTEGER: return "[-+]?[0-9]*";
    case UI_EDIT_HEX: return "(0[xX])?[0-9a-fA-F]*";
    case UI_EDIT_NUMBER: return "[-+]?[0-9]*\\.?[0-9]*([eE][-+]?[0-9]*)?";
    default: return nullptr;
    }
}

} // namespace

UIEditLine::UIEditLine(UIRoot* root, const char* text) : UIEditLine(root, makeNative(new QLineEdit()), text) {}

UIEditLine::UIEditLine(UIRoot* root, UINative* native, const char* text) : UIElement(root, native)
{
    connect_native();
    setText(text);
}

void UIEditLine::connect_native()
{
    QLineEdit* line = line_of(this);
    QObject::connect(line, &QLineEdit::textChanged, line,
                     [this](const QString& text) { m_text = text.toUtf8().constData(); });
    // Qt announces an edit before it announces the new text, so the edit carries the text too.
    QObject::connect(line, &QLineEdit::textEdited, line, [this](const QString& text) {
        m_text = text.toUtf8().constData();
        UIEventChanged e;
        sigChanged(&e, this);
    });
    QObject::connect(line, &QLineEdit::editingFinished, line, [this]() { sigCommit(); });
}

void UIEditLine::setText(const char* text)
{
    m_text = text ? text : "";
    if (QLineEdit* line = line_of(this))
        line->setText(QString::fromUtf8(m_text.c_str()));
}

void UIEditLine::setMode(int mode)
{
    if (mode < UI_EDIT_TEXT || mode > UI_EDIT_NUMBER) {
        jLog::error("%s:unknown edit mode %d", "UIEditLine::setMode", mode);
        return;
    }
    m_mode = mode;
    QLineEdit* line = line_of(this);
    const QValidator* old = line->validator();
    const char* pattern = pattern_of(mode);
    line->setValidator(pattern ? new QRegularExpressionValidator(QRegularExpression(pattern), line) : nullptr);
    delete old;
}

void UIEditLine::setReadOnly(bool readOnly) { line_of(this)->setReadOnly(readOnly); }

bool UIEditLine::isReadOnly() const { return line_of(this)->isReadOnly(); }
