#pragma once

#include <memory>
#include <string>

#include "editor/UndoCommand.h"

// One user action on the document, recorded as the document's saved bytes before and after it. The
// bytes name nothing the views own, so undo and redo only assign a recorded state back, however
// often the rows, lines and keys were rebuilt since. The key edits, parameter edits, switches and
// track options all take this form: whatever the action changed, the saved file says it.
class FDocumentEdit : public UndoCommand {
public:
    // Records an action named name that turned the document from before into after. Consecutive
    // steps share the state between them.
    FDocumentEdit(const jString& name, std::shared_ptr<const std::string> before,
                  std::shared_ptr<const std::string> after);

    void undo() override;
    void redo() override;
    jString name() const override { return m_name; }

private:
    jString m_name;
    std::shared_ptr<const std::string> m_before;
    std::shared_ptr<const std::string> m_after;
};
