#pragma once

#include <string>
#include <vector>

#include "data/FTrackSettings.h"
#include "editor/UndoCommand.h"

// One user action on the document, recorded as what it touched: each parameter it changed, made or
// deleted, by its place in the track and its object of the saved file (its key records among it)
// before and after, and the track's settings before and after. Undo and redo put those records back
// into those parameters only, each rebuilt with its rows, lines and curve as a load builds them;
// nothing of the views is kept, so the records stay good however often the views were rebuilt.
class FTrackEdit : public UndoCommand {
public:
    // One parameter the action touched: index is its place in the track before the action (after
    // it, for a parameter the action made). An empty state stands for no parameter: before is empty
    // for a parameter the action made, after for one it deleted.
    struct Record {
        int index = -1;
        std::string before;
        std::string after;
    };

    // Records an action named name; records are in the order of their indices.
    FTrackEdit(const jString& name, std::vector<Record> records, const FTrackSettings& before,
               const FTrackSettings& after);

    void undo() override;
    void redo() override;
    jString name() const override { return m_name; }
    size_t bytes() const override;

private:
    // Gives the document the state of each record that forward (after) or not (before) picks.
    void apply(bool forward) const;

    jString m_name;
    std::vector<Record> m_records;
    FTrackSettings m_before;
    FTrackSettings m_after;
};
