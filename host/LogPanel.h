#pragma once

#include <QPlainTextEdit>

#include "kit/jLog.h"

// The log panel: every jLog line as it is written, warnings in amber and errors in red.
class LogPanel : public QPlainTextEdit, public jLogSink {
public:
    // Attaches itself to the logger.
    explicit LogPanel(QWidget* parent = nullptr);
    // Detaches itself from the logger.
    ~LogPanel() override;

    void write(jLogLevel level, const std::string& text) override;

    // The most lines the panel keeps; older ones scroll away.
    static constexpr int MAX_LINES = 5000;
};
