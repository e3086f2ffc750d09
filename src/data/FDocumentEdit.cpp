#include "data/FDocumentEdit.h"

#include <utility>

#include "data/AppData.h"

FDocumentEdit::FDocumentEdit(const jString& name, std::shared_ptr<const std::string> before,
                             std::shared_ptr<const std::string> after)
    : m_name(name), m_before(std::move(before)), m_after(std::move(after))
{
}

void FDocumentEdit::undo()
{
    // The bytes were written by the engine from a document it had loaded: they load again, and a
    // failure is logged by the engine with the reason.
    AppData::get()->restore(*m_before);
}

void FDocumentEdit::redo()
{
    AppData::get()->restore(*m_after);
}
