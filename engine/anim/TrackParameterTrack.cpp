#include "anim/TrackParameterTrack.h"

#include "anim/Track.h"
#include "anim/TrackKeyCodec.h"
#include "io/Package.h"
#include "kit/jKit.h"
#include "kit/jLog.h"

TrackParameterTrack::TrackParameterTrack()
{
    m_file.setName("Name");
    m_time.setName("Time");
}

float TrackParameterTrack::getTrackValueTime(float t, bool& found) const
{
    return m_time.getTrackValue(t, found);
}

const jString& TrackParameterTrack::getTrackValueName(float t, bool& found) const
{
    return m_file.getTrackValue(t, found);
}

int TrackParameterTrack::getNumKeys() const
{
    return m_file.getNumKeys() + m_time.getNumKeys();
}

void TrackParameterTrack::release()
{
    m_file.release();
    m_time.release();
    m_refused = jString::null();
}

void TrackParameterTrack::update()
{
    m_time.update();
}

void TrackParameterTrack::readBody(TrackReader& reader, const Package* object)
{
    TrackParameterKeyed<TrackKeyString>::readKeys(reader, reader.require(object, "file"), m_file.getKeys());
    TrackParameterKeyed<TrackKeyFloat>::readKeys(reader, reader.require(object, "time"), m_time.getKeys());
    update();
}

void TrackParameterTrack::writeBody(Package* object) const
{
    // A file inside the data folder is written relative to it, as it is read, so that a project
    // moved to another folder or machine still finds it.
    Package* files = object->addArray("file");
    for (const TrackKeyString& key : m_file.getKeys())
        TrackKeyCodec::write(files, TrackKeyString{key.time, jKit::convertToStoredPath(key.value)});
    TrackParameterKeyed<TrackKeyFloat>::writeKeys(object->addArray("time"), m_time.getKeys());
}

void TrackParameterTrack::apply(float t)
{
    bool named = false;
    const jString& file = m_file.getTrackValue(t, named);
    if (!named || file.empty() || !getTrack())
        return;
    bool timed = false;
    float time = m_time.getTrackValue(t, timed);
    Track* nested = getTrack()->getNestedTrack(file);
    if (!nested)
        return;
    if (nested->isPlaying()) {
        if (m_refused != file) {
            jLog::error("%s:track \"%s\" plays itself; the nested track is not played", "TrackParameterTrack::apply",
                        file.c_str());
            m_refused = file;
        }
        return;
    }
    nested->set(timed ? time : t);
}
