#pragma once

#include "anim/TrackParameter.h"
#include "io/Package.h"

// A parameter of kind 6: engine data that editors do not show. It keeps its whole object from the
// file and writes it back unchanged; playing it does nothing.
class TrackParameterOpaque : public TrackParameter {
public:
    TrackParameterOpaque() = default;
    ~TrackParameterOpaque() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_OPAQUE; }

    // Returns the number of entries of its "keys" array, if it has one.
    int getNumKeys() const override;
    void release() override;
    // Reads the common fields and keeps a copy of the whole object.
    void read(TrackReader& reader, const Package* object) override;
    // Writes the kept object back member for member.
    void write(Package* object) const override;
    void readBody(TrackReader& reader, const Package* object) override;
    void writeBody(Package* object) const override;
    void apply(float t) override;

    // Copies from's value and subtree into to (which becomes a copy of it).
    static void Copy(const Package* from, Package* to);

private:
    Package m_data;
};
