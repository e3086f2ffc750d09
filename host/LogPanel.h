#pragma once

#include <QPlainTextEdit>
#include <functional>

#include "kit/jLog.h"

// The log panel: every jLog line as it is written, warnings in amber and errors in red.
class LogPanel : public QPlainTextEdit, public jLogSink {
public:
    // Attaches itself to the logger.
    explicit LogPanel(QWidget* parent = nullptr);
    // Detaches itself from the logger.
    ~LogPanel() override;

    void write(jLogLevel level, const std::string& text) override;
    // Makes every error line also go to shown (the status bar).
    void setErrorShown(std::function<void(const QString&)> shown) { m_error_shown = std::move(shown); }

    // The most lines the panel keeps; older ones scroll away.
    static constexpr int MAX_LINES = 5000;

private:
    std::function<void(const QString&)> m_error_shown;
};
