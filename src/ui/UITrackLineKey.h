#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"

class FKey;
class UICanvas;
class UITrackLine;

// The mark of one key on its key line: a small pentagon (pointing up, or down for a key whose
// value is empty), an optional label and a 12 × 21 pixel hit area. The editor key owns its mark.
class UITrackLineKey {
public:
    explicit UITrackLineKey(FKey* key);
    virtual ~UITrackLineKey();
    UITrackLineKey(const UITrackLineKey&) = delete;
    UITrackLineKey& operator=(const UITrackLineKey&) = delete;

    virtual FKey* getKey() const { return m_key; }
    virtual void setKey(FKey* key) { m_key = key; }
    virtual UITrackLine* getLine() const { return m_line; }
    // Sets the line the mark belongs to; the mark draws on the line's canvas from its next render.
    virtual void setLine(UITrackLine* line);
    // Leaves the line (when on one), removes the shapes from the canvas and resets the ids.
    virtual void clearRender();
    // Draws the mark centred at x (the pixel of the key's time in the visible range) with the row
    // top at y, making its shapes on first use; a selected mark is filled white.
    virtual void render(int x, int y, bool selected);
    // True when the mark shows a key whose value is empty (drawn pointing down).
    virtual bool isEmptyMark() const { return false; }
    virtual jString getText() const { return jString(); }
    // The fill of an unselected mark.
    virtual vec4 getColor() const { return vec4(0.0f, 0.0f, 0.0f, 0.0f); }
    // The user double-clicked the mark; the base does nothing.
    virtual void onDClick() {}

    // The time of the key the mark shows (marks sort by it).
    float getTime() const;
    int getHitPolygon() const { return m_hit_polygon; }
    int getMarkPolygon() const { return m_mark_polygon; }
    int getOutline() const { return m_outline; }
    int getTextId() const { return m_text; }
    // Takes the shapes off the canvas (the mark's line left the view); the next render makes them
    // again.
    void hide();
    // Empties the shapes but keeps them (the mark is covered by its neighbour or off the canvas),
    // so showing it again costs no new shapes.
    void conceal();
    // Hides the mark and forgets the canvas but stays on the line (the line left its canvas).
    void clearShapes();
    // Forgets the canvas without touching it, for when the panel goes first.
    void forgetRender();

protected:
    // After the mark changed its key's value: writes the parameter's keys to the engine, redraws
    // the line and posts message 197.
    void commit_edit();

private:
    void make_shapes();
    void draw_text(int x, int y);

    FKey* m_key;
    UITrackLine* m_line = nullptr;
    // A large track has a mark per key: the flag shares the text's word rather than grow every mark.
    int m_text : 31 = -1;
    unsigned m_concealed : 1 = false; // the shapes are empty since conceal
    int m_outline = -1;
    int m_mark_polygon = -1;
    int m_hit_polygon = -1;
    UICanvas* m_canvas = nullptr;
};
