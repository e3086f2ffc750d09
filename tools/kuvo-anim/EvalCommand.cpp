#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "AnimCommand.h"
#include "anim/Track.h"
#include "anim/TrackCurveBatch.h"
#include "anim/TrackKeyCodec.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterDVec3.h"
#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterString.h"
#include "anim/TrackParameterToggle.h"
#include "anim/TrackParameterTrack.h"
#include "anim/TrackParameterVec3.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "scene/World.h"

namespace {

// Most samples one eval prints; a step that would make more is a usage error.
const long MAX_SAMPLES = 10000000;

bool parseNumber(const std::string& text, double& out)
{
    char* end = nullptr;
    out = std::strtod(text.c_str(), &end);
    return !text.empty() && end == text.c_str() + text.size() && std::isfinite(out);
}

bool parseTimes(const std::string& list, std::vector<float>& times)
{
    std::stringstream in(list);
    std::string item;
    while (std::getline(in, item, ',')) {
        double t = 0.0;
        if (!parseNumber(item, t))
            return false;
        times.push_back(static_cast<float>(t));
    }
    return !times.empty();
}

struct Options {
    std::string file;
    std::string world;
    std::vector<float> times;
};

// Reads the arguments; returns an empty text, or why they are not usable.
std::string parseOptions(const std::vector<std::string>& args, Options& o)
{
    double from = 0.0, to = 0.0, step = 0.0;
    bool hasFrom = false, hasTo = false, hasStep = false, hasTimes = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        bool value = i + 1 < args.size();
        if (a == "--times" && value) {
            if (!parseTimes(args[++i], o.times))
                return "--times needs a comma-separated list of finite numbers";
            hasTimes = true;
        } else if (a == "--from" && value) {
            hasFrom = parseNumber(args[++i], from);
        } else if (a == "--to" && value) {
            hasTo = parseNumber(args[++i], to);
        } else if (a == "--step" && value) {
            hasStep = parseNumber(args[++i], step);
        } else if (a == "--world" && value) {
            o.world = args[++i];
        } else if (o.file.empty() && a.rfind("--", 0) != 0) {
            o.file = a;
        } else {
            return "unexpected argument \"" + a + "\"";
        }
    }
    if (o.file.empty())
        return "eval needs a FILE";
    bool range = hasFrom || hasTo || hasStep;
    if (hasTimes == range)
        return "eval needs either --times or all of --from, --to and --step (finite numbers)";
    if (range) {
        if (!(hasFrom && hasTo && hasStep) || step <= 0.0 || to < from)
            return "--from A --to B --step S needs A <= B and S > 0";
        double count = std::floor((to - from) / step + 1e-9) + 1.0;
        if (count > MAX_SAMPLES)
            return "--step gives more than " + std::to_string(MAX_SAMPLES) + " samples";
        for (long k = 0; k < static_cast<long>(count); ++k)
            o.times.push_back(static_cast<float>(from + k * step));
    }
    return "";
}

void addFloat(Package* sample, float v)
{
    sample->addDouble(nullptr, TrackKeyCodec::widen(v));
}

// The float curves of a track's float, colour and vec3 parameters (1, 4 and 3 curves each), copied
// into one table to be sampled in batches: the asked times come in any order, and a batch overlaps
// the memory reads of many samples.
struct FloatCurves {
    TrackCurveTable table;
    // Per parameter, its first curve in the table, and one past the last parameter's curves.
    std::vector<int> first;

    // Returns the number of parameter i's curves (0 for kinds without float curves).
    size_t width(int i) const { return static_cast<size_t>(first[i + 1] - first[i]); }
};

void collectCurves(const Track& track, FloatCurves& fc)
{
    std::vector<const TrackCurveData<float>*> curves;
    for (int i = 0; i < track.getNumParameters(); ++i) {
        const TrackParameter* p = track.getParameter(i);
        fc.first.push_back(static_cast<int>(curves.size()));
        if (p->getType() == TRACK_PARAMETER_FLOAT) {
            curves.push_back(&static_cast<const TrackParameterFloat*>(p)->getCurve());
        } else if (p->getType() == TRACK_PARAMETER_COLOR) {
            for (int k = 0; k < TrackParameterColor::CHANNELS; ++k)
                curves.push_back(&static_cast<const TrackParameterColor*>(p)->getChannel(k));
        } else if (p->getType() == TRACK_PARAMETER_VEC3) {
            for (int c = 0; c < 3; ++c)
                curves.push_back(&static_cast<const TrackParameterVec3*>(p)->getComponent(c)->getCurve());
        }
    }
    fc.first.push_back(static_cast<int>(curves.size()));
    fc.table.build(curves.data(), static_cast<int>(curves.size()));
}

