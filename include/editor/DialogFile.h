#pragma once

#include "kit/jString.h"

class UIRoot;

// A modal file chooser, to open or to save. The base keeps the request (title, mode, folder,
// filter) and the result, and lets the toolkit's automation hook answer in place of a user: a
// queued file answer accepts that path, a cancel answer cancels. Without an answer and without a
// display it cancels and logs a warning, so nothing blocks. DialogFileEx shows the real dialog.
class DialogFile {
public:
    // Prepares a chooser titled title, for saving when save is true, for opening otherwise.
    DialogFile(UIRoot* app, const char* title, bool save);
    virtual ~DialogFile();
    DialogFile(const DialogFile&) = delete;
    DialogFile& operator=(const DialogFile&) = delete;

    // Sets the folder (or a file in it) the chooser starts in.
    void setCurrentPath(const char* path);
    // Sets which files are offered: extensions separated by ';' (".anim" or ".png;.jpg"); empty
    // offers every file.
    void setFilter(const char* filter);
    const jString& getTitle() const { return m_title; }
    const jString& getCurrentPath() const { return m_current_path; }
    const jString& getFilter() const { return m_filter; }
    bool isSave() const { return m_save; }

    // Runs the chooser modally. Returns true when a file was chosen (its path is then getPath()),
    // false when the user cancelled (getPath() is then empty).
    bool modality();
    // The chosen file of the last accepted run, empty otherwise.
    const jString& getPath() const { return m_path; }

protected:
    // Shows the chooser and waits for the user; returns false when cancelled, otherwise sets path.
    virtual bool run_dialog(jString& path) = 0;
    UIRoot* getApp() const { return m_app; }

private:
    bool take_answer(bool& accepted, jString& path);

    UIRoot* m_app;
    jString m_title;
    jString m_current_path;
    jString m_filter;
    jString m_path;
    bool m_save;
};
