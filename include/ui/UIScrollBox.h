#pragma once

#include "ui/UIElement.h"

// A scrolled view of a vertical layout of children: when the children ask for more room than the
// box has (a minimum or fixed size larger than the view), scroll bars appear. Scroll values are
// content pixels from the top-left corner.
class UIScrollBox : public UIElement {
public:
    explicit UIScrollBox(UIRoot* root);

    int getHScrollValue() const;
    int getVScrollValue() const;
    // Scrolls; values are clamped to 0..max.
    void setHScrollValue(int value);
    void setVScrollValue(int value);
    int getHScrollMax() const;
    int getVScrollMax() const;
    // Content pixels per unit of scrolling input (a wheel notch moves 48 units); 1 by default.
    // Views that scroll by themselves (auto-scroll while dragging) multiply their steps by it.
    void setScrollScale(float scale);
    float getScrollScale() const { return m_scale; }
    // The part of the content in view, in content pixels.
    void getVisibleArea(int& x, int& y, int& width, int& height) const;

    // Raised when either scroll value changes.
    UISlot<UIEventChanged> sigScrolled;

private:
    float m_scale = 1.0f;
};
