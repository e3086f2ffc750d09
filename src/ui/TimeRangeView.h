#pragma once

// The shown time range of the key lines (the play range between the begin and end marks) as the
// view's zoom and pan move it, inside the track's limits [lo, hi]. Every result is ordered and at
// least MIN_SPAN long (or the whole track, when that is shorter), so the range never inverts and
// never becomes empty.
class TimeRangeView {
public:
    // The shortest range a zoom reaches, in seconds.
    static constexpr float MIN_SPAN = 0.01f;
    // How much one wheel notch narrows the range (a notch back widens it by the inverse).
    static constexpr float NOTCH_ZOOM = 0.8f;

    TimeRangeView(float begin, float end, float lo, float hi);

    // Narrows (notches > 0) or widens the range about pivot, so that pivot keeps its place in the
    // range, as long as the limits allow it.
    void zoom(float pivot, int notches);
    // Moves the range by seconds, keeping its length; it stops at the limits.
    void pan(float seconds);
    // Shows [from, to] with a margin of a twentieth of its length on each side (a single time is
    // shown centred in a range of a second).
    void frame(float from, float to);
    // Shows the whole track.
    void frameAll();

    float begin() const { return m_begin; }
    float end() const { return m_end; }

private:
    // Sets the range to [begin, begin + span], the span held between MIN_SPAN and the track's
    // length and the range shifted inside the limits.
    void place(double begin, double span);

    float m_begin;
    float m_end;
    float m_lo;
    float m_hi;
};
