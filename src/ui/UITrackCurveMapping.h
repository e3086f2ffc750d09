#pragma once

// Where the curve view puts a time and a value: time runs across a canvas exactly as in the key
// lines (x = (t - begin) * (W - 12) / (end - begin) + 6, so a key sits straight above its mark
// there) and value runs up, the value range's low end VALUE_MARGIN pixels above the bottom edge
// and its high end VALUE_MARGIN pixels below the top. Pure arithmetic in double: nothing here
// divides by zero, whatever the size and ranges (a zero-width time range puts every time at x = 6;
// an inverted one is used in its ordered form).
class UITrackCurveMapping {
public:
    // The margins of the key lines, left and right, in pixels.
    static constexpr int SIDE_MARGIN = 6;
    // The pixels between the value range and the top and bottom edges.
    static constexpr int VALUE_MARGIN = 10;

    // A 100 x 100 view of 0 to 1 s and of the values 0 to 1.
    UITrackCurveMapping() = default;

    // Sets the canvas size in pixels (negative sizes count as 0).
    void setSize(int width, int height);
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }

    // Sets the time range, ordering it when begin is after end.
    void setTimeRange(double begin, double end);
    double getBeginTime() const { return m_begin; }
    double getEndTime() const { return m_end; }

    // Sets the value range, ordered, and widened about its middle to the smallest span that keeps
    // a pixel's value distinct (MIN_SPAN_RATIO of its magnitude) when it is narrower. Bounds that
    // are not finite change nothing.
    void setValueRange(double low, double high);
    double getLowValue() const { return m_low; }
    double getHighValue() const { return m_high; }

    bool operator==(const UITrackCurveMapping&) const = default;

    // The canvas x of time t, and the time at canvas x (begin everywhere for a zero-width range).
    double xOfTime(double t) const { return (t - m_begin) * m_x_scale + SIDE_MARGIN; }
    double timeOfX(double x) const;
    // The canvas y of value v, and the value at canvas y.
    double yOfValue(double v) const { return (m_high - v) * m_y_scale + VALUE_MARGIN; }
    double valueOfY(double y) const;
    // The time one pixel across spans (0 for a zero-width range), and the value one pixel up spans.
    double timePerPixel() const;
    double valuePerPixel() const;

    // Multiplies the shown value span by factor (above 1 shows more values) about the value under
    // canvas y, which stays under y. A factor that is not positive and finite, or one that would
    // narrow the span below what setValueRange keeps, changes nothing.
    void zoomValue(double y, double factor);
    // Moves the shown values so the curves move dy pixels down (the value under a point follows a
    // pointer dragged by dy).
    void panValue(double dy);
    // Shows the values low to high (in any order) within the margins. A flat or tiny range (a
    // constant curve: narrower than FLAT_RATIO of its magnitude) is shown as a span of
    // max(1, FLAT_SPAN * |middle|) around its middle instead.
    void frameValues(double low, double high);

    // Returns the smallest step 1, 2 or 5 x 10^n whose multiples lie at least minPixels apart
    // where one pixel spans valuePerPixel; 0 when valuePerPixel * minPixels is not positive and
    // finite.
    static double gridStep(double valuePerPixel, int minPixels);

    // The narrowest value span the mapping keeps, relative to the larger of 1 and the range's
    // magnitude.
    static constexpr double MIN_SPAN_RATIO = 1e-9;
    // What frameValues treats as flat, relative to the larger of 1 and the range's magnitude, and
    // the share of the magnitude it then shows.
    static constexpr double FLAT_RATIO = 1e-6;
    static constexpr double FLAT_SPAN = 0.2;

private:
    // The pixels across which the time range and the value range are spread (at least 1).
    double time_pixels() const;
    double value_pixels() const;
    // The narrowest span kept about a range of this magnitude.
    static double min_span(double low, double high);
    // Derives the pixels per second and per value unit from the size and ranges.
    void rescale();

    int m_width = 100;
    int m_height = 100;
    double m_begin = 0.0;
    double m_end = 1.0;
    double m_low = 0.0;
    double m_high = 1.0;
    double m_x_scale = 88.0;  // pixels per second: 0 for a zero-width range
    double m_y_scale = 80.0;  // pixels per value unit
};
