#include "editor/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace {

// The clipboard belongs to a graphical application; a console one has none.
QClipboard* clipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard() : nullptr;
}

} // namespace

jString Clipboard::getText()
{
    QClipboard* board = clipboard();
    return board ? jString(board->text().toUtf8().constData()) : jString();
}

void Clipboard::setText(const jString& text)
{
    if (QClipboard* board = clipboard())
        board->setText(QString::fromUtf8(text.c_str()));
}
