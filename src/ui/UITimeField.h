#pragma once

#include "kit/jString.h"
#include "ui/UIFactory.h"

// A time in an edit line, written and read through TimeUnits at the document's frame rate: shown
// rounded to the frame (or to four decimals without one), typed as seconds ("1.5") or frames
// ("36f"). A wheel notch or a drag step moves it by one frame (0.1 s without a frame rate). Text
// that is not a time is not written: the field shows the value again.
class UITimeField : public UIWrap<float> {
public:
    // Puts a time field showing getter's value into parent; message is posted after each edit the
    // user commits (see UIWrap).
    template <class C, class S, class G>
    UITimeField(C* owner, S setter, G getter, UIElement* parent, int message, const char* label)
        : UIWrap<float>(DataOper<float>(owner, setter, getter), message)
    {
        build(parent, label);
    }

    // Shows the getter's value unless the field has the keyboard focus.
    void refresh() override;
    // Shows value and announces it to the listeners (writing it is the caller's step).
    void setValue(const float& value) override;

    // Returns the time the field's text reads as, NaN when it is not a time.
    float getShown() const;
    UIEditLineWheel* edit() const { return static_cast<UIEditLineWheel*>(m_editor); }

private:
    friend class UIWrap<float>;
    void build(UIElement* parent, const char* label);
    void show(float value);
    void finish();
    void on_focus(const UIEventFocus* e, UIElement*);

    jString m_written;
};
