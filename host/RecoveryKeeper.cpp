#include "RecoveryKeeper.h"

#include "TrackEditorPlugin.h"
#include "kit/jLog.h"

RecoveryKeeper::RecoveryKeeper(const TrackEditorPluginApi* api, UIElement* editor, RecoveryStore store)
    : m_api(api), m_editor(editor), m_store(std::move(store))
{
}

bool RecoveryKeeper::save()
{
    if (!m_api->hasUnsavedEdits(m_editor))
        return true;
    if (m_store.folder().empty()) {
        jLog::error("%s:no folder for recovery copies: set HOME or %s", "RecoveryKeeper::save",
                    RecoveryStore::FOLDER_VARIABLE);
        return false;
    }
    std::string document = m_api->getPath(m_editor);
    std::string copy = m_store.copyPath(document);
    std::string error;
    if (!m_store.prepare(copy, document, error)) {
        jLog::error("%s:cannot write a recovery copy: %s", "RecoveryKeeper::save", error.c_str());
        return false;
    }
    if (!m_api->saveCopy(m_editor, copy.c_str())) // the engine logged the path and the reason
        return false;
    if (copy != m_copy)
        jLog::message("%s:unsaved edits are copied to %s", "RecoveryKeeper::save", copy.c_str());
    m_copy = copy;
    return true;
}

void RecoveryKeeper::keepBeforeDiscard(const char* why)
{
    if (!m_api->hasUnsavedEdits(m_editor) || !save())
        return;
    jLog::warning("%s:%s drops unsaved edits; they are kept in %s for the next start", "RecoveryKeeper::keep", why,
                  m_copy.c_str());
    m_copy.clear();
}

void RecoveryKeeper::tidy()
{
    if (m_copy.empty() || m_api->hasUnsavedEdits(m_editor))
        return;
    std::string error;
    if (!m_store.remove(m_copy, error))
        jLog::error("%s:cannot delete the recovery copy: %s", "RecoveryKeeper::tidy", error.c_str());
    m_copy.clear();
}

bool RecoveryKeeper::restore(const RecoveryStore::Copy& copy)
{
    if (!m_api->loadTrackAs(m_editor, copy.path.c_str(), copy.document.c_str(), true))
        return false;
    jLog::message("%s:restored unsaved edits of %s from %s", "RecoveryKeeper::restore",
                  copy.document.empty() ? "an untitled track" : copy.document.c_str(), copy.path.c_str());
    return save() && (copy.path == m_copy || discard(copy));
}

bool RecoveryKeeper::discard(const RecoveryStore::Copy& copy)
{
    std::string error;
    if (m_store.remove(copy.path, error))
        return true;
    jLog::error("%s:cannot delete the recovery copy: %s", "RecoveryKeeper::discard", error.c_str());
    return false;
}
