#pragma once

#include <string>
#include <vector>

#include "ScriptCommand.h"

// An automation script for the editor: one command per line, '#' starts a comment line, blank lines
// are skipped. The commands are documented in docs/automation.md.
class AutomationScript {
public:
    // Reads and parses a script file. Returns false and keeps "path:line: reason" (or "path: reason"
    // when the file cannot be read) in getError(); the commands are then empty.
    bool load(const std::string& path);
    // Parses script text; name stands for the path in error messages.
    bool parse(const std::string& text, const std::string& name);

    const std::vector<ScriptCommand>& getCommands() const { return m_commands; }
    const std::string& getError() const { return m_error; }

    // Returns the engine key code and modifiers of a key spec ("ctrl+k", "delete", "left", "space");
    // false when the text names no key.
    static bool parseKey(const std::string& spec, ScriptCommand& out);

private:
    bool parse_line(const std::string& line, ScriptCommand& out, std::string& reason) const;

    std::vector<ScriptCommand> m_commands;
    std::string m_error;
};
