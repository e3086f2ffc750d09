#pragma once

#include "kit/jMath.h"

// The viewport's orbiting camera: it looks at a target point from a distance, turned by a yaw
// around the vertical axis and a pitch above the ground, and projects world points (y up) to the
// pixels of a view of a given size (x to the right, y downward).
class ViewportCamera {
public:
    // Points closer to the eye than this along the view direction are not drawn.
    static constexpr float NEAR_PLANE = 0.05f;

    ViewportCamera();

    // Turns the camera around its target: dx, dy in degrees (yaw, pitch); the pitch stays within
    // +-89 degrees so the view never flips.
    void orbit(float dx, float dy);
    // Slides the target (and the eye with it) by a drag of dx, dy pixels in a view viewHeight high,
    // so the ground under the pointer follows it.
    void pan(float dx, float dy, int viewHeight);
    // Moves the eye towards the target (positive notches) or away; the distance stays within
    // [0.5, 500].
    void zoom(float notches);

    const vec3& getTarget() const { return m_target; }
    float getDistance() const { return m_distance; }
    float getYaw() const { return m_yaw; }
    float getPitch() const { return m_pitch; }
    // Returns the eye position in the world.
    vec3 getEye() const;

    // Returns p in camera space: x right, y up, z the depth along the view direction.
    vec3 toCamera(const vec3& p) const;
    // Projects a camera-space point to view pixels; false when it lies nearer than NEAR_PLANE.
    bool cameraToScreen(const vec3& c, int width, int height, float& sx, float& sy) const;
    // Projects a world point to view pixels; false when it lies nearer than NEAR_PLANE.
    bool project(const vec3& p, int width, int height, float& sx, float& sy) const;
    // Clips the camera-space segment a-b to the part beyond NEAR_PLANE; false when nothing is left.
    static bool clipToNear(vec3& a, vec3& b);

private:
    void basis(vec3& right, vec3& up, vec3& forward) const;

    vec3 m_target{0.0f, 1.0f, 0.0f};
    float m_yaw = 22.0f;
    float m_pitch = 28.0f;
    float m_distance = 24.0f;
    float m_fov = 50.0f;
};
