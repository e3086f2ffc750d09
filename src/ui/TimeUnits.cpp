#include "ui/TimeUnits.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "data/AppData.h"
#include "kit/KeyState.h"
#include "ui/UITrackCurveGrid.h"
#include "ui/UITrackCurveMapping.h"

namespace {

bool hasFrames(float fps)
{
    return fps > 0.0f && std::isfinite(fps);
}

// Reads a whole text as a finite number; false when anything but spaces follows it.
bool readNumber(const char* text, size_t length, double& out)
{
    char buffer[64];
    if (length == 0 || length >= sizeof(buffer))
        return false;
    std::memcpy(buffer, text, length);
    buffer[length] = '\0';
    char* end = nullptr;
    out = std::strtod(buffer, &end);
    while (*end == ' ')
        ++end;
    return end != buffer && *end == '\0' && std::isfinite(out);
}

} // namespace

jString TimeUnits::format(float t, float fps)
{
    char text[48];
    std::snprintf(text, sizeof(text), "%.*f", DECIMALS, double(toFrame(t, fps)));
    size_t n = std::strlen(text);
    while (n > 0 && text[n - 1] == '0')
        --n;
    if (n > 0 && text[n - 1] == '.')
        --n;
    text[n] = '\0';
    return jString(std::strcmp(text, "-0") == 0 ? "0" : text);
}

bool TimeUnits::parse(const char* text, float fps, float& out)
{
    while (*text == ' ')
        ++text;
    size_t length = std::strlen(text);
    while (length > 0 && text[length - 1] == ' ')
        --length;
    const char unit = length > 0 ? char(std::tolower(static_cast<unsigned char>(text[length - 1]))) : '\0';
    const bool frames = unit == 'f';
    if (frames && !hasFrames(fps))
        return false;
    double value = 0.0;
    if (!readNumber(text, frames || unit == 's' ? length - 1 : length, value))
        return false;
    // Frames are divided in double precision, so that 36f at 24 fps is exactly 1.5.
    const double seconds = frames ? value / double(fps) : value;
    if (!(std::fabs(seconds) <= 3.0e38))
        return false;
    out = float(seconds);
    return true;
}

float TimeUnits::toFrame(float t, float fps)
{
    if (!hasFrames(fps))
        return t;
    return float(std::round(double(t) * double(fps)) / double(fps));
}

float TimeUnits::landing(float t)
{
    const AppData* data = AppData::get();
    const bool inverted = GetKeyState(VK_CONTROL) < 0;
    return data->isSnapping() != inverted ? toFrame(t, data->getFrameRate()) : t;
}

double TimeUnits::rulerStep(double secondsPerPixel, float fps, int minPixels)
{
    if (!hasFrames(fps))
        return UITrackCurveMapping::gridStep(secondsPerPixel, minPixels);
    const double frames = UITrackCurveMapping::gridStep(secondsPerPixel * double(fps), minPixels);
    if (frames <= 0.0)
        return 0.0;
    return (frames < 1.0 ? 1.0 : frames) / double(fps);
}

jString TimeUnits::label(double t, double step, float fps)
{
    if (!hasFrames(fps))
        return UITrackCurveGrid::formatValue(t, step);
    char text[32];
    std::snprintf(text, sizeof(text), "%.0f", std::round(t * double(fps)) + 0.0);
    return jString(text);
}
