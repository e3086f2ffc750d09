#include "kit/jLog.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

struct LogState {
    std::mutex lock;
    std::vector<jLogSink*> sinks;
    bool toStderr = true;
};

LogState& state()
{
    static LogState* instance = new LogState;
    return *instance;
}

std::string format(const char* fmt, va_list args)
{
    va_list copy;
    va_copy(copy, args);
    int needed = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    if (needed <= 0)
        return std::string();
    std::string text(static_cast<size_t>(needed), '\0');
    std::vsnprintf(text.data(), text.size() + 1, fmt, args);
    return text;
}

void emit(jLogLevel level, const char* fmt, va_list args)
{
    std::string text = format(fmt, args);
    LogState& s = state();
    std::vector<jLogSink*> sinks;
    {
        std::lock_guard guard(s.lock);
        if (s.toStderr)
            std::fprintf(stderr, "[%s] %s\n", jLog::levelName(level), text.c_str());
        sinks = s.sinks;
    }
    for (jLogSink* sink : sinks)
        sink->write(level, text);
}

} // namespace

#define J_LOG_FORWARD(level)        \
    va_list args;                   \
    va_start(args, format);         \
    emit(level, format, args);      \
    va_end(args)

void jLog::message(const char* format, ...) { J_LOG_FORWARD(jLogLevel::Message); }
void jLog::warning(const char* format, ...) { J_LOG_FORWARD(jLogLevel::Warning); }
void jLog::error(const char* format, ...) { J_LOG_FORWARD(jLogLevel::Error); }
void jLog::fatal(const char* format, ...) { J_LOG_FORWARD(jLogLevel::Fatal); }

void jLog::addSink(jLogSink* sink)
{
    LogState& s = state();
    std::lock_guard guard(s.lock);
    if (std::find(s.sinks.begin(), s.sinks.end(), sink) == s.sinks.end())
        s.sinks.push_back(sink);
}

void jLog::removeSink(jLogSink* sink)
{
    LogState& s = state();
    std::lock_guard guard(s.lock);
    s.sinks.erase(std::remove(s.sinks.begin(), s.sinks.end(), sink), s.sinks.end());
}

bool jLog::setStderr(bool enabled)
{
    LogState& s = state();
    std::lock_guard guard(s.lock);
    bool previous = s.toStderr;
    s.toStderr = enabled;
    return previous;
}

std::string jLog::withoutReporter(const std::string& line)
{
    size_t i = 0;
    while (i < line.size() && (std::isalnum(static_cast<unsigned char>(line[i])) || line[i] == '_' ||
                               line.compare(i, 2, "::") == 0))
        i += line.compare(i, 2, "::") == 0 ? 2 : 1;
    return i < line.size() && line[i] == ':' ? line.substr(i + 1) : line;
}

const char* jLog::levelName(jLogLevel level)
{
    switch (level) {
    case jLogLevel::Message: return "message";
    case jLogLevel::Warning: return "warning";
    case jLogLevel::Error: return "error";
    case jLogLevel::Fatal: return "fatal";
    }
    return "?";
}

jLogBuffer::jLogBuffer()
{
    jLog::addSink(this);
}

jLogBuffer::~jLogBuffer()
{
    jLog::removeSink(this);
}

void jLogBuffer::write(jLogLevel level, const std::string& text)
{
    m_lines.push_back({level, text});
}

size_t jLogBuffer::countAtLeast(jLogLevel level) const
{
    return static_cast<size_t>(std::count_if(m_lines.begin(), m_lines.end(),
                                             [level](const Line& l) { return l.level >= level; }));
}

bool jLogBuffer::contains(const std::string& text) const
{
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [&text](const Line& l) { return l.text.find(text) != std::string::npos; });
}

std::string jLogBuffer::dump() const
{
    std::string text;
    for (const Line& l : m_lines)
        text += std::string(jLog::levelName(l.level)) + ": " + l.text + "\n";
    return text;
}