// Returns the values of parameter i's curves at every time, time by time (a curve without keys
// gives 0); empty for parameters without float curves.
std::vector<float> sampleCurves(const FloatCurves& fc, int i, const std::vector<float>& times)
{
    const size_t width = fc.width(i);
    const size_t count = times.size() * width;
    std::vector<int> which(count);
    std::vector<float> at(count), out(count);
    for (size_t k = 0; k < count; ++k) {
        which[k] = fc.first[i] + static_cast<int>(k % width);
        at[k] = times[k / width];
    }
    TrackCurveBatch::sample(fc.table, which.data(), at.data(), static_cast<int>(count), out.data());
    return out;
}

// Appends the values of p's width float curves (values, one per curve) after the time. Components
// of a vector without keys take the scene's value.
void addCurveValues(const TrackParameter* p, const float* values, size_t width, Package* sample)
{
    if (p->getType() != TRACK_PARAMETER_VEC3) {
        for (size_t k = 0; k < width; ++k)
            addFloat(sample, values[k]);
        return;
    }
    const auto* v = static_cast<const TrackParameterVec3*>(p);
    vec3 scene = v->getValue();
    for (int c = 0; c < 3; ++c)
        addFloat(sample, v->getComponent(c)->getNumKeys() > 0 ? values[c] : scene[c]);
}

// Appends the values of p at t after the time, for the kinds without float curves: see the usage
// of "eval".
void addValues(const TrackParameter* p, float t, Package* sample)
{
    bool found = false;
    switch (p->getType()) {
    case TRACK_PARAMETER_TOGGLE:
        sample->addInt(nullptr, static_cast<const TrackParameterToggle*>(p)->getTrackValue(t, found));
        break;
    case TRACK_PARAMETER_DOUBLE:
        sample->addDouble(nullptr, static_cast<const TrackParameterDouble*>(p)->getTrackValue(t, found));
        break;
    case TRACK_PARAMETER_DVEC3: {
        dvec3 v = static_cast<const TrackParameterDVec3*>(p)->getTrackValue(t, found);
        for (int i = 0; i < 3; ++i)
            sample->addDouble(nullptr, v[i]);
        break;
    }
    case TRACK_PARAMETER_TRACK: {
        const TrackParameterTrack* nested = static_cast<const TrackParameterTrack*>(p);
        const jString& file = nested->getTrackValueName(t, found);
        sample->add()->setString(file.c_str(), file.length());
        bool timed = false;
        float time = nested->getTrackValueTime(t, timed);
        addFloat(sample, timed ? time : t);
        break;
    }
    case TRACK_PARAMETER_STRING_FILE:
    case TRACK_PARAMETER_STRING_MATERIAL: {
        const jString& text = static_cast<const TrackParameterString*>(p)->getTrackValue(t, found);
        sample->add()->setString(text.c_str(), text.length());
        break;
    }
    default:
        break;
    }
}

} // namespace

int AnimCommand::eval(const std::vector<std::string>& args)
{
    Options o;
    std::string wrong = parseOptions(args, o);
    if (!wrong.empty())
        return usage(wrong);
    World world;
    std::vector<std::string> problems = o.world.empty() ? std::vector<std::string>() : loadWorld(o.world, world);
    Track track;
    if (problems.empty())
        problems = load(o.file, track, o.world.empty() ? nullptr : &world, false);
    for (const std::string& line : problems)
        std::fprintf(stderr, "%s\n", line.c_str());
    if (!problems.empty())
        return INVALID;

    FloatCurves curves;
    collectCurves(track, curves);
    Package root;
    root.addString("file", o.file.c_str());
    Package* list = root.addArray("parameters");
    for (int i = 0; i < track.getNumParameters(); ++i) {
        const TrackParameter* p = track.getParameter(i);
        Package* item = list->addObject(nullptr);
        item->addInt("index", i);
        item->addInt("kind", p->getType());
        item->addString("type", p->getTypeName().c_str());
        item->addString("name", p->getName().c_str());
        Package* samples = item->addArray("samples");
        if (p->getType() == TRACK_PARAMETER_OPAQUE)
            continue;
        const size_t width = curves.width(i);
        std::vector<float> values = width > 0 ? sampleCurves(curves, i, o.times) : std::vector<float>();
        for (size_t k = 0; k < o.times.size(); ++k) {
            Package* sample = samples->addArray(nullptr);
            addFloat(sample, o.times[k]);
            if (width > 0)
                addCurveValues(p, &values[k * width], width, sample);
            else
                addValues(p, o.times[k], sample);
        }
    }
    // The file name is the one string that need not be UTF-8: its other bytes are escaped.
    std::string text, error;
    if (!mjl::write(&root, text, &error, mjl::ESCAPE_BYTES)) {
        std::fprintf(stderr, "%s: the values cannot be written: %s\n", o.file.c_str(), error.c_str());
        return INVALID;
    }
    std::fwrite(text.data(), 1, text.size(), stdout);
    return OK;
}
