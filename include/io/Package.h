#pragma once

#include <cstddef>
#include <cstdint>

class PackageArena;

// A node of the engine's generic document tree: null, a boolean, an integer, a floating-point
// number, a string, an array of nodes or an object of named nodes (members keep their order; a
// repeated name is kept, and lookups find the first), or a row of numbers: a short array of numbers
// that a reader asked to keep without a node per number (see mjl::NUMBER_ROWS), read through
// getNumber rather than getChild. A node made on its own (a root) owns the
// memory of its whole subtree; child nodes live in that memory and stay valid until the root is
// destroyed or cleared. Strings and names may contain any byte, including zero.
class Package {
public:
    enum Type : uint8_t { NUL = 0, BOOL, INT, DOUBLE, STRING, ARRAY, OBJECT, NUMBERS };
    // The longest array a reader keeps as a row of numbers.
    static constexpr int MAX_ROW_NUMBERS = 32;

    // Makes an empty root (null).
    Package();
    // Frees the subtree's memory when this node is a root.
    ~Package();
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    // Turns a root back into null and frees everything below it; on a child it only resets the
    // value (its old children stay allocated until the root goes).
    void clear();

    // Readers of large documents call the accessors below millions of times: they are inline.
    Type getType() const { return static_cast<Type>(m_type); }
    bool isNull() const { return m_type == NUL; }
    bool isBool() const { return m_type == BOOL; }
    // True for INT and DOUBLE.
    bool isNumber() const { return m_type == INT || m_type == DOUBLE; }
    bool isString() const { return m_type == STRING; }
    bool isArray() const { return m_type == ARRAY; }
    bool isObject() const { return m_type == OBJECT; }
    bool isNumbers() const { return m_type == NUMBERS; }

    // The member name in the parent object; empty for roots and array elements.
    const char* getName() const { return m_name ? m_name : ""; }
    int getNameLength() const { return static_cast<int>(name_length()); }

    // Returns the value, or fallback when the node is of another type (numbers convert both ways;
    // a DOUBLE read as int is truncated).
    bool getBool(bool fallback = false) const { return m_type == BOOL ? m_value.b : fallback; }
    int64_t getInt(int64_t fallback = 0) const;
    double getDouble(double fallback = 0.0) const
    {
        return m_type == DOUBLE ? m_value.d : m_type == INT ? static_cast<double>(m_value.i) : fallback;
    }
    // Returns the text of a STRING node, or "" for any other type.
    const char* getString() const { return m_type == STRING ? m_value.s : ""; }
    int getStringLength() const { return m_type == STRING ? static_cast<int>(count()) : 0; }

    // Children of an ARRAY or OBJECT; 0 and null for anything else or an index out of range.
    int getNumChildren() const { return m_type == ARRAY || m_type == OBJECT ? static_cast<int>(count()) : 0; }
    Package* getChild(int index) const
    {
        return index >= 0 && index < getNumChildren() ? child_at(static_cast<uint32_t>(index)) : nullptr;
    }
    // The entries of a row of NUMBERS; 0 for anything else or an index out of range. An entry is
    // an integer when its text had no fraction and no exponent.
    int getNumNumbers() const { return m_type == NUMBERS ? static_cast<int>(count()) : 0; }
    double getNumber(int index) const { return in_row_of_numbers(index) ? m_value.numbers[index] : 0.0; }
    bool isIntegerNumber(int index) const { return in_row_of_numbers(index) && (row_integers() >> index & 1); }
    // Returns the first member of an OBJECT with the name, or null.
    Package* find(const char* name) const;

    // Where the value began in the text it was read from (1-based); 0 for nodes built in memory.
    int getLine() const;
    int getColumn() const;
    // The same for the entry at index of a row of NUMBERS (0 for an index out of range).
    int getNumberLine(int index) const;
    int getNumberColumn(int index) const;

    // Setters replace the value and the type; old children of this node are dropped.
    void setNull();
    void setBool(bool value);
    void setInt(int64_t value);
    void setDouble(double value);
    void setString(const char* text);
    void setString(const char* text, int length);
    void setArray();
    void setObject();

    // Appends a null child and returns it; name is used by OBJECT nodes and ignored by ARRAY nodes.
    // A NUL node first becomes an OBJECT when a name is given, an ARRAY otherwise. Returns null
    // (and logs) on a node of any other type.
    Package* add(const char* name = nullptr);
    Package* addBool(const char* name, bool value);
    Package* addInt(const char* name, int64_t value);
    Package* addDouble(const char* name, double value);
    Package* addString(const char* name, const char* text);
    Package* addArray(const char* name);
    Package* addObject(const char* name);

    // Returns whether both trees hold the same types, names, values and order (numbers of type INT
    // and DOUBLE are equal when their values are equal).
    bool equals(const Package& other) const;

private:
    friend class PackageBuilder;
    friend class PackageArena;
    friend class PackageWriter;
    // Nodes below a root are made in the root's arena; a parse makes millions, hence inline.
    explicit Package(PackageArena* arena) : m_arena(arena) {}

    // Returns the arena of the tree, making it when a root needs its first byte.
    PackageArena* arena();
    Package* appendChild(Package* child);
    void set_name(const char* name, size_t length);
    void reset_value(Type type);
    bool same_value(const Package& other) const;
    // Compares this row of NUMBERS with a row or an ARRAY: the same numbers in the same order.
    bool same_numbers(const Package& other) const;
    Package* child_at(uint32_t index) const { return m_in_row ? m_value.nodes + index : m_value.items[index]; }
    // A name's length is kept just before its bytes (see PackageArena::copyCounted).
    uint32_t name_length() const { return m_name ? reinterpret_cast<const uint32_t*>(m_name)[-1] : 0; }
    // The length of a string or the number of children, kept just before the bytes, the row of
    // children or the array of pointers to them (see PackageArena); no value there means 0.
    uint32_t count() const { return m_value.s ? reinterpret_cast<const uint32_t*>(m_value.s)[-1] : 0; }
    void set_count(uint32_t count) { reinterpret_cast<uint32_t*>(m_value.items)[-1] = count; }
    bool in_row_of_numbers(int index) const { return index >= 0 && index < getNumNumbers(); }
    // A row of numbers keeps a mask of its integer entries before its count, and after its numbers
    // the distance of each from where the row began in the text (see PackageArena::makeNumbers).
    uint32_t row_integers() const { return reinterpret_cast<const uint32_t*>(m_value.numbers)[-2]; }
    const uint16_t* row_distances() const { return reinterpret_cast<const uint16_t*>(m_value.numbers + count()); }
    void locate_number(int index, int& line, int& column) const;

    // A large document is millions of nodes, so every byte here counts: lengths and counts live
    // beside the bytes they measure, the room for children made one by one is implied by their
    // count (see appendChild), and the position shares a word with the type and the flags.
    const char* m_name = nullptr;
    union {
        bool b;
        int64_t i;
        double d;
        const char* s;
        Package** items; // children made one by one
        Package* nodes;  // children read from text, laid out in a row
        double* numbers; // a row of numbers
    } m_value{.i = 0}; // all of it: {} may zero only b (clang does), and count() reads s
    PackageArena* m_arena = nullptr;
    // 1 + the byte offset where the value began in the text it was read from (texts up to 256 TB),
    // 0 for nodes built in memory. The arena knows where the lines of that text start: reading
    // never counts lines for a node unless someone asks for its position.
    uint64_t m_offset : 48 = 0;
    uint64_t m_type : 8 = NUL; // a Type
    uint64_t m_owns_arena : 1 = false;
    uint64_t m_in_row : 1 = false; // the children are in m_value.nodes
};
