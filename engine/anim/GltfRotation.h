#pragma once

#include "kit/jMath.h"

// Rotations as glTF stores them (unit quaternions x, y, z, w) and as nodes keep them (Euler degrees
// applied X, then Y, then Z: mat4::rotateEuler). Work is in double so that a conversion there and
// back loses nothing a float angle would notice.
class GltfRotation {
public:
    struct Quat {
        double x = 0.0, y = 0.0, z = 0.0, w = 1.0;
    };

    // Returns the quaternion of Euler angles in degrees.
    static Quat fromEuler(const dvec3& degrees);
    // Returns Euler angles in degrees of q (normalised first) chosen, among every triple that gives
    // the same rotation, to be nearest to previous: a sequence of conversions that each pass the
    // last result keeps its angles continuous, without 360 degree jumps or flips between the two
    // solutions. At gimbal lock (Y at +-90 degrees) X keeps previous's value.
    static dvec3 toEuler(const Quat& q, const dvec3& previous);
    // Returns the spherical interpolation from a to b at u in [0, 1] along the shorter arc (glTF's
    // rule); nearly equal rotations are interpolated linearly and normalised.
    static Quat slerp(const Quat& a, const Quat& b, double u);
    // Returns q scaled to unit length (the identity for a zero quaternion).
    static Quat normalize(const Quat& q);
    // Returns the angle in degrees of the rotation that takes a to b.
    static double angle(const Quat& a, const Quat& b);

private:
    static double dot(const Quat& a, const Quat& b) { return a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w; }
    // Returns angle plus the multiple of 360 that brings it nearest to reference.
    static double near(double angle, double reference);
    // Returns how far apart two triples are, summed over the components.
    static double distance(const dvec3& a, const dvec3& b);
};
