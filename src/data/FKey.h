#pragma once

class FParameterSingle;
class UITrackCurveKey;
class UITrackLineKey;

// One key of an editor-side parameter: its time and the marks that show it in the key line panel
// and the curve panel. The kinds add the value. The owning parameter frees its keys; a key frees
// its marks (releaseUI).
class FKey {
public:
    FKey() = default;
    virtual ~FKey() = default;
    FKey(const FKey&) = delete;
    FKey& operator=(const FKey&) = delete;

    virtual FParameterSingle* getParameter() const { return m_parameter; }
    virtual void setParameter(FParameterSingle* parameter) { m_parameter = parameter; }
    virtual UITrackLineKey* getLineKey() const { return m_line_key; }
    virtual void setLineKey(UITrackLineKey* key) { m_line_key = key; }
    virtual UITrackCurveKey* getCurveKey() const { return m_curve_key; }
    virtual void setCurveKey(UITrackCurveKey* key) { m_curve_key = key; }
    virtual float getTime() const { return m_time; }
    virtual void setTime(float time) { m_time = time; }
    // The parameter kind of the key (TRACK_PARAMETER_TYPE); -1 for the base.
    virtual int getType() const { return -1; }

    // Called when the user presses the key's mark; the base does nothing.
    virtual void onPress() {}
    // Takes the key's marks out of their line and curve and frees them.
    void releaseUI();
    // Takes the key out of its parameter's key list (which is re-sorted) and forgets the parameter.
    void detach();

private:
    FParameterSingle* m_parameter = nullptr;
    UITrackLineKey* m_line_key = nullptr;
    UITrackCurveKey* m_curve_key = nullptr;
    float m_time = 0.0f;
};
