#pragma once

#include "data/FKey.h"
#include "kit/jMath.h"

// A key of a colour parameter: red, green, blue and alpha, each 0 to 1.
class FKeyColor : public FKey {
public:
    virtual const vec4& getValue() const { return m_value; }
    virtual void setValue(const vec4& value) { m_value = value; }
    int getType() const override { return 3; }

private:
    vec4 m_value;
};
