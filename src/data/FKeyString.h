#pragma once

#include "data/FKey.h"
#include "kit/jString.h"

// A key of a string parameter: a file path or a material name, held from its time until the next
// key. An empty string is a key that sets nothing.
class FKeyString : public FKey {
public:
    virtual const jString& getValue() const { return m_value; }
    virtual void setValue(const jString& value) { m_value = value; }

private:
    jString m_value;
};
