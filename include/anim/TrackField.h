#pragma once

#include "io/Package.h"

// A value a track reader checks: a node, or the entry at an index of a key record. A record read
// with mjl::NUMBER_ROWS is a row of NUMBERS when it holds only numbers, and an array of nodes
// otherwise (or when built in memory); naming an entry by its record and index reads both alike.
class TrackField {
public:
    // The node itself (may be null: problems about it are then placed at 0:0).
    TrackField(const Package* node) : m_node(node) {}
    // The entry at index of record, which is an array of more than index nodes or a row of more
    // than index numbers.
    TrackField(const Package* record, int index)
        : m_node(record->isNumbers() ? nullptr : record->getChild(index)),
          m_row(record->isNumbers() ? record : nullptr), m_index(index)
    {
    }

    // Returns the entry's node, or null for an entry of a row of numbers.
    const Package* node() const { return m_node; }
    bool isNumber() const { return m_node ? m_node->isNumber() : m_row != nullptr; }
    double getDouble() const { return m_node ? m_node->getDouble() : m_row->getNumber(m_index); }
    // Where the value began in the text it was read from; 0 when it was built in memory.
    int getLine() const { return m_node ? m_node->getLine() : m_row ? m_row->getNumberLine(m_index) : 0; }
    int getColumn() const { return m_node ? m_node->getColumn() : m_row ? m_row->getNumberColumn(m_index) : 0; }

private:
    const Package* m_node;
    const Package* m_row = nullptr;
    int m_index = 0;
};
