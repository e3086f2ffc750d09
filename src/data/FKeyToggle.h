#pragma once

#include "data/FKey.h"

// A key of a switch: on or off from its time until the next key.
class FKeyToggle : public FKey {
public:
    virtual bool getValue() const { return m_value; }
    virtual void setValue(bool value) { m_value = value; }
    int getType() const override { return 0; }

private:
    bool m_value = false;
};
