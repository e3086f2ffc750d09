#pragma once

#include <memory>
#include <string>

#include "editor/UndoCommand.h"

// One user action that replaced the whole document (a glTF import), recorded as the document's
// saved bytes before and after it. The bytes name nothing the views own, so undo and redo only
// assign a recorded state back, however often the rows, lines and keys were rebuilt since. Every
// other action records only what it touched (FTrackEdit).
class FDocumentEdit : public UndoCommand {
public:
    // Records an action named name that turned the document from before into after.
    FDocumentEdit(const jString& name, std::shared_ptr<const std::string> before,
                  std::shared_ptr<const std::string> after);

    void undo() override;
    void redo() override;
    jString name() const override { return m_name; }
    size_t bytes() const override { return m_before->size() + m_after->size(); }

private:
    jString m_name;
    std::shared_ptr<const std::string> m_before;
    std::shared_ptr<const std::string> m_after;
};
