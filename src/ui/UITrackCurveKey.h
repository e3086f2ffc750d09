#pragma once

class FKey;
class UITrackCurve;

// The point of one key on its parameter's curve. The editor key owns it; the curve lists it.
class UITrackCurveKey {
public:
    explicit UITrackCurveKey(FKey* key) : m_key(key) {}
    virtual ~UITrackCurveKey() = default;
    UITrackCurveKey(const UITrackCurveKey&) = delete;
    UITrackCurveKey& operator=(const UITrackCurveKey&) = delete;

    virtual FKey* getKey() const { return m_key; }
    virtual UITrackCurve* getCurve() const { return m_curve; }
    virtual void setCurve(UITrackCurve* curve) { m_curve = curve; }
    // Leaves the curve (when on one).
    virtual void clearRender();
    // The time of the key the point shows (points sort by it).
    float getTime() const;

private:
    FKey* m_key;
    UITrackCurve* m_curve = nullptr;
};
