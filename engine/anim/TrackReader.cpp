#include "anim/TrackReader.h"

#include <algorithm>

void TrackReader::fail(const Package* node, const std::string& reason)
{
    // Kept in file order, so that a reader sees them top to bottom whatever order they were found in.
    Problem problem{node ? node->getLine() : 0, node ? node->getColumn() : 0, reason};
    auto later = std::upper_bound(m_problems.begin(), m_problems.end(), problem, [](const Problem& a, const Problem& b) {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    });
    m_problems.insert(later, problem);
}

const Package* TrackReader::require(const Package* object, const char* name)
{
    const Package* member = optional(object, name);
    if (!member)
        fail(object, std::string("missing field \"") + name + "\"");
    return member;
}

const Package* TrackReader::optional(const Package* object, const char* name) const
{
    return object && object->isObject() ? object->find(name) : nullptr;
}

bool TrackReader::refuse_number(const Package* node, const char* what)
{
    return refuse(node, what, node->isNumber() ? " is not finite" : " must be a number");
}

bool TrackReader::refuse(const Package* node, const char* what, const char* problem)
{
    fail(node, std::string(what) + problem);
    return false;
}

bool TrackReader::readBool(const Package* node, bool& out, const char* what)
{
    if (!node->isBool()) {
        fail(node, std::string(what) + " must be true or false");
        return false;
    }
    out = node->getBool();
    return true;
}

bool TrackReader::readString(const Package* node, const char*& out, int& length, const char* what)
{
    if (!node->isString()) {
        fail(node, std::string(what) + " must be a string");
        return false;
    }
    out = node->getString();
    length = node->getStringLength();
    return true;
}

bool TrackReader::optionalBool(const Package* object, const char* name, bool fallback)
{
    const Package* node = optional(object, name);
    bool value = fallback;
    if (node && !readBool(node, value, name))
        return fallback;
    return value;
}

int TrackReader::optionalInt(const Package* object, const char* name, int fallback)
{
    const Package* node = optional(object, name);
    int value = fallback;
    if (node && !readInt(node, value, name))
        return fallback;
    return value;
}

const char* TrackReader::optionalString(const Package* object, const char* name)
{
    const Package* node = optional(object, name);
    const char* text = "";
    int length = 0;
    if (node && !readString(node, text, length, name))
        return "";
    return text;
}
