#include "data/FEditRecorder.h"

#include <algorithm>
#include <utility>

#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FParameter.h"
#include "data/FTrack.h"
#include "data/FTrackEdit.h"
#include "kit/jAllocator.h"

FTrack* FEditRecorder::document() const
{
    return m_hub->getTrack();
}

void FEditRecorder::begin()
{
    m_touched.clear();
    const Track* track = document() ? document()->getEngineTrack() : nullptr;
    m_settings = track ? FTrackSettings::of(*track) : FTrackSettings();
}

bool FEditRecorder::is_touched(const TrackParameter* param) const
{
    return std::any_of(m_touched.begin(), m_touched.end(), [param](const Touched& t) { return t.param == param; });
}

void FEditRecorder::touch(TrackParameter* param)
{
    const Track* track = document() ? document()->getEngineTrack() : nullptr;
    const int index = param && track && !is_touched(param) ? track->indexOf(param) : -1;
    if (index < 0)
        return;
    Touched touched{param, index, {}};
    if (document()->writeParameter(index, touched.before))
        m_touched.push_back(std::move(touched));
}

void FEditRecorder::touch(const FParameter* parameter)
{
    if (parameter)
        touch(parameter->getTopParameter()->getTrackParameter());
}

void FEditRecorder::made(TrackParameter* param)
{
    if (param && !is_touched(param))
        m_touched.push_back({param, -1, {}});
}

void FEditRecorder::replaced(const TrackParameter* old, TrackParameter* now)
{
    for (Touched& touched : m_touched)
        if (touched.param == old)
            touched.param = now;
}

UndoCommand* FEditRecorder::finish(const jString& name)
{
    const Track* track = document()->getEngineTrack();
    std::vector<FTrackEdit::Record> records;
    for (const Touched& touched : m_touched) {
        // A parameter the step deleted is no longer held: only its address is compared, never read.
        const bool stayed = track->getParameter(touched.index) == touched.param;
        const int now = stayed ? touched.index : track->indexOf(touched.param);
        std::string after;
        if (now >= 0 && !document()->writeParameter(now, after))
            continue; // logged; the parameter cannot be saved either
        if (after != touched.before)
            records.push_back({touched.before.empty() ? now : touched.index, touched.before, std::move(after)});
    }
    std::sort(records.begin(), records.end(),
              [](const FTrackEdit::Record& a, const FTrackEdit::Record& b) { return a.index < b.index; });
    const FTrackSettings before = m_settings;
    begin();
    if (records.empty() && before == m_settings)
        return nullptr;
    return jNew<FTrackEdit>("src/data/FEditRecorder", __LINE__, "FEditRecorder::finish", name, std::move(records),
                            before, m_settings);
}
