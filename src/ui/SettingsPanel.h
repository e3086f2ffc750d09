#pragma once

#include "ui/UIWindow.h"

class UIFloat;
class UIGridLayout;

// The track settings window: the track's start and end time, each kept at least a microsecond
// apart from the other and the start never below 0, and its frame rate (0 for none).
class SettingsPanel : public UIWindow {
public:
    static constexpr int PREFERRED_WIDTH = 128;
    static constexpr int PREFERRED_HEIGHT = 112;

    explicit SettingsPanel(UIRoot* root);

    // Shows the current document's times unless a field is being typed into.
    void refresh();
    // Frees the value widgets, then the widget tree.
    void release() override;

    // The engine track's start time (0 without a track).
    float getMinTime() const;
    // Stores a start time: at most the end time minus a microsecond, then at least 0.
    void setMinTime(float t);
    // The engine track's end time (0 without a track).
    float getMaxTime() const;
    // Stores an end time of at least the start time plus a microsecond.
    void setMaxTime(float t);

private:
    // Adds the translated label of key to the grid; returns the grid, where the row's field goes.
    UIElement* label(const char* key);
    UIFloat* add_row(const char* key, void (SettingsPanel::*setter)(float), float (SettingsPanel::*getter)() const,
                     int message);

    UIGridLayout* m_grid = nullptr;
    UIFloat* m_min = nullptr;
    UIFloat* m_max = nullptr;
    UIFloat* m_frame_rate = nullptr;
};
