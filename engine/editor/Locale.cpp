#include "editor/Locale.h"

#include "editor/DataDir.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jLog.h"
#include "kit/jString.h"

Locale& Locale::get()
{
    static Locale table;
    if (!table.m_loaded) {
        // Mark first: a missing file is reported once, not on every lookup.
        table.m_loaded = true;
        table.load(DataDir::resolve("data/core/editor/locale/en.json").c_str());
    }
    return table;
}

bool Locale::load(const char* path)
{
    mjl reader;
    if (!reader.open(path)) {
        jLog::error("%s:cannot read translations \"%s\": %s", "Locale::load", path, reader.getError().c_str());
        return false;
    }
    const Package* root = reader.getRoot();
    if (!root || !root->isObject()) {
        jLog::error("%s:translations \"%s\" are not a JSON object", "Locale::load", path);
        return false;
    }
    std::map<std::string, std::string, std::less<>> texts;
    for (int i = 0; i < root->getNumChildren(); ++i) {
        const Package* entry = root->getChild(i);
        if (!entry->isString()) {
            jLog::error("%s:translations \"%s\" line %d: the text of \"%s\" is not a string", "Locale::load", path,
                        entry->getLine(), entry->getName());
            return false;
        }
        texts[std::string(entry->getName(), entry->getNameLength())] =
            std::string(entry->getString(), entry->getStringLength());
    }
    m_texts.swap(texts);
    m_loaded = true;
    return true;
}

const char* Locale::find(const char* key) const
{
    if (!key)
        return nullptr;
    auto it = m_texts.find(std::string_view(key));
    return it == m_texts.end() ? nullptr : it->second.c_str();
}

const char* tr(const char* key)
{
    const char* text = Locale::get().find(key);
    return text ? text : key;
}

const char* tr(const jString& key)
{
    return tr(key.c_str());
}
