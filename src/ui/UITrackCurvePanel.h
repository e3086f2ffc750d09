#pragma once

#include "kit/jSet.h"
#include "kit/jVector.h"

class UITrackCurve;
class UITrackCurveKey;

// What the curve view shows and has selected: the list of shown curves, the selected curves and
// the selected curve points. The editor window makes one; get() returns it. Drawing the curves is
// the curve view's, which builds on these lists.
class UITrackCurvePanel {
public:
    UITrackCurvePanel();
    ~UITrackCurvePanel();
    UITrackCurvePanel(const UITrackCurvePanel&) = delete;
    UITrackCurvePanel& operator=(const UITrackCurvePanel&) = delete;

    // Returns the panel made last, or null when there is none.
    static UITrackCurvePanel* get();

    // Adds curve to the shown list once.
    void showCurve(UITrackCurve* curve);
    void hideCurve(UITrackCurve* curve);
    bool isShown(const UITrackCurve* curve) const;
    const jVector<UITrackCurve*>& getShownCurves() const { return m_shown; }

    const jSet<UITrackCurve*>& getSelectedCurves() const { return m_selected_curves; }
    const jSet<UITrackCurveKey*>& getSelectedKeys() const { return m_selected_keys; }
    // Replace the selections (each marks the panel for redraw).
    void setSelectedCurves(const jVector<UITrackCurve*>& curves);
    void setSelectedKeys(const jVector<UITrackCurveKey*>& keys);
    // Marks every shown curve for redraw.
    void setDirty();
    // Drops every reference to a curve (or point) that is going away.
    void forgetCurve(UITrackCurve* curve);
    void forgetKey(UITrackCurveKey* key);

private:
    jVector<UITrackCurve*> m_shown;
    jSet<UITrackCurve*> m_selected_curves;
    jSet<UITrackCurveKey*> m_selected_keys;
};
