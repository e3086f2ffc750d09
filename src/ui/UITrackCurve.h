#pragma once

#include "kit/jMath.h"
#include "kit/jVector.h"

class FParameterSingle;
class UITrackCurveKey;

// The value-over-time curve of a float or double parameter: its colour, the value bounds it is
// drawn within, and one point per key in time order. The parameter owns it; the curve panel lists
// the curves it shows.
class UITrackCurve {
public:
    UITrackCurve() = default;
    virtual ~UITrackCurve() = default;
    UITrackCurve(const UITrackCurve&) = delete;
    UITrackCurve& operator=(const UITrackCurve&) = delete;

    virtual FParameterSingle* getData() const { return m_data; }
    virtual void setData(FParameterSingle* data) { m_data = data; }
    virtual const vec4& getColor() const { return m_color; }
    virtual void setColor(const vec4& color);
    virtual float getMinValue() const { return m_min; }
    virtual void setMinValue(float v) { m_min = v; }
    virtual float getMaxValue() const { return m_max; }
    virtual void setMaxValue(float v) { m_max = v; }
    virtual bool isDirty() const { return m_dirty; }
    virtual void setDirty(bool dirty) { m_dirty = dirty; }
    virtual jVector<UITrackCurveKey*>& getKeys() { return m_keys; }
    // Leaves the curve panel's lists (when it is shown there).
    virtual void clearRender();

    // Adds a point (the caller then sorts); the point learns its curve.
    void addKey(UITrackCurveKey* key);
    // Takes a point out; false when it is not there.
    bool removeKey(UITrackCurveKey* key);
    // Orders the points by their keys' times.
    void sortKeys();

private:
    FParameterSingle* m_data = nullptr;
    vec4 m_color{1.0f, 1.0f, 1.0f, 1.0f};
    float m_min = 0.0f;
    float m_max = 0.0f;
    bool m_dirty = true;
    jVector<UITrackCurveKey*> m_keys;
};
