#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include <rapidjson/rapidjson.h>

#include "TextStream.h"

#include "io/Package.h"
#include "io/mjl.h"

class PackageArena;

// Turns RapidJSON's SAX events into a Package tree, the way a DOM builder does: the nodes of open
// containers wait on a pending stack, and when a container ends its children are copied into the
// root's arena in one row, at their exact count, so a value costs one node and no pointer.
// Every node also gets the byte offset where its value starts; once the text is read, the arena
// notes where its lines start, so a node can give its line and column when asked. Only an error
// counts lines during the parse (from the top, once). Positions come from the reader's stream.
// RapidJSON parses strings and numbers on a local copy of the stream, which it writes back after
// the event, so during String, Key and the number events the stream still points at the token's
// first byte; the iterative reader also calls the container events before it takes the bracket;
// only null and the booleans leave the stream past the token. The reading tests pin this down.
class PackageBuilder {
public:
    // text is the whole input; stream is the one the reader consumes, positioned on text. With
    // number_rows true, an array of at most Package::MAX_ROW_NUMBERS numbers becomes a row of NUMBERS.
    // The listener, when given, is shown the elements it asks for as they end.
    PackageBuilder(Package& root, const char* text, const TextStream& stream, bool number_rows,
                   mjl::ElementListener* listener = nullptr);
    // Frees the pending stack; the tree itself belongs to the root.
    ~PackageBuilder();
    PackageBuilder(const PackageBuilder&) = delete;
    PackageBuilder& operator=(const PackageBuilder&) = delete;

    // RapidJSON's handler interface. Each returns false to stop the parse when the input goes
    // beyond what a tree can hold; getFailure() then says why.
    // The reader's template is compiled with PackageReader, so the events that every value goes
    // through are defined here, where it can inline them.
    bool Null()
    {
        begin_value(Package::NUL, m_stream.Tell() - 4);
        return true;
    }
    bool Bool(bool value)
    {
        begin_value(Package::BOOL, m_stream.Tell() - (value ? 4 : 5))->m_value.b = value;
        return true;
    }
    bool Int(int value) { return Int64(value); }
    bool Uint(unsigned value) { return Int64(value); }
    bool Int64(int64_t value)
    {
        begin_value(Package::INT, m_stream.Tell())->m_value.i = value;
        return true;
    }
    bool Uint64(uint64_t value);
    bool Double(double value);
    bool RawNumber(const char* text, rapidjson::SizeType length, bool copy);
    bool String(const char* text, rapidjson::SizeType length, bool copy);
    bool Key(const char* text, rapidjson::SizeType length, bool copy);
    bool StartObject();
    bool EndObject(rapidjson::SizeType count);
    bool StartArray();
    bool EndArray(rapidjson::SizeType count);

    // Completes a tree read without failure, given the newlines of its text: its nodes can then
    // tell their line and column.
    void finish(const LineLog& lines);

    // Returns why the builder stopped the parse, or null when it did not.
    const char* getFailure() const { return m_failure; }
    // Returns the byte offset of the construct that stopped the parse.
    size_t getFailureOffset() const { return m_failure_offset; }
    // Gives the 1-based line and column of a byte offset of the text.
    void locate(size_t offset, int& line, int& column);

private:
    // Returns the node of a value that starts at offset start of the text.
    Package* begin_value(Package::Type type, size_t start)
    {
        Package* node = &m_root;
        if (m_depth > 0) {
            node = push_pending();
            node->m_name = m_key;
            m_key = nullptr;
        }
        node->m_type = type;
        node->m_offset = start + 1;
        return node;
    }
    bool begin_container(Package::Type type);
    bool end_container();
    // Notes whether the container that begins with the pending key is the listener's member (the
    // first container of that name in the root; only an array has elements to show).
    void listen_for(Package::Type type);
    // Shows the listener the container that has just ended, when it is an element of its array.
    void show_ended(const Package* node, size_t first);
    // Ends the innermost array as a row of numbers when its children allow; returns false, with
    // nothing done, when they do not.
    bool end_number_row();
    // Counts the lines up to offset, for an error's position.
    void advance(size_t offset);
    // Returns a new node on top of the pending stack; it moves when the stack grows.
    Package* push_pending()
    {
        if (m_pending_count == m_pending_capacity)
            grow_pending();
        return new (m_pending + m_pending_count++) Package(m_arena);
    }
    void grow_pending();
    bool fail(const char* reason, size_t offset);

    Package& m_root;
    PackageArena* m_arena = nullptr;
    const char* m_text;
    const TextStream& m_stream;
    // Everything before m_scan has been counted: m_line is its line, which starts at m_line_start.
    size_t m_scan = 0;
    size_t m_line_start = 0;
    uint32_t m_line = 1;
    const char* m_key = nullptr;
    Package* m_pending = nullptr;
    size_t m_pending_count = 0;
    size_t m_pending_capacity = 0;
    const char* m_failure = nullptr;
    size_t m_failure_offset = 0;
    int m_depth = 0;
    bool m_number_rows;
    mjl::ElementListener* m_listener;
    // The depth inside the listener's array (0 before it begins, -1 after it ends).
    int m_listened_depth = 0;
    // Where the children of each open container start on the pending stack.
    size_t m_frames[mjl::MAX_DEPTH];
};
