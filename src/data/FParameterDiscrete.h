#pragma once

#include "data/FParameterSingle.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

// The shared body of the parameters whose keys hold a value that is not interpolated (colour,
// switch, string): a key is a time and a value, read from and written to the engine's key records,
// and shown as a mark on the key line; these parameters have no curve. Engine is the engine
// parameter, Key the editor key, Line and Mark the key line and its mark.
template <class Engine, class Key, class Line, class Mark>
class FParameterDiscrete : public FParameterSingle {
public:
    using Value = std::decay_t<decltype(Key().getValue())>;

    bool create(FTrack* track, TrackParameter* param, const jString& name) override
    {
        if (!check_create(track, param, check_text()))
            return false;
        setTrackParameter(param);
        param->setName(name);
        if (!build_views(name, true, false))
            return false;
        read_keys();
        sortKeys();
        setOwner(track);
        return true;
    }

    // Makes a key with this value at the end of the key list (not re-sorted). Logs
    // "<createKey>:m_data" and returns null when the parameter has no engine parameter.
    Key* createKey(float time, const Value& value)
    {
        if (!getTrackParameter()) {
            jLog::error("%s:%s", tags().createKey, "m_data");
            return nullptr;
        }
        auto* key = jNew<Key>("src/data/FParameterDiscrete", __LINE__, tags().createKey);
        key->setTime(time);
        key->setValue(value);
        key->setParameter(this);
        create_ui_for_key(key);
        appendKey(key);
        return key;
    }

    // Makes a key at t holding the parameter's value there (value_at); null (logged) without an
    // engine parameter.
    Key* createKey(float t)
    {
        if (!getTrackParameter()) {
            jLog::error("%s:%s", tags().createKey, "m_data");
            return nullptr;
        }
        return createKey(t, value_at(t));
    }

    // A key holding the value value_there gives at t; null for the kinds it gives none (strings)
    // and, logged as createKey, without an engine parameter.
    FKey* makeKeyAt(float t) override
    {
        Value value{};
        if (getTrackParameter() && !value_there(t, value))
            return nullptr;
        return createKey(t, value);
    }

    void applyKeys() override
    {
        Engine* engine = engine_parameter();
        if (!engine)
            return;
        touch();
        engine->clearKeys();
        for (const FKey* key : getKeys())
            engine->appendKey(key->getTime(), static_cast<const Key*>(key)->getValue());
        engine->update();
    }

    Engine* engine_parameter() const { return static_cast<Engine*>(getTrackParameter()); }

protected:
    // The type check logged when create is handed the wrong parameter.
    virtual const char* check_text() const = 0;
    // The value a key made at t takes; the base gives an empty value.
    virtual Value value_at(float) const { return Value{}; }
    // The value a key made by makeKeyAt at t holds; false (the base) for kinds that make none.
    virtual bool value_there(float, Value&) const { return false; }
    // The value the engine evaluates at t, or the live value where the parameter has no keys.
    Value played_value(float t) const
    {
        bool found = false;
        const auto value = engine_parameter()->getTrackValue(t, found);
        return found ? Value(value) : Value(engine_parameter()->getValue());
    }

    UITrackLine* make_line() const override
    {
        return jNew<Line>("src/data/FParameterDiscrete", __LINE__, tags().create);
    }
    UITrackLineKey* make_line_key(FKey* key) const override
    {
        return jNew<Mark>("src/data/FParameterDiscrete", __LINE__, tags().createKey, key);
    }

    void read_keys() override
    {
        const Engine* engine = engine_parameter();
        reserve_keys(engine->getKeys().size());
        for (const auto& record : engine->getKeys())
            createKey(record.time, record.value);
    }
};
