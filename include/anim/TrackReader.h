#pragma once

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "anim/TrackField.h"
#include "io/Package.h"

// The state of reading one .anim document: every problem found, with the line and column of the
// value it concerns, and the helpers that check fields while reading. Reading goes on after a
// problem where it can, so that one pass reports every problem of a file.
class TrackReader {
public:
    struct Problem {
        int line;
        int column;
        std::string reason;
    };

    // With strict true, what the engine tolerates is reported too: parameters whose type names are
    // not registered (the engine loads them and leaves them unplayed) and a play range that ends
    // before it begins.
    explicit TrackReader(bool strict = false) : m_strict(strict) {}

    bool isStrict() const { return m_strict; }

    // Records a problem at the position of the field (0:0 when it is null or built in memory);
    // problems are kept in the order of their positions.
    void fail(const TrackField& field, const std::string& reason);
    bool failed() const { return !m_problems.empty(); }
    // Adds the problems another reader found (in another part of the same document).
    void take(const TrackReader& other);
    const std::vector<Problem>& problems() const { return m_problems; }
    // Logs every problem as an error "source:LINE:COLUMN: reason", in file order.
    void logProblems(const char* source) const;

    // Returns the member of object with the name, or null after recording "missing field".
    const Package* require(const Package* object, const char* name);
    // Returns the member of object with the name, or null when absent (no problem).
    const Package* optional(const Package* object, const char* name) const;

    // Reads a finite number into out; records a problem and returns false otherwise.
    // This and the three below run for every number of every key, so their usual case is inline.
    bool readNumber(const TrackField& field, double& out, const char* what)
    {
        if (field.isNumber()) {
            out = field.getDouble();
            if (std::isfinite(out))
                return true;
        }
        return refuse_number(field, what);
    }
    // Reads a finite number that fits a float.
    bool readFloat(const TrackField& field, float& out, const char* what)
    {
        double value = 0.0;
        if (!readNumber(field, value, what))
            return false;
        if (std::fabs(value) > std::numeric_limits<float>::max())
            return refuse(field, what, " is not finite as a 32-bit float");
        out = static_cast<float>(value);
        return true;
    }
    // Reads a finite, non-negative time.
    bool readTime(const TrackField& field, float& out)
    {
        if (!readFloat(field, out, "time"))
            return false;
        return out >= 0.0f || refuse(field, "time", " is negative");
    }
    // Reads an integer (a number without fraction).
    bool readInt(const TrackField& field, int& out, const char* what)
    {
        double value = 0.0;
        if (!readNumber(field, value, what))
            return false;
        if (value != std::floor(value) || value < -2147483648.0 || value > 2147483647.0)
            return refuse(field, what, " must be a whole number");
        out = static_cast<int>(value);
        return true;
    }
    // Reads a boolean.
    bool readBool(const TrackField& field, bool& out, const char* what);
    // Reads a string.
    bool readString(const TrackField& field, const char*& out, int& length, const char* what);

    // Optional members with a fallback: absent gives the fallback, a wrong value a problem.
    bool optionalBool(const Package* object, const char* name, bool fallback);
    int optionalInt(const Package* object, const char* name, int fallback);
    // Returns the text of an optional string member, or "" when absent.
    const char* optionalString(const Package* object, const char* name);

private:
    void add(const Problem& problem);
    // Records why the field is not a finite number; returns false.
    bool refuse_number(const TrackField& field, const char* what);
    // Records "what" followed by the problem; returns false.
    bool refuse(const TrackField& field, const char* what, const char* problem);

    bool m_strict;
    std::vector<Problem> m_problems;
};
