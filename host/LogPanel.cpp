#include "LogPanel.h"

#include <QFontDatabase>
#include <QScrollBar>

namespace {

QString line_color(jLogLevel level)
{
    switch (level) {
    case jLogLevel::Message: return "#c8c8c8";
    case jLogLevel::Warning: return "#e0b050";
    default: return "#f05a5a";
    }
}

} // namespace

LogPanel::LogPanel(QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setMaximumBlockCount(MAX_LINES);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    // The panel only shows text; keys belong to the editor and the viewport.
    setFocusPolicy(Qt::NoFocus);
    QFont font("DejaVu Sans Mono");
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(12);
    setFont(font);
    setStyleSheet("QPlainTextEdit { background: #1b1b1d; border: none; }");
    jLog::addSink(this);
}

LogPanel::~LogPanel() { jLog::removeSink(this); }

void LogPanel::write(jLogLevel level, const std::string& text)
{
    if (level >= jLogLevel::Error && m_error_shown)
        m_error_shown(QString::fromUtf8(text.c_str()));
    QString line = QString::fromUtf8(text.c_str()).toHtmlEscaped();
    bool atEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
    appendHtml(QString("<span style=\"color:%1; white-space:pre\">%2 %3</span>")
                   .arg(line_color(level), QString(jLog::levelName(level)).leftJustified(8), line));
    if (atEnd)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}
