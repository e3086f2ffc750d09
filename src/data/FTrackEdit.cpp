#include "data/FTrackEdit.h"

#include <utility>

#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"

FTrackEdit::FTrackEdit(const jString& name, std::vector<Record> records, const FTrackSettings& before,
                       const FTrackSettings& after)
    : m_name(name), m_records(std::move(records)), m_before(before), m_after(after)
{
}

void FTrackEdit::undo()
{
    apply(false);
}

void FTrackEdit::redo()
{
    apply(true);
}

size_t FTrackEdit::bytes() const
{
    size_t held = sizeof(*this);
    for (const Record& record : m_records)
        held += sizeof(record) + record.before.size() + record.after.size();
    return held;
}

// Parameters the state lacks go first, from the last, so that every index still names the
// parameter it named; parameters it adds come last, from the first, each at its own place. The
// records were written by the engine from parameters it held: they read again, and a failure is
// logged by the engine with the reason.
void FTrackEdit::apply(bool forward) const
{
    FTrack* document = AppData::get()->getTrack();
    auto state = [forward](const Record& r) -> const std::string& { return forward ? r.after : r.before; };
    auto other = [forward](const Record& r) -> const std::string& { return forward ? r.before : r.after; };
    for (auto r = m_records.rbegin(); r != m_records.rend(); ++r)
        if (state(*r).empty())
            document->eraseParameter(r->index);
    for (const Record& r : m_records)
        if (!state(r).empty() && !other(r).empty())
            document->replaceParameter(r.index, state(r));
    for (const Record& r : m_records)
        if (!state(r).empty() && other(r).empty())
            document->insertParameter(r.index, state(r));
    (forward ? m_after : m_before).applyTo(*document->getEngineTrack());
    AppData::get()->fitRange();
}
