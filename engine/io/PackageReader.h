#pragma once

#include <cstddef>
#include <string>

#include "io/mjl.h"

class Package;

// Parses JSON text into a Package tree with RapidJSON's SAX reader, in its iterative mode so that
// no input can exhaust the call stack, and turns its failures into "name:line:column: reason".
class PackageReader {
public:
    // Parses size bytes of text into root, keeping short arrays of numbers as rows of NUMBERS when
    // number_rows is true and showing the listener (when given) the elements it asks for. Returns
    // false with the message in error when the text is not valid JSON or nests deeper than
    // mjl::MAX_DEPTH; root then holds a partial tree that the caller drops.
    static bool read(const char* text, size_t size, const char* name, Package& root, std::string& error,
                     bool number_rows = false, mjl::ElementListener* listener = nullptr);
};
