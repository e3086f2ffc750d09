#pragma once

#include "ui/UIEditLine.h"

// A number field with an optional label in front. Besides typing, the mouse wheel over it and a
// horizontal drag started on it (while it is not being edited) change the value: a wheel notch
// adds or takes one step, a drag one step for every 4 pixels. Each such change raises sigChanged
// and then sigCommit. A click without a drag starts editing the text.
class UIEditLineWheel : public UIEditLine {
public:
    explicit UIEditLineWheel(UIRoot* root, const char* label = "");

    // The amount one wheel notch adds (0.1 by default).
    void setStep(float step);
    float getStep() const { return m_step; }
    // The field's value (the text read as a number; 0 when it is not one).
    float getValue() const;
    // Shows a value without raising any event.
    void setValue(float value);

private:
    // The user turned the wheel or dragged by steps: applies and announces the change.
    void nudge(float steps);

    float m_step = 0.1f;
};
