#pragma once

#include <map>
#include <string>

class jString;

// The table of user-visible texts, read once from "data/core/editor/locale/en.json" under the data
// root (see DataDir). Keys are short lower-case words with underscores ("load", "select_node");
// the file maps each key to its text. The table lives for the whole process and is not tracked by
// the allocation registry, like the other process-wide caches of the engine.
class Locale {
public:
    // Makes an empty table; tr() uses the process-wide one from get().
    Locale() = default;
    // Returns the process-wide table, reading the file on first use.
    static Locale& get();

    // Replaces the table with the content of a translation file. Returns false, logs the path and
    // the reason, and keeps the table unchanged when the file cannot be read, is not a JSON object,
    // or maps a key to anything but a string.
    bool load(const char* path);
    // Returns the text for key, or null when the table does not hold it.
    const char* find(const char* key) const;
    // Returns the number of keys in the table.
    int size() const { return static_cast<int>(m_texts.size()); }

private:
    std::map<std::string, std::string, std::less<>> m_texts;
    bool m_loaded = false;
};

// Returns the user-visible text for key; when the table has no such key, returns key itself (the
// same pointer), so an untranslated text still shows something readable.
const char* tr(const char* key);
// The same for a key held in a jString; an unknown key returns key.c_str().
const char* tr(const jString& key);
