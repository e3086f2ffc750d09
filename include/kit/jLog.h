#pragma once

#include <string>
#include <vector>

#define J_PRINTF_FORMAT(fmt, args) __attribute__((format(printf, fmt, args)))

enum class jLogLevel { Message, Warning, Error, Fatal };

// Receives every formatted log line. Sinks are called on the logging thread, in the order they
// were added.
class jLogSink {
public:
    virtual ~jLogSink() = default;
    virtual void write(jLogLevel level, const std::string& text) = 0;
};

// The engine's logger: printf-style formats, written to stderr (unless silenced) and to every sink.
// By convention the first conversion is the qualified name of the reporting function.
class jLog {
public:
    static void message(const char* format, ...) J_PRINTF_FORMAT(1, 2);
    static void warning(const char* format, ...) J_PRINTF_FORMAT(1, 2);
    static void error(const char* format, ...) J_PRINTF_FORMAT(1, 2);
    // Logs at the highest level; it does not stop the program.
    static void fatal(const char* format, ...) J_PRINTF_FORMAT(1, 2);

    // Adds a sink; adding one twice has no effect.
    static void addSink(jLogSink* sink);
    // Removes a sink; an unknown sink is ignored.
    static void removeSink(jLogSink* sink);
    // Turns the copy of every line to stderr on or off; returns the previous setting.
    static bool setStderr(bool enabled);
    // Returns the level's name as it appears on stderr ("message", "warning", "error", "fatal").
    static const char* levelName(jLogLevel level);
    // Returns a line without the name of the function that reported it, for a user to read
    // ("World::load:a.world:3:1: reason" gives "a.world:3:1: reason"); a line that does not start
    // with a name and a colon is returned as it is.
    static std::string withoutReporter(const std::string& line);
};

// A sink that keeps every line in memory while it is attached: the host's log panel and the tests
// read it.
class jLogBuffer : public jLogSink {
public:
    struct Line {
        jLogLevel level;
        std::string text;
    };

    // Attaches itself to the logger.
    jLogBuffer();
    // Detaches itself from the logger.
    ~jLogBuffer() override;
    jLogBuffer(const jLogBuffer&) = delete;
    jLogBuffer& operator=(const jLogBuffer&) = delete;

    void write(jLogLevel level, const std::string& text) override;

    const std::vector<Line>& lines() const { return m_lines; }
    // Returns how many lines at level or above were logged.
    size_t countAtLeast(jLogLevel level) const;
    // Returns whether any line contains text.
    bool contains(const std::string& text) const;
    // Returns every line as "level: text", one per line.
    std::string dump() const;
    void clear() { m_lines.clear(); }

private:
    std::vector<Line> m_lines;
};
