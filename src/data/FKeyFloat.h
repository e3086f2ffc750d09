#pragma once

#include "data/FKey.h"
#include "kit/jMath.h"

// A key of a float curve: its value, its interpolation (TRACK_KEY_TYPE) and its tangent handles
// (in_dt, in_dv, out_dt, out_dv), as the engine's key record holds them.
class FKeyFloat : public FKey {
public:
    virtual float getValue() const { return m_value; }
    virtual void setValue(float value) { m_value = value; }
    virtual int getKeyType() const { return m_key_type; }
    virtual void setKeyType(int type) { m_key_type = type; }
    virtual const vec4& getTangents() const { return m_tangents; }
    virtual void setTangents(const vec4& tangents) { m_tangents = tangents; }
    int getType() const override { return 1; }

private:
    float m_value = 0;
    int m_key_type = 0;
    vec4 m_tangents;
};
