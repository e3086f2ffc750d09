#include "PackageReader.h"

#include <cctype>
#include <cstdio>

// RapidJSON 1.1.0 compares "null + size" with null when its stack is first used, which is harmless
// but undefined; clang's sanitizer stops on it. The reader's functions are exempt from that check.
#ifdef __clang__
#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#endif
#include <rapidjson/error/error.h>
#include <rapidjson/reader.h>
#ifdef __clang__
#pragma clang attribute pop
#endif

#include "PackageBuilder.h"
#include "io/Package.h"

// The reader skips all whitespace through this, so the stream meets every newline between tokens.
template <>
inline void rapidjson::SkipWhitespace(TextStream& stream)
{
    stream.skipWhitespace();
}

namespace {

// A reader's reason in plain words; some codes depend on the byte the reader stopped at.
const char* reason_for(rapidjson::ParseErrorCode code, const char* text, size_t offset, size_t size)
{
    using namespace rapidjson;
    // RapidJSON takes a zero byte for the end of the text.
    if (offset < size && text[offset] == '\0')
        return "unexpected zero byte";
    switch (code) {
    case kParseErrorDocumentEmpty:
        return "the document is empty";
    case kParseErrorDocumentRootNotSingular:
        return "unexpected text after the document's value";
    case kParseErrorValueInvalid:
        return offset >= size ? "unexpected end of the document, a value was expected" : "invalid value";
    case kParseErrorObjectMissName:
        return offset >= size ? "unexpected end of the document inside an object"
                              : "expected a member name in double quotes";
    case kParseErrorObjectMissColon:
        return "expected ':' after the member name";
    case kParseErrorObjectMissCommaOrCurlyBracket:
        return offset >= size ? "unexpected end of the document inside an object"
                              : "expected ',' or '}' after the member";
    case kParseErrorArrayMissCommaOrSquareBracket:
        return offset >= size ? "unexpected end of the document inside an array"
                              : "expected ',' or ']' after the element";
    case kParseErrorStringUnicodeEscapeInvalidHex:
        return "invalid \\u escape: four hexadecimal digits expected";
    case kParseErrorStringUnicodeSurrogateInvalid:
        return "invalid \\u escape: a high surrogate must be followed by a low surrogate";
    case kParseErrorStringEscapeInvalid:
        return offset < size && static_cast<unsigned char>(text[offset]) < 0x20
                   ? "control character in a string (it must be escaped)"
                   : "invalid escape sequence in a string";
    case kParseErrorStringMissQuotationMark:
        return "unterminated string";
    case kParseErrorStringInvalidEncoding:
        return offset < size && static_cast<unsigned char>(text[offset]) < 0x20
                   ? "control character in a string (it must be escaped)"
                   : "invalid UTF-8 in a string";
    case kParseErrorNumberTooBig:
        return "number too large for a double";
    case kParseErrorNumberMissFraction:
        return "digits expected after the decimal point";
    case kParseErrorNumberMissExponent:
        return "digits expected in the exponent";
    default:
        return "syntax error";
    }
}

} // namespace

bool PackageReader::read(const char* text, size_t size, const char* name, Package& root, std::string& error,
                         bool number_rows, mjl::ElementListener* listener)
{
    // Not kParseFullPrecisionFlag: RapidJSON 1.1.0's exact conversion reads outside its tables on
    // some long mantissas with large exponents. The builder converts floating-point numbers itself.
    constexpr unsigned flags = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseIterativeFlag;
    LineLog lines;
    TextStream stream(text, size, lines);
    PackageBuilder builder(root, text, stream, number_rows, listener);
    rapidjson::Reader reader;
    rapidjson::ParseResult result = reader.Parse<flags>(stream, builder);
    size_t offset = stream.Tell();
    const bool parsed = !builder.getFailure() && !result.IsError() && offset >= size;
    if (listener)
        listener->end(parsed);
    const char* reason = nullptr;
    if (builder.getFailure()) {
        offset = builder.getFailureOffset();
        reason = builder.getFailure();
    } else if (result.IsError()) {
        offset = result.Offset();
        // A misspelt literal is reported where the reader gave up; point at the word instead.
        while (result.Code() == rapidjson::kParseErrorValueInvalid && offset > 0 && offset <= size
               && std::isalpha(static_cast<unsigned char>(text[offset - 1])))
            --offset;
        reason = reason_for(result.Code(), text, offset, size);
    } else if (!parsed) {
        reason = "unexpected zero byte"; // the reader stopped at it as if the text ended there
    } else {
        builder.finish(lines);
        error.clear();
        return true;
    }
    int line = 0;
    int column = 0;
    builder.locate(offset < size ? offset : size, line, column);
    char position[48];
    std::snprintf(position, sizeof position, ":%d:%d: ", line, column);
    error = std::string(name) + position + reason;
    return false;
}
