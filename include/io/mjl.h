#pragma once

#include <cstddef>
#include <string>

#include "io/Package.h"

// Reads and writes document trees as UTF-8 JSON.
//
// Reading accepts exactly RFC 8259 JSON (plus nothing), limits nesting to MAX_DEPTH levels, and on
// failure logs and keeps "path:line:column: reason" (columns count bytes from 1).
// Writing is canonical, so that files diff and merge well: members in the tree's order, two-space
// indent, arrays that hold only scalars on one line, numbers in their shortest exact form (a
// floating-point number always shows a '.' or an exponent, so it reads back as one), and a final
// newline. Saving is atomic: a temporary file beside the target is written, flushed, synced and
// renamed over it, so the target holds either the old or the new content whatever happens.
class mjl {
public:
    enum Flags {
        DEFAULT = 0,
        // For write only: a string byte that is not part of well-formed UTF-8 is written as the
        // escape \u00XX of its value instead of failing the write. Such text reads back as other
        // characters, so this is for output meant to be read (a file name that is not UTF-8),
        // never for documents. Well-formed UTF-8 is never escaped, so in the output an escape of
        // U+0080 to U+00FF always stands for such a byte.
        ESCAPE_BYTES = 1,
        // For reading only: an array of at most Package::MAX_ROW_NUMBERS numbers is kept as a row of
        // NUMBERS, a quarter of the memory of a node per number, for readers that read such arrays
        // through Package::getNumber (a track's key records).
        NUMBER_ROWS = 2,
    };
    static constexpr int MAX_DEPTH = 512;

    // Is shown the elements of one array member of the root while the text is still being parsed,
    // so that a reader can start on a large document's parts before the whole is read.
    class ElementListener {
    public:
        virtual ~ElementListener() = default;
        // The name of the root's member whose elements are shown (its first occurrence only).
        virtual const char* arrayName() const = 0;
        // Called on the parsing thread as each object or array element of that member ends, with
        // its index and a node that stays valid, with all below it unchanged, as long as the tree.
        // The rest of the tree is still being built: nodes cannot give their line yet.
        virtual void element(int index, const Package* node) = 0;
        // Called once after the parse, before the tree is finished or, when parsed is false,
        // dropped: the listener must stop reading the tree before it returns.
        virtual void end(bool parsed) = 0;
    };

    mjl();
    ~mjl();
    mjl(const mjl&) = delete;
    mjl& operator=(const mjl&) = delete;

    // Reads and parses the file. Returns false, logs the error and keeps it for getError() when
    // the file cannot be read or is not valid JSON; the previous root is dropped either way.
    // A listener, when given, is shown the elements it asks for as they are read.
    bool open(const char* path, int flags = DEFAULT, ElementListener* listener = nullptr);
    // Parses text held in memory; name stands for the path in error messages.
    bool parse(const char* text, size_t size, const char* name, int flags = DEFAULT,
               ElementListener* listener = nullptr);
    // Returns the root of the last successful read, or null.
    Package* getRoot();
    // Frees the tree of the last read (a large file's tree is several times the file's size), for
    // a reader that has taken what it needs; getRoot then returns null.
    void close();
    // Returns the last error as "path:line:column: reason" (or "path: reason" when no position
    // applies); empty after a success.
    const std::string& getError() const { return m_error; }

    // Writes the tree atomically to path. Returns false and logs the path and the system's reason
    // (also kept as "path: reason" in error, when given) when anything fails, a target the user
    // may not write included; the file on disk is then untouched and no temporary file is left.
    // A non-finite number cannot be written: the save fails naming it.
    static bool save(const char* path, const Package* root, int flags = DEFAULT, std::string* error = nullptr);
    // Returns the canonical text of the tree in out; false (with the reason in error) when the tree
    // holds a non-finite number or, without ESCAPE_BYTES, a string that is not UTF-8.
    static bool write(const Package* root, std::string& out, std::string* error = nullptr, int flags = DEFAULT);

private:
    bool read_text(const char* text, size_t size, const char* name, const char* caller, int flags,
                   ElementListener* listener);

    Package* m_root = nullptr;
    std::string m_error;
};
