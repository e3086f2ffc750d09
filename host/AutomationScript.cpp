#include "AutomationScript.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "ui/UIEvent.h"

namespace {

// The toolkit's key codes (UI_KEY_CODE) of the named keys; letters use their upper-case character
// codes and digits theirs.
const std::map<std::string, int>& namedKeys()
{
    static const std::map<std::string, int> keys = {
        {"space", UI_KEY_SPACE},   {"enter", UI_KEY_ENTER}, {"escape", UI_KEY_ESCAPE}, {"tab", UI_KEY_TAB},
        {"backspace", UI_KEY_BACKSPACE}, {"delete", UI_KEY_DELETE}, {"home", UI_KEY_HOME}, {"end", UI_KEY_END},
        {"left", UI_KEY_LEFT},     {"right", UI_KEY_RIGHT}, {"up", UI_KEY_UP},         {"down", UI_KEY_DOWN},
    };
    return keys;
}

std::vector<std::string> splitWords(const std::string& line)
{
    std::istringstream in(line);
    std::vector<std::string> words;
    std::string word;
    while (in >> word)
        words.push_back(word);
    return words;
}

// The text after the first word, with the separating blanks removed.
std::string restAfterVerb(const std::string& line)
{
    size_t start = line.find_first_not_of(" \t");
    size_t gap = line.find_first_of(" \t", start);
    if (gap == std::string::npos)
        return std::string();
    size_t rest = line.find_first_not_of(" \t", gap);
    if (rest == std::string::npos)
        return std::string();
    size_t last = line.find_last_not_of(" \t\r");
    return line.substr(rest, last - rest + 1);
}

bool parseNumber(const std::string& word, float& out)
{
    char* end = nullptr;
    out = std::strtof(word.c_str(), &end);
    return !word.empty() && end && *end == '\0';
}

// Reads `count` numbers from words starting at first; false when any is missing or malformed.
bool parseNumbers(const std::vector<std::string>& words, size_t first, size_t count, std::vector<float>& out)
{
    if (words.size() < first + count)
        return false;
    for (size_t i = 0; i < count; ++i) {
        float value = 0.0f;
        if (!parseNumber(words[first + i], value))
            return false;
        out.push_back(value);
    }
    return true;
}

bool parsePointer(const std::vector<std::string>& words, ScriptCommand& out, std::string& reason)
{
    size_t first = 1;
    if (words.size() > 1 && words[1][0] == '@') {
        out.view = words[1].substr(1);
        if (out.view != "lines" && out.view != "rows" && out.view != "timebar" && out.view != "curves") {
            reason = "unknown view \"" + words[1] + "\" (use @lines, @rows, @timebar or @curves)";
            return false;
        }
        first = 2;
    }
    const bool drag = out.verb == ScriptCommand::DRAG, wheel = out.verb == ScriptCommand::WHEEL;
    size_t count = drag ? 4 : (wheel ? 3 : 2);
    if (!parseNumbers(words, first, count, out.points)) {
        reason = words[0] + (drag ? " needs X1 Y1 X2 Y2" : (wheel ? " needs X Y NOTCHES" : " needs X Y"));
        return false;
    }
    size_t extra = words.size() - first - count;
    if ((drag || wheel) && extra == 1) {
        const std::string& mod = words.back();
        out.ctrl = mod == "ctrl";
        out.shift = mod == "shift";
        if (out.ctrl || out.shift)
            return true;
        reason = words[0] + " modifier must be ctrl or shift, not \"" + mod + "\"";
        return false;
    }
    if (extra != 0) {
        reason = "too many arguments for " + words[0];
        return false;
    }
    return true;
}

// What each answer that takes the rest of the line calls its argument, for the error without one.
const std::map<std::string, std::string>& answerArguments()
{
    static const std::map<std::string, std::string> arguments = {
        {"choose", "a dotted item path"}, {"select", "a dotted item path"}, {"press", "a button KEY"},
        {"find", "a TEXT"},               {"screenshot", "a PATH"},         {"file", "a PATH"},
    };
    return arguments;
}

bool parseAnswer(const std::vector<std::string>& words, const std::string& rest, ScriptCommand& out,
                 std::string& reason)
{
    if (words.size() < 2) {
        reason = "answer needs choose, select, press, find, screenshot, file, ok, cancel, yes, no or color";
        return false;
    }
    out.text = words[1];
    if (out.text == "ok" || out.text == "cancel" || out.text == "yes" || out.text == "no") {
        if (words.size() == 2)
            return true;
        reason = "answer " + out.text + " takes no argument";
        return false;
    }
    auto argument = answerArguments().find(out.text);
    if (argument != answerArguments().end()) {
        out.argument = restAfterVerb(rest);
        if (!out.argument.empty())
            return true;
        reason = "answer " + out.text + " needs " + argument->second;
        return false;
    }
    if (out.text == "color") {
        if (words.size() == 6 && parseNumbers(words, 2, 4, out.points))
            return true;
        reason = "answer color needs R G B A";
        return false;
    }
    reason = "unknown answer \"" + out.text + "\"";
    return false;
}

} // namespace

