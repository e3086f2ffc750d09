#include "ui/SettingsPanel.h"

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/Locale.h"
#include "ui/UIFactory.h"
#include "ui/UIGridLayout.h"
#include "ui/UILabel.h"

namespace {

// Keeps the start and end of a track apart, so the track never has an empty range.
constexpr float MIN_GAP = 0.000001f;

Track* currentTrack()
{
    FTrack* document = AppData::get()->getTrack();
    return document ? document->getEngineTrack() : nullptr;
}

} // namespace

SettingsPanel::SettingsPanel(UIRoot* root)
    : UIWindow(root, "", 0, 0)
{
    setPreferredSize(PREFERRED_WIDTH, PREFERRED_HEIGHT);
    m_grid = jNew<UIGridLayout>("src/ui/SettingsPanel", __LINE__, "SettingsPanel::SettingsPanel", root, 2, 4);
    m_grid->setFixHeight(50);
    addChild(m_grid, UI_EXPAND_ACROSS, -1);
    m_min = add_row("min_time", &SettingsPanel::setMinTime, &SettingsPanel::getMinTime, TRACK_MSG_LIMITS_CHANGED);
    m_max = add_row("max_time", &SettingsPanel::setMaxTime, &SettingsPanel::getMaxTime, TRACK_MSG_LIMITS_CHANGED);
    m_frame_rate = jNew<UIFloat>("src/ui/SettingsPanel", __LINE__, "SettingsPanel::SettingsPanel", AppData::get(),
                                 &AppData::setFrameRate, &AppData::getFrameRate, label("frame_rate"),
                                 TRACK_MSG_OPTION_CHANGED, "");
}

UIElement* SettingsPanel::label(const char* key)
{
    m_grid->addChild(jNew<UILabel>("src/ui/SettingsPanel", __LINE__, "SettingsPanel::SettingsPanel", getRoot(),
                                   tr(key)),
                     UI_EXPAND_NONE, -1);
    return m_grid;
}

UIFloat* SettingsPanel::add_row(const char* key, void (SettingsPanel::*setter)(float),
                                float (SettingsPanel::*getter)() const, int message)
{
    return jNew<UIFloat>("src/ui/SettingsPanel", __LINE__, "SettingsPanel::SettingsPanel", this, setter, getter,
                         label(key), message, "");
}

void SettingsPanel::refresh()
{
    m_min->refresh();
    m_max->refresh();
    m_frame_rate->refresh();
}

void SettingsPanel::release()
{
    jDelete(m_min, "src/ui/SettingsPanel", __LINE__, "SettingsPanel::release");
    jDelete(m_max, "src/ui/SettingsPanel", __LINE__, "SettingsPanel::release");
    jDelete(m_frame_rate, "src/ui/SettingsPanel", __LINE__, "SettingsPanel::release");
    m_min = nullptr;
    m_max = nullptr;
    m_frame_rate = nullptr;
    UIWindow::release();
}

float SettingsPanel::getMinTime() const
{
    Track* track = currentTrack();
    return track ? track->getBeginTime() : 0.0f;
}

void SettingsPanel::setMinTime(float t)
{
    Track* track = currentTrack();
    if (!track)
        return;
    float limit = track->getEndTime() - MIN_GAP;
    t = t < limit ? t : limit;
    track->setBeginTime(t > 0.0f ? t : 0.0f);
}

float SettingsPanel::getMaxTime() const
{
    Track* track = currentTrack();
    return track ? track->getEndTime() : 0.0f;
}

void SettingsPanel::setMaxTime(float t)
{
    Track* track = currentTrack();
    if (!track)
        return;
    float least = track->getBeginTime() + MIN_GAP;
    track->setEndTime(t > least ? t : least);
}
