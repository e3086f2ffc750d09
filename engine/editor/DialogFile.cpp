#include "editor/DialogFile.h"

#include "ModalAnswer.h"
#include "kit/jLog.h"

DialogFile::DialogFile(UIRoot* app, const char* title, bool save) : m_app(app), m_title(title), m_save(save) {}

DialogFile::~DialogFile() = default;

void DialogFile::setCurrentPath(const char* path)
{
    m_current_path = path;
}

void DialogFile::setFilter(const char* filter)
{
    m_filter = filter;
}

bool DialogFile::modality()
{
    m_path = jString::null();
    UIAnswer answer;
    jString chosen;
    bool accepted = false;
    switch (modalRoute(m_app, "DialogFile::modality", m_title.c_str(), answer)) {
    case ModalRoute::Answered:
        accepted = answer.kind == UIAnswerKind::FilePath && answer.text.nempty();
        if (!accepted && answer.kind != UIAnswerKind::Cancel)
            jLog::warning("%s:the queued answer is not a file for \"%s\"; cancelled", "DialogFile::modality",
                          m_title.c_str());
        chosen = answer.text;
        break;
    case ModalRoute::Refused:
        break;
    case ModalRoute::Interactive:
        accepted = run_dialog(chosen) && chosen.nempty();
        break;
    }
    if (accepted)
        m_path = chosen;
    return accepted;
}
