#pragma once

#include "editor/DialogFile.h"

// The editor's file chooser window: a dialog in the editor's dark style listing the folder's
// sub-folders and the files that pass the filter, with a name field when saving.
class DialogFileEx : public DialogFile {
public:
    // Prepares a chooser titled title, for saving when save is true, for opening otherwise.
    DialogFileEx(UIRoot* app, const char* title, bool save);

protected:
    bool run_dialog(jString& path) override;
};
