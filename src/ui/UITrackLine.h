#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class FParameterSingle;
class UICanvas;
class UITrackLineKey;

// The key line of one parameter in the key line panel: a band at the parameter's row and one mark
// per key. The parameter owns the line and its marks; the panel holds the line and gives it its
// canvas. A light and a dark shade of the row colour draw the band and the switch marks.
class UITrackLine {
public:
    UITrackLine() = default;
    virtual ~UITrackLine();
    UITrackLine(const UITrackLine&) = delete;
    UITrackLine& operator=(const UITrackLine&) = delete;

    virtual FParameterSingle* getData() const { return m_data; }
    virtual void setData(FParameterSingle* data) { m_data = data; }
    virtual int getId() const { return m_id; }
    virtual void setId(int id) { m_id = id; }
    virtual UICanvas* getCanvas() const { return m_canvas; }
    virtual const vec4& getDarkColor() const { return m_dark; }
    virtual const vec4& getLightColor() const { return m_light; }
    virtual bool isDirty() const { return m_dirty; }
    virtual void setDirty(bool dirty) { m_dirty = dirty; }
    virtual jVector<UITrackLineKey*>& getKeys() { return m_keys; }
    // Draws the band with its top at y across width pixels; the panel draws the marks.
    virtual void render(int y, int width, bool selected);
    // Stores the light shade (each channel + 0.25) and the dark one (each channel × 0.25), both
    // clamped to [0, 1] with alpha 1, and marks the line dirty.
    virtual void setColor(const vec4& color);
    // The label the marks of this line show; the base shows none.
    virtual jString getText() const { return jString(); }

    // Draws on canvas from now on (shapes are made at the next render).
    void attach(UICanvas* canvas);
    // Leaves the panel (when in one) and removes the band from the canvas; the marks stay listed.
    virtual void clearRender();
    // Forgets the panel and the canvas without touching them, for when the panel goes first.
    virtual void forgetRender();
    // Adds a mark (the caller then sorts); the mark learns its line and draws on the line's canvas.
    void addKey(UITrackLineKey* key);
    // Takes a mark out of the list and out of the panel's selection; false when it is not listed.
    bool removeKey(UITrackLineKey* key);
    // Takes every mark out at once, as removeKey does one (each forgets its line): what a
    // parameter releasing its keys calls first, so that releasing them costs no search.
    void removeAllKeys();
    // Orders the marks by their keys' times; marks at one time keep their order (the keys' own).
    void sortKeys();
    // The canvas id of the band polygon (what the panel's hit test compares), or -1.
    int getBandPolygon() const { return m_band_polygon; }
    // Which axis of a vector the line shows (-1 for a parameter that is not a component).
    int getComponent() const { return m_component; }
    void setComponent(int component) { m_component = component; }

    // Empties the band's shapes (the line left the view); the next render fills them again.
    void concealBand();
    // Whether the panel drew the line's marks in view (they are taken off when it scrolls out).
    bool isInView() const { return m_in_view; }
    void setInView(bool inView) { m_in_view = inView; }

    static constexpr int ROW_PITCH = 22;

private:
    FParameterSingle* m_data = nullptr;
    int m_id = -1;
    int m_component = -1;
    int m_band_line = -1;
    int m_band_polygon = -1;
    UICanvas* m_canvas = nullptr;
    vec4 m_dark{0.0f, 0.0f, 0.0f, 1.0f};
    vec4 m_light{0.25f, 0.25f, 0.25f, 1.0f};
    bool m_dirty = true;
    bool m_in_view = false;
    jVector<UITrackLineKey*> m_keys;
};
