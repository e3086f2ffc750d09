#include "data/AppData.h"

#include "anim/Track.h"
#include "data/FParameter.h"
#include "data/FTrack.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

namespace {

constexpr float NEW_TRACK_LENGTH = 10.0f;

// The row colours, taken in order as parameters are added.
constexpr float PALETTE[AppData::ROW_COLORS][3] = {
    {0.745f, 1.0f, 0.875f},   {0.71f, 1.0f, 0.498f},    {0.867f, 0.678f, 0.627f}, {0.914f, 0.588f, 0.718f},
    {0.678f, 0.827f, 0.678f}, {0.831f, 0.902f, 0.592f}, {0.553f, 0.949f, 0.851f}, {0.525f, 0.678f, 1.0f},
    {0.961f, 0.773f, 0.914f}, {0.894f, 0.886f, 1.0f},   {0.867f, 0.867f, 0.867f}, {0.541f, 0.961f, 0.553f},
    {0.929f, 1.0f, 0.925f},   {1.0f, 1.0f, 1.0f},
};

} // namespace

AppData* AppData::get()
{
    static AppData instance;
    return &instance;
}

AppData::AppData()
    : m_track(jNew<FTrack>("src/data/AppData", __LINE__, "AppData::AppData"))
{
    reset();
}

void AppData::release()
{
    m_history.clear(); // its steps hold allocations the host checks right after unloading the module
    m_path = jString(); // the file's path and name are allocated too: the host checks for leaks
    m_name = jString(); // right after unloading the module
    if (!m_track)
        return;
    m_track->release();
    jDelete(m_track, "src/data/AppData", __LINE__, "AppData::release");
    m_track = nullptr;
    m_edits.begin(); // frees the recorded states
}

void AppData::setBeginTime(float t)
{
    m_begin = t > 0.0f ? t : 0.0f;
}

void AppData::setEndTime(float t)
{
    m_end = t > 0.0f ? t : 0.0f;
}

void AppData::setTime(float t)
{
    m_time = t < m_begin ? m_begin : (t < m_end ? t : m_end);
}

float AppData::getFrameRate() const
{
    const Track* track = m_track ? m_track->getEngineTrack() : nullptr;
    return track ? track->getFrameRate() : 0.0f;
}

void AppData::setFrameRate(float fps)
{
    if (Track* track = m_track ? m_track->getEngineTrack() : nullptr)
        track->setFrameRate(fps);
}

bool AppData::isSnapping() const
{
    const Track* track = m_track ? m_track->getEngineTrack() : nullptr;
    return track && track->isSnapping();
}

void AppData::setSnapping(bool snapping)
{
    if (Track* track = m_track ? m_track->getEngineTrack() : nullptr)
        track->setSnapping(snapping);
}

void AppData::reset()
{
    m_history.clear();
    m_track->clear();
    Track* track = m_track->getEngineTrack();
    track->reset();
    track->setEndTime(NEW_TRACK_LENGTH);
    m_begin = track->getBeginTime();
    m_end = track->getEndTime();
    m_time = m_begin;
    m_path = jString(); // moving an empty string in frees the old text
    m_name = jString();
    m_edits.begin();
}

bool AppData::loadTrack(const jString& path, World* world)
{
    return loadTrackAs(path, path, world);
}

bool AppData::loadTrackAs(const jString& path, const jString& document, World* world)
{
    m_progress.begin(path);
    mjl reader;
    if (!reader.open(path.c_str(), mjl::NUMBER_ROWS)) {
        m_progress.end();
        jLog::error("Open world error:%s", path.c_str());
        return false;
    }
    m_progress.read();
    reset();
    if (document.nempty()) {
        m_path = document;
        m_name = document.baseName();
    }
    const bool loaded = take_loaded(reader.getRoot(), world, &reader);
    m_progress.end();
    if (loaded)
        return true;
    // The engine names the line and column of each problem; this line names the file.
    jLog::error("%s:%s: not a track the engine can play", "AppData::loadTrack", path.c_str());
    return false;
}

bool AppData::loadTrack(Package* root, World* world)
{
    reset();
    return take_loaded(root, world);
}

bool AppData::take_loaded(Package* root, World* world, mjl* parsed)
{
    if (!m_track->loadEngine(root, world))
        return false;
    if (parsed)
        parsed->close();
    m_track->createFromEngine();
    Track* track = m_track->getEngineTrack();
    m_begin = track->getBeginTime();
    m_end = track->getEndTime();
    m_time = m_begin;
    m_edits.begin();
    return true;
}

bool AppData::saveTrack(const jString& path)
{
    if (!saveCopy(path))
        return false;
    m_path = path; // saving never renames the document: the name stays that of the last load
    return true;
}

bool AppData::saveCopy(const jString& path) const
{
    return m_track->getEngineTrack()->saveFile(path.c_str());
}

bool AppData::snapshot(std::string& bytes) const
{
    Package root;
    std::string error;
    if (m_track->getEngineTrack()->save(&root) && mjl::write(&root, bytes, &error))
        return true;
    jLog::error("%s:%s", "AppData::snapshot", error.c_str());
    return false;
}

bool AppData::restore(const std::string& bytes)
{
    World* world = m_track->getEngineTrack()->getWorld();
    mjl reader;
    if (!reader.parse(bytes.data(), bytes.size(), m_path.c_str(), mjl::NUMBER_ROWS) || !m_track->load(reader.getRoot(), world))
        return false;
    fitRange();
    m_edits.begin();
    return true;
}

void AppData::fitRange()
{
    const Track* track = m_track->getEngineTrack();
    const float lo = track->getBeginTime(), hi = track->getEndTime();
    m_begin = m_begin < lo ? lo : (m_begin < hi ? m_begin : hi);
    m_end = m_end < lo ? lo : (m_end < hi ? m_end : hi);
    setTime(m_time);
}

bool AppData::isEmpty() const
{
    return m_track->isEmpty();
}

bool AppData::destoryParameter(FParameter* p)
{
    if (!p)
        return true;
    p->release();
    jDelete(p, "src/data/AppData", __LINE__, "AppData::destoryParameter");
    return true;
}

int AppData::getNextRowColor() const
{
    return m_track->getNumSingleParameters() % ROW_COLORS;
}

vec4 AppData::RowColor(int i)
{
    const float* c = PALETTE[((i % ROW_COLORS) + ROW_COLORS) % ROW_COLORS];
    return vec4(c[0], c[1], c[2], 1.0f);
}
