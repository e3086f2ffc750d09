// The key clipboard: Ctrl+C copies the selected keys to the desktop's clipboard as text, Ctrl+X
// cuts them, Ctrl+V pastes the clipboard's keys at the current time and Ctrl+D duplicates the
// selected keys there without touching the clipboard. Each cut, paste or duplicate is one step of
// the history, and the pasted keys are the selected ones afterwards.
#include "ui/TrackEditor.h"

#include <string>

#include "TrackEditorMsg.h"
#include "data/AppData.h"
#include "data/FKeyClipboard.h"
#include "editor/Clipboard.h"
#include "msg/MsgMngr.h"
#include "ui/TimeUnits.h"

bool TrackEditor::copy_keys()
{
    std::string text;
    if (!FKeyClipboard::copy(text))
        return false;
    Clipboard::setText(jString(text.c_str()));
    return true;
}

void TrackEditor::cut_keys()
{
    if (!copy_keys())
        return;
    begin_edit("step_cut_keys");
    delete_key();
    MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_DELETED);
}

bool TrackEditor::paste_keys(const std::string& text, const char* step)
{
    FKeyClipboard clipboard;
    begin_edit(step);
    clear_selected(); // the parameters that take keys get new rows, lines and keys
    const bool pasted = clipboard.paste(text, TimeUnits::landing(AppData::get()->getTime()));
    commit_edit();
    if (!pasted)
        return false;
    show_restored();
    clipboard.markPasted();
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
    return true;
}

void TrackEditor::paste_clipboard()
{
    paste_keys(std::string(Clipboard::getText().c_str()), "step_paste_keys");
}

void TrackEditor::duplicate_keys()
{
    std::string text;
    if (FKeyClipboard::copy(text))
        paste_keys(text, "step_duplicate_keys");
}
