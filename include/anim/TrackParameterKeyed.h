#pragma once

#include "anim/TrackKeyCodec.h"
#include "anim/TrackParameter.h"
#include "anim/TrackReader.h"
#include "anim/TrackSegment.h"
#include "io/Package.h"
#include "kit/jString.h"
#include "kit/jVector.h"

// A parameter that owns one time-sorted array of key records. The editor clears and refills the
// array as a whole (clearKeys, appendKey) and then calls update.
template <class Key>
class TrackParameterKeyed : public TrackParameter {
public:
    int getNumKeys() const override { return m_keys.size(); }
    // Returns key i (0 <= i < getNumKeys()).
    const Key& getKey(int i) const { return m_keys[i]; }
    // Returns the key array for editing in place; call update after editing.
    jVector<Key>& getKeys()
    {
        keys_changed();
        return m_keys;
    }
    const jVector<Key>& getKeys() const { return m_keys; }
    // Removes every key (the storage is kept for the refill); the caller calls update.
    void clearKeys()
    {
        m_keys.clear();
        keys_changed();
    }
    // Appends a key record; the caller keeps the array sorted by time and calls update.
    void appendKey(const Key& key)
    {
        m_keys.append(key);
        keys_changed();
    }

    void release() override
    {
        m_keys.release();
        keys_changed();
    }

    void readBody(TrackReader& reader, const Package* object) override
    {
        readKeys(reader, reader.require(object, "keys"), m_keys);
        keys_changed();
        update();
    }

    void writeBody(Package* object) const override { writeKeys(object->addArray("keys"), m_keys); }

    // Reads an array of key records into keys (replacing them); unsorted or bad records are problems.
    static void readKeys(TrackReader& reader, const Package* array, jVector<Key>& keys)
    {
        keys.clear();
        if (!array)
            return;
        if (!array->isArray()) {
            reader.fail(array, "keys must be an array of key records");
            return;
        }
        keys.reserve(array->getNumChildren());
        for (int i = 0; i < array->getNumChildren(); ++i) {
            Key key;
            const Package* record = array->getChild(i);
            if (!TrackKeyCodec::read(reader, record, key))
                continue;
            if (!keys.empty() && key.time < keys.back().time) {
                reader.fail(record, std::string("keys are not sorted by time: ") + ToString(key.time).c_str() +
                                        " comes after " + ToString(keys.back().time).c_str());
                continue;
            }
            keys.append(key);
        }
    }

    // Writes the key records into array.
    static void writeKeys(Package* array, const jVector<Key>& keys)
    {
        for (const Key& key : keys)
            TrackKeyCodec::write(array, key);
    }

protected:
    // Tells the track that plays the parameter; every change of the key array goes through here.
    virtual void keys_changed()
    {
        m_cursor = 0;
        changed();
    }

    // Returns the index of the last key at or before t, or -1 before the first key.
    int findKey(float t) const { return TrackSegment::find(m_keys.data(), m_keys.size(), t, m_cursor); }

    jVector<Key> m_keys;
    // The segment of the last lookup; playback moves forward, so it is usually still right.
    mutable int m_cursor = 0;
};
