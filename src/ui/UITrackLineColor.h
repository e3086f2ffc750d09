#pragma once

#include "kit/jVector.h"
#include "ui/UITrackLineLabeled.h"

// The key line of a colour parameter. Under its marks it shows the animated colour as a strip:
// one pixel per column of the line, each the parameter's colour at that column's time.
class UITrackLineColor : public UITrackLineLabeled {
public:
    // Draws the band and the strip over the visible range.
    void render(int y, int width, bool selected) override;
    void clearRender() override;
    void forgetRender() override;

    // Gives the strip width pixels (one row high); a width of 0 leaves it empty.
    void setStripWidth(int width);
    int getStripWidth() const { return m_strip.size(); }
    // Sets pixel i of the strip to the colour at time i × scale + offset.
    void refreshStrip(float scale, float offset);
    const vec4& getStripPixel(int i) const { return m_strip[i]; }

protected:
    const char* text_function() const override { return "UITrackLineColor::getText"; }

private:
    void draw_strip(int y);
    void clear_strip_shapes();

    jVector<vec4> m_strip;
    jVector<int> m_strip_polygons;
};
