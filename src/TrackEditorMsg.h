#pragma once

// The Track Editor's event vocabulary: the host message ids that commands and views post after they
// changed something (MsgMngr::notifyHelper), and that TrackEditor::processMsg answers
// (ui/TrackEditorMessages.cpp holds every answer). The numbers are shared with the host and fixed.
enum TRACK_EDITOR_MSG : int {
    TRACK_MSG_PARAMETER_NEW = 193,       // a parameter was added, or bound from its picker
    TRACK_MSG_PARAMETER_DELETED = 194,   // a parameter was deleted
    TRACK_MSG_OPTION_CHANGED = 195,      // the loop switch or a material-hierarchy switch changed
    TRACK_MSG_BINDING_CHANGED = 196,     // a parameter was bound to another node or material
    TRACK_MSG_KEYS_CHANGED = 197,        // key values or types changed
    TRACK_MSG_LIMITS_CHANGED = 198,      // the track's begin or end time changed
    TRACK_MSG_RANGE_CHANGED = 199,       // the shown range (begin and end marks) changed
    TRACK_MSG_PARAMETER_CHANGED = 200,   // a parameter's value or switches changed
    TRACK_MSG_TIME_CHANGED = 201,        // the current time changed
    TRACK_MSG_KEYS_MOVED = 202,          // keys were moved in time
    TRACK_MSG_KEY_MADE = 203,            // a key was made; posted with the new FKey
    TRACK_MSG_KEYS_DELETED = 204,        // keys were deleted
    TRACK_MSG_SELECTION_LISTS = 205,     // marked keys changed: rebuild every view's selection
    TRACK_MSG_LINE_SELECTION = 206,      // the key lines' selection changed
    TRACK_MSG_ROW_SELECTION = 207,       // the rows' selection changed
    TRACK_MSG_CURVE_SELECTION = 208,     // the curves' selection changed
    TRACK_MSG_SAVED = 209,               // the track was saved (or a save was attempted)
    TRACK_MSG_LOADED = 210,              // a track was loaded
    TRACK_MSG_CLEARED = 211,             // the document was cleared; the host's to answer
};
