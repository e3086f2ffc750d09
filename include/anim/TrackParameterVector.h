#pragma once

#include "anim/TrackParameter.h"
#include "anim/TrackReader.h"
#include "anim/TrackTypes.h"
#include "io/Package.h"

// A three-component property animated per component: each of x, y and z is a scalar parameter of
// its own with keys, an enabled switch and a curve-shown switch. A component without keys (or
// switched off, when playing) takes the bound object's current component.
template <class Component, class Vector>
class TrackParameterVector : public TrackParameter {
public:
    using Scalar = typename Component::Value;
    using TrackParameter::isEnabled;
    using TrackParameter::setEnabled;

    TrackParameterVector()
    {
        for (Component& c : m_components)
            adopt(c);
    }

    // Returns component c (x, y or z); null for anything else.
    Component* getComponent(int c) { return c >= 0 && c < 3 ? &m_components[c] : nullptr; }
    const Component* getComponent(int c) const { return c >= 0 && c < 3 ? &m_components[c] : nullptr; }

    // Whether component c's curve is shown; false for a bad component.
    bool isShow(VEC3_SWIZZLE_TYPE c) const { return valid(c) && m_components[c].isCurveShown(); }
    void setShow(VEC3_SWIZZLE_TYPE c, bool shown)
    {
        if (valid(c))
            m_components[c].setCurveShown(shown);
    }
    // Whether component c is played; false for a bad component.
    bool isEnabled(VEC3_SWIZZLE_TYPE c) const { return valid(c) && m_components[c].isEnabled(); }
    void setEnabled(VEC3_SWIZZLE_TYPE c, bool enabled)
    {
        if (valid(c))
            m_components[c].setEnabled(enabled);
    }

    // Returns the vector at t: keyed components evaluated, the others from the bound object (zero
    // when unbound); found is false only when no component has keys.
    Vector getTrackValue(float t, bool& found) const
    {
        Vector v = getValue();
        found = false;
        for (int c = 0; c < 3; ++c) {
            bool keyed = false;
            Scalar s = m_components[c].getTrackValue(t, keyed);
            if (keyed) {
                v[c] = s;
                found = true;
            }
        }
        return v;
    }

    // Returns the bound object's current vector, else the vector last played.
    Vector getValue() const
    {
        TrackValue current;
        if (!readTarget(current))
            return m_value;
        return Vector(static_cast<Scalar>(current.n[0]), static_cast<Scalar>(current.n[1]),
                      static_cast<Scalar>(current.n[2]));
    }

    int getNumKeys() const override
    {
        return m_components[0].getNumKeys() + m_components[1].getNumKeys() + m_components[2].getNumKeys();
    }

    void release() override
    {
        for (Component& c : m_components)
            c.release();
    }

    void update() override
    {
        for (Component& c : m_components)
            c.update();
    }

    // "components": three objects, x, y, z, each {"enabled", "shown", "keys"}.
    void readBody(TrackReader& reader, const Package* object) override
    {
        const Package* list = reader.require(object, "components");
        if (!list)
            return;
        if (!list->isArray() || list->getNumChildren() != 3) {
            reader.fail(list, "components must be an array of three objects (x, y, z)");
            return;
        }
        for (int c = 0; c < 3; ++c) {
            const Package* item = list->getChild(c);
            if (!item->isObject()) {
                reader.fail(item, "a component must be an object");
                continue;
            }
            m_components[c].setEnabled(reader.optionalBool(item, "enabled", true));
            m_components[c].setCurveShown(reader.optionalBool(item, "shown", false));
            m_components[c].readBody(reader, item);
        }
    }

    void writeBody(Package* object) const override
    {
        Package* list = object->addArray("components");
        for (const Component& c : m_components) {
            Package* item = list->add();
            item->setObject();
            item->addBool("enabled", c.isEnabled());
            item->addBool("shown", c.isCurveShown());
            c.writeBody(item);
        }
    }

    void apply(float t) override
    {
        Vector v = m_value;
        unsigned mask = 0;
        for (int c = 0; c < 3; ++c) {
            bool keyed = false;
            Scalar s = m_components[c].getTrackValue(t, keyed);
            if (keyed && m_components[c].isEnabled()) {
                v[c] = s;
                mask |= 1u << c;
            }
        }
        if (mask == 0)
            return;
        write(isBound() ? getReg() : nullptr, getTarget(), mask, &v[0]);
        m_value = v;
    }

    // Plays a vector whose components in mask (bit c for component c) are in v: the others are
    // filled in with the target's current components (left as v has them when they cannot be read)
    // and the whole vector is written through reg, when there is one. Parameter and track playback
    // (TrackPlayback) both play vectors through here.
    static void write(const TrackReg* reg, const TrackTarget& target, unsigned mask, Scalar* v)
    {
        if (!reg)
            return;
        TrackValue current;
        if (mask != 7u && reg->get(target, current)) {
            for (int c = 0; c < 3; ++c) {
                if (!(mask & (1u << c)))
                    v[c] = static_cast<Scalar>(current.n[c]);
            }
        }
        TrackValue out;
        for (int c = 0; c < 3; ++c)
            out.n[c] = static_cast<double>(v[c]);
        reg->set(target, out);
    }

private:
    // Track playback plays the components itself and keeps the last played vector here.
    friend class TrackPlayback;

    static bool valid(int c) { return c >= 0 && c < 3; }

    Component m_components[3];
    Vector m_value;
};
