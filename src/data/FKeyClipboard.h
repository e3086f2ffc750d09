#pragma once

#include <string>
#include <utility>
#include <vector>

class FParameterSingle;
class Package;

// Copies the document's marked keys as text and pastes such text back as keys. The text is a small
// JSON document naming the rows the keys came from, with their key records in the .anim form and
// times relative to the first copied key, so that it reads in any text editor:
//   {"format": "kuvo-anim-keys", "version": 1, "document": "/work/walk.anim",
//    "rows": [{"parameter": 0, "component": 1, "kind": 1, "type": "Node.position",
//              "keys": [[0.0, 2.5, -0.25, 0.0, 0.25, 0.0, 2]]}]}
// A row is the index of its parameter in the track and, for a vector's axis or a nested track's
// name and time, the component; kind is the row's key kind (TRACK_PARAMETER_TYPE).
class FKeyClipboard {
public:
    static constexpr const char* FORMAT = "kuvo-anim-keys";

    // Writes the marked keys as text. Returns false (text untouched) when no key is marked.
    static bool copy(std::string& text);
    // Adds the keys of text to the document, the first at time: onto the rows they were copied from
    // when text names this document, otherwise onto the selected rows of the same kind, one copied
    // row to the next such row in row order. Each parameter that takes keys is touched for the
    // history, then rebuilt with its new keys (its old rows, lines and keys are freed). Returns
    // false, with the reason logged and the document unchanged, when text holds no keys or no row
    // takes them.
    bool paste(const std::string& text, float time);
    // Makes the keys the last paste added the only marked keys of the document.
    void markPasted() const;

private:
    struct RowPath {
        int parameter = -1;
        int component = -1;
    };
    std::vector<std::pair<RowPath, std::vector<int>>> m_pasted;
    static bool path_of(const FParameterSingle* row, RowPath& path);
    // Where a row's key records are in its parameter's saved object.
    static Package* keys_at(const Package* parameter, int component);
    static FParameterSingle* row_at(const RowPath& path);
    // The row's component index in its compound; -1 for a parameter of its own.
    static int component_of(const FParameterSingle* row);
    // The row each copied row goes to (null where none takes it).
    static std::vector<FParameterSingle*> targets(const Package* rows, bool sameDocument);
    // Appends a copy of record with its time (the first value) moved by shift.
    static void copy_record(Package* array, const Package* record, double shift);
    // Merges records, moved by shift, into the key array by time (existing keys first at equal
    // times) and returns the indices the new keys take.
    static std::vector<int> merge(Package* keys, const Package* records, double shift);
};
