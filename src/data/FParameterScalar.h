#pragma once

#include "data/FParameterSingle.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

// The shared body of the numeric parameters (float and double): keys with a value, tangents and
// an interpolation, read from and written to the engine's key records, shown on a key line and as
// a curve. Engine is the engine parameter, Key the editor key, Line and Mark the key line and its
// mark. The kinds supply how a key's value is read from the engine at a time.
template <class Engine, class Key, class Line, class Mark>
class FParameterScalar : public FParameterSingle {
public:
    using Value = decltype(Key().getValue());

    bool create(FTrack* track, TrackParameter* param, const jString& name) override
    {
        if (!check_create(track, param, check_text()))
            return false;
        setTrackParameter(param);
        param->setName(name);
        if (!build_views(name, starts_hello_world(), true))
            return false;
        read_keys();
        sortKeys();
        setOwner(track);
        return true;
    }

    // Makes a key with these values at the end of the key list (not re-sorted). Logs
    // "<createKey>:m_data" and returns null when the parameter has no engine parameter.
    Key* createKey(float time, Value value, const vec4& tangents, int type)
    {
        if (!getTrackParameter()) {
            jLog::error("%s:%s", tags().createKey, "m_data");
            return nullptr;
        }
        auto* key = jNew<Key>("src/data/FParameterScalar", __LINE__, tags().createKey);
        key->setTime(time);
        key->setValue(value);
        key->setTangents(tangents);
        key->setKeyType(type);
        key->setParameter(this);
        create_ui_for_key(key);
        appendKey(key);
        return key;
    }

    // Makes a linear key at time t holding the engine's value there, with the given tangents.
    // Returns null (logged) without an engine parameter or when the value cannot be read.
    Key* createKey(float t, const vec4& tangents)
    {
        if (!getTrackParameter()) {
            jLog::error("%s:%s", tags().createKey, "m_data");
            return nullptr;
        }
        Value value = 0;
        if (!value_at(t, value))
            return nullptr;
        return createKey(t, value, tangents, 1);
    }

    // A linear key on the curve's value at t with flat tangents.
    FKey* makeKeyAt(float t) override { return createKey(t, vec4()); }

    void applyKeys() override
    {
        Engine* engine = engine_parameter();
        if (!engine)
            return;
        touch();
        engine->clearKeys();
        for (const FKey* key : getKeys()) {
            const Key* k = static_cast<const Key*>(key);
            engine->appendKey(k->getTime(), k->getValue(), k->getTangents(), k->getKeyType());
        }
        engine->update();
    }

    Engine* engine_parameter() const { return static_cast<Engine*>(getTrackParameter()); }

    // The value the engine gives the parameter at t: its curve's where it has keys, else the bound
    // object's (an axis reads its element of the vector's); 0 when it cannot be read (logged).
    Value valueAt(float t) const
    {
        Value value = 0;
        return value_at(t, value) ? value : 0;
    }

protected:
    // The value the engine gives the parameter at t; false (logged) when it cannot be read.
    virtual bool value_at(float t, Value& value) const = 0;
    // The curve's value at t, or the current value (the bound object's) where the curve has none.
    Value own_value(float t) const
    {
        bool found = false;
        const Value value = engine_parameter()->getTrackValue(t, found);
        return found ? value : engine_parameter()->getValue();
    }
    // This axis of the parent vector's value at t (keyed axes from their curves, the others from
    // the bound object).
    template <class Vector>
    Value axis_value(float t) const
    {
        bool found = false;
        const auto* vector = static_cast<const Vector*>(getParent()->getTrackParameter());
        return vector->getTrackValue(t, found)[getComponentIndex()];
    }
    // The type check logged when create is handed the wrong parameter.
    virtual const char* check_text() const = 0;
    // Whether a nameless parameter's row reads "Hello" / "World".
    virtual bool starts_hello_world() const = 0;

    UITrackLine* make_line() const override { return jNew<Line>("src/data/FParameterScalar", __LINE__, tags().create); }
    UITrackLineKey* make_line_key(FKey* key) const override
    {
        return jNew<Mark>("src/data/FParameterScalar", __LINE__, tags().createKey, key);
    }

    void read_keys() override
    {
        const Engine* engine = engine_parameter();
        reserve_keys(engine->getKeys().size());
        for (const auto& record : engine->getKeys())
            createKey(record.time, record.value, record.tangents, record.type);
    }
};
