#include "anim/TrackReader.h"

#include <algorithm>

#include "kit/jLog.h"

void TrackReader::fail(const TrackField& field, const std::string& reason)
{
    add(Problem{field.getLine(), field.getColumn(), reason});
}

void TrackReader::take(const TrackReader& other)
{
    for (const Problem& problem : other.m_problems)
        add(problem);
}

void TrackReader::logProblems(const char* source) const
{
    for (const Problem& problem : m_problems)
        jLog::error("%s:%d:%d: %s", source, problem.line, problem.column, problem.reason.c_str());
}

void TrackReader::add(const Problem& problem)
{
    // Kept in file order, so that a reader sees them top to bottom whatever order they were found in.
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

bool TrackReader::refuse_number(const TrackField& field, const char* what)
{
    return refuse(field, what, field.isNumber() ? " is not finite" : " must be a number");
}

bool TrackReader::refuse(const TrackField& field, const char* what, const char* problem)
{
    fail(field, std::string(what) + problem);
    return false;
}

bool TrackReader::readBool(const TrackField& field, bool& out, const char* what)
{
    const Package* node = field.node();
    if (!node || !node->isBool()) {
        fail(field, std::string(what) + " must be true or false");
        return false;
    }
    out = node->getBool();
    return true;
}

bool TrackReader::readString(const TrackField& field, const char*& out, int& length, const char* what)
{
    const Package* node = field.node();
    if (!node || !node->isString()) {
        fail(field, std::string(what) + " must be a string");
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
