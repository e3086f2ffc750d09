#pragma once

#include <QPointF>
#include <cstdint>
#include <vector>

// The pixels of a trace (an open polyline one pixel wide, aliased) as runs of rows, one each time
// it crosses a pixel column, measured once from its points and then drawn at any whole-pixel
// offset: a panned curve of thousands of points costs a run per column, not a chord per point. In
// the pixel column x (canvas x up to x + 1) a chord covers the rows from the one where it enters
// the column to the one where it leaves it, so a steep chord is a solid vertical run and a trace is
// never broken between columns.
class UITraceColumns {
public:
    // The rows of one column that the trace covers, first to last (canvas pixels).
    struct Run {
        int column;
        int top;
        int bottom;
    };
    // Points and rows further off than this are held there: a flat curve's degenerate range puts
    // points far off any screen, and whole pixels near int's limits would overflow.
    static constexpr int REACH = 1 << 24;

    // Measures the trace through points (canvas pixels), replacing what was measured before; points
    // that are not finite break no column but draw nothing.
    void measure(const std::vector<QPointF>& points);
    // The runs from the leftmost column to the rightmost (a column crossed again gets another).
    const std::vector<Run>& runs() const { return m_runs; }
    // Whether there is one run per column, from the first run's on without a gap, and every row
    // fits in 16 bits, as a curve's mostly do: the rows are then also kept column by column, in a
    // third of the room, which a painter of a hundred curves reads instead of the runs.
    bool isDense() const { return !m_rows.empty(); }
    // The top and bottom rows of each column from the first run's on, in turn.
    const std::vector<std::int16_t>& rows() const { return m_rows; }

private:
    // Covers the chord a-b (a.x <= b.x) in each column it crosses.
    void chord(const QPointF& a, const QPointF& b);
    // Covers the chord a-b (within the columns measured, finite) that starts in column c - 1 and
    // ends in c, as chord does.
    void step(const QPointF& a, const QPointF& b, int c);
    // Adds the rows between ya and yb of column c to the run being gathered: chords in time order
    // mostly meet in one column, and the run covers them all at once.
    void cover(int c, double ya, double yb);
    // Ends the gathered run.
    void flush();
    // Joins the runs of a column that meet or touch, taken in turn: a curve that turns back within a
    // column crosses it again over rows it mostly covered already.
    void join_runs();
    // Keeps the rows of dense runs column by column (and none for others).
    void keep_rows();

    std::vector<Run> m_runs;
    std::vector<std::int16_t> m_rows;
    double m_left = 0.0, m_right = 0.0; // the columns measured, right excluded
    int m_run_column = 0;
    double m_run_top = 0.0, m_run_bottom = -1.0; // the gathered run's rows (none while top > bottom)
};
