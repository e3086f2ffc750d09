#pragma once

#include <cmath>

// The engine's small math types. Colours are vec4 (red, green, blue, alpha, each 0 to 1).

struct vec3 {
    float x = 0.0f, y = 0.0f, z = 0.0f;

    constexpr vec3() = default;
    constexpr vec3(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}

    float& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }
    float operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    constexpr vec3 operator+(const vec3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    constexpr vec3 operator-(const vec3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    constexpr vec3 operator*(float s) const { return {x * s, y * s, z * s}; }
    constexpr bool operator==(const vec3&) const = default;
};

struct dvec3 {
    double x = 0.0, y = 0.0, z = 0.0;

    constexpr dvec3() = default;
    constexpr dvec3(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}

    double& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }
    double operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    constexpr dvec3 operator+(const dvec3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    constexpr dvec3 operator-(const dvec3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    constexpr bool operator==(const dvec3&) const = default;
};

struct vec4 {
    float x = 0.0f, y = 0.0f, z = 0.0f, w = 0.0f;

    constexpr vec4() = default;
    constexpr vec4(float x_, float y_, float z_, float w_) : x(x_), y(y_), z(z_), w(w_) {}

    float& operator[](int i) { return i == 0 ? x : (i == 1 ? y : (i == 2 ? z : w)); }
    float operator[](int i) const { return i == 0 ? x : (i == 1 ? y : (i == 2 ? z : w)); }
    constexpr bool operator==(const vec4&) const = default;
};

inline constexpr vec4 vec4_zero{0.0f, 0.0f, 0.0f, 0.0f};

inline float dot(const vec3& a, const vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline vec3 cross(const vec3& a, const vec3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(const vec3& v) { return std::sqrt(dot(v, v)); }
// Returns v scaled to length 1, or v itself when its length is 0.
inline vec3 normalize(const vec3& v)
{
    float n = length(v);
    return n > 0.0f ? v * (1.0f / n) : v;
}

// A 4x4 float matrix, column-major (m[column * 4 + row]), acting on column vectors.
struct mat4 {
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    static mat4 identity() { return mat4(); }
    static mat4 translate(const vec3& t);
    static mat4 scale(const vec3& s);
    // Rotation by Euler angles in degrees, applied X, then Y, then Z.
    static mat4 rotateEuler(const vec3& degrees);
    // Right-handed perspective projection; fovY in degrees.
    static mat4 perspective(float fovY, float aspect, float zNear, float zFar);
    static mat4 lookAt(const vec3& eye, const vec3& target, const vec3& up);

    mat4 operator*(const mat4& o) const;
    // Transforms a point (w = 1) and divides by the resulting w.
    vec3 transformPoint(const vec3& p) const;
    vec4 operator*(const vec4& v) const;
    float& at(int row, int column) { return m[column * 4 + row]; }
    float at(int row, int column) const { return m[column * 4 + row]; }
};
