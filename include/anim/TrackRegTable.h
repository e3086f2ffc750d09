#pragma once

#include "anim/TrackReg.h"
#include "kit/jVector.h"

// The engine's built-in registrations, in one table. It is built when the library loads, so that
// its names exist before anyone counts allocations, and it is never destroyed.
class TrackRegTable {
public:
    // Returns every registration, in table order.
    static const jVector<TrackReg*>& All();
    // Returns the registration with this name, or null.
    static TrackReg* Find(const jString& name);
};
