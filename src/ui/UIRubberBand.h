#pragma once

class UICanvas;

// The rubber-band box a view draws while the user drags from empty space to select: a translucent
// fill with a light outline, on a canvas the view owns.
class UIRubberBand {
public:
    // Makes the box's two shapes on canvas at draw order order (the outline at order + 1).
    UIRubberBand(UICanvas* canvas, int order);
    UIRubberBand(const UIRubberBand&) = delete;
    UIRubberBand& operator=(const UIRubberBand&) = delete;

    // Draws the box between two corners (canvas pixels, in any order) and returns its edges.
    void show(int x0, int y0, int x1, int y1, int& left, int& top, int& right, int& bottom);
    // Hides the box.
    void hide();
    // Puts the box above everything drawn at lower orders (the outline at order + 1).
    void raise(int order);

private:
    UICanvas* m_canvas;
    int m_fill;
    int m_outline;
};
