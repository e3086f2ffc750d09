#pragma once

#include "kit/jString.h"
#include "kit/jVector.h"

class UICanvas;

// Labelled ticks along a time axis, drawn into a canvas: a tick at every multiple of a round step
// (whole frames with a frame rate, else 1, 2 or 5 x 10^n seconds), each labelled at its right. The
// step grows with the zoom so that no two labels ever touch: at least LABEL_GAP pixels lie between
// one label's end and the next tick.
class UITimeRuler {
public:
    // The least distance between ticks, and between a label's end and the next tick, in pixels.
    static constexpr int MIN_TICK_PIXELS = 40;
    static constexpr int LABEL_GAP = 6;

    UITimeRuler() = default;
    UITimeRuler(const UITimeRuler&) = delete;
    UITimeRuler& operator=(const UITimeRuler&) = delete;

    // Draws on canvas from now on, at draw order (after taking its shapes off the canvas drawn on
    // before; null leaves no canvas).
    void attach(UICanvas* canvas, int order);
    // Draws the ticks of [from, to] mapped as the key lines map their range onto a canvas width
    // pixels wide, from y = top down; fps is the track's frame rate (0: seconds). Nothing without a
    // canvas, or when nothing changed since the last render; an empty or inverted axis draws no tick.
    void render(float from, float to, int width, int top, float fps);
    // Takes every shape off the canvas and forgets it.
    void clearShapes();

    // The step in seconds of the last render (0 when it drew nothing).
    double getStep() const { return m_step; }
    // The canvas ids of the ticks and of their labels, left to right, the last render drew.
    const jVector<int>& getTicks() const { return m_ticks; }
    const jVector<int>& getLabels() const { return m_labels; }
    // The labels' texts, in the same order.
    const jVector<jString>& getTexts() const { return m_texts; }

private:
    // Lays out ticks of step; returns the widest label's width in pixels.
    int place(float from, float to, int width, int top, float fps, double step);
    void fit(int count);

    UICanvas* m_canvas = nullptr;
    int m_order = 0;
    // What the last render drew, so that an unchanged axis is not laid out again.
    float m_from = 0.0f;
    float m_to = 0.0f;
    int m_width = -1;
    int m_top = 0;
    float m_fps = -1.0f;
    double m_step = 0.0;
    jVector<int> m_ticks;
    jVector<int> m_labels;
    jVector<jString> m_texts;
};