bool AutomationScript::load(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        m_commands.clear();
        m_error = path + ": cannot read the script";
        return false;
    }
    std::ostringstream text;
    text << in.rdbuf();
    return parse(text.str(), path);
}

bool AutomationScript::parse(const std::string& text, const std::string& name)
{
    m_commands.clear();
    m_error.clear();
    std::istringstream in(text);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        size_t first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos || line[first] == '#')
            continue;
        ScriptCommand command;
        command.line = number;
        std::string reason;
        if (!parse_line(line, command, reason)) {
            m_commands.clear();
            m_error = name + ":" + std::to_string(number) + ": " + reason;
            return false;
        }
        m_commands.push_back(command);
    }
    return true;
}

bool AutomationScript::parseKey(const std::string& spec, ScriptCommand& out)
{
    std::string rest = spec;
    for (size_t plus; (plus = rest.find('+')) != std::string::npos && plus + 1 < rest.size();) {
        std::string mod = rest.substr(0, plus);
        if (mod == "ctrl")
            out.ctrl = true;
        else if (mod == "shift")
            out.shift = true;
        else if (mod == "alt")
            out.alt = true;
        else
            return false;
        rest = rest.substr(plus + 1);
    }
    auto named = namedKeys().find(rest);
    if (named != namedKeys().end()) {
        out.keyCode = named->second;
        return true;
    }
    if (rest.size() == 1 && std::isgraph(static_cast<unsigned char>(rest[0]))) {
        out.keyCode = std::toupper(static_cast<unsigned char>(rest[0]));
        return true;
    }
    return false;
}

bool AutomationScript::parse_line(const std::string& line, ScriptCommand& out, std::string& reason) const
{
    static const std::map<std::string, ScriptCommand::Verb> verbs = {
        {"frames", ScriptCommand::FRAMES},
        {"idle", ScriptCommand::IDLE},
        {"press", ScriptCommand::PRESS},
        {"key", ScriptCommand::KEY},
        {"click", ScriptCommand::CLICK},
        {"dclick", ScriptCommand::DCLICK},
        {"drag", ScriptCommand::DRAG},
        {"wheel", ScriptCommand::WHEEL},
        {"type", ScriptCommand::TYPE},
        {"answer", ScriptCommand::ANSWER},
        {"expect-title", ScriptCommand::EXPECT_TITLE},
        {"expect-log", ScriptCommand::EXPECT_LOG},
        {"expect-no-errors", ScriptCommand::EXPECT_NO_ERRORS},
        {"screenshot", ScriptCommand::SCREENSHOT},
        {"quit", ScriptCommand::QUIT},
    };
    std::vector<std::string> words = splitWords(line);
    auto verb = verbs.find(words[0]);
    if (verb == verbs.end()) {
        reason = "unknown command \"" + words[0] + "\"";
        return false;
    }
    out.verb = verb->second;
    std::string rest = restAfterVerb(line);
    switch (out.verb) {
    case ScriptCommand::FRAMES: {
        float frames = 0.0f;
        if (words.size() == 2 && parseNumber(words[1], frames) && frames >= 0.0f && frames == static_cast<int>(frames)) {
            out.count = static_cast<int>(frames);
            return true;
        }
        reason = "frames needs a whole number N >= 0";
        return false;
    }
    case ScriptCommand::IDLE:
        if (words.size() == 2 && parseNumber(words[1], out.seconds) && out.seconds > 0.0f)
            return true;
        reason = "idle needs a number of seconds above 0";
        return false;
    case ScriptCommand::KEY:
        if (words.size() == 2 && parseKey(words[1], out))
            return true;
        reason = "key needs one key spec such as ctrl+k, delete, left or space";
        return false;
    case ScriptCommand::CLICK:
    case ScriptCommand::DCLICK:
    case ScriptCommand::DRAG:
    case ScriptCommand::WHEEL:
        return parsePointer(words, out, reason);
    case ScriptCommand::ANSWER:
        return parseAnswer(words, rest, out, reason);
    case ScriptCommand::EXPECT_NO_ERRORS:
    case ScriptCommand::QUIT:
        if (words.size() == 1)
            return true;
        reason = words[0] + " takes no argument";
        return false;
    default: // PRESS, TYPE, EXPECT_TITLE, EXPECT_LOG, SCREENSHOT take the rest of the line
        out.text = rest;
        if (!rest.empty())
            return true;
        reason = words[0] + " needs an argument";
        return false;
    }
}
