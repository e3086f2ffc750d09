#include "kit/jMath.h"

namespace {
constexpr float DEG_TO_RAD = 3.14159265358979323846f / 180.0f;
}

mat4 mat4::translate(const vec3& t)
{
    mat4 r;
    r.at(0, 3) = t.x;
    r.at(1, 3) = t.y;
    r.at(2, 3) = t.z;
    return r;
}

mat4 mat4::scale(const vec3& s)
{
    mat4 r;
    r.at(0, 0) = s.x;
    r.at(1, 1) = s.y;
    r.at(2, 2) = s.z;
    return r;
}

mat4 mat4::rotateEuler(const vec3& degrees)
{
    float cx = std::cos(degrees.x * DEG_TO_RAD), sx = std::sin(degrees.x * DEG_TO_RAD);
    float cy = std::cos(degrees.y * DEG_TO_RAD), sy = std::sin(degrees.y * DEG_TO_RAD);
    float cz = std::cos(degrees.z * DEG_TO_RAD), sz = std::sin(degrees.z * DEG_TO_RAD);
    mat4 rx, ry, rz;
    rx.at(1, 1) = cx; rx.at(1, 2) = -sx; rx.at(2, 1) = sx; rx.at(2, 2) = cx;
    ry.at(0, 0) = cy; ry.at(0, 2) = sy; ry.at(2, 0) = -sy; ry.at(2, 2) = cy;
    rz.at(0, 0) = cz; rz.at(0, 1) = -sz; rz.at(1, 0) = sz; rz.at(1, 1) = cz;
    return rz * ry * rx;
}

mat4 mat4::perspective(float fovY, float aspect, float zNear, float zFar)
{
    float f = 1.0f / std::tan(fovY * DEG_TO_RAD * 0.5f);
    mat4 r;
    r.at(0, 0) = f / aspect;
    r.at(1, 1) = f;
    r.at(2, 2) = (zFar + zNear) / (zNear - zFar);
    r.at(2, 3) = 2.0f * zFar * zNear / (zNear - zFar);
    r.at(3, 2) = -1.0f;
    r.at(3, 3) = 0.0f;
    return r;
}

mat4 mat4::lookAt(const vec3& eye, const vec3& target, const vec3& up)
{
    vec3 f = normalize(target - eye);
    vec3 s = normalize(cross(f, up));
    vec3 u = cross(s, f);
    mat4 r;
    r.at(0, 0) = s.x; r.at(0, 1) = s.y; r.at(0, 2) = s.z;
    r.at(1, 0) = u.x; r.at(1, 1) = u.y; r.at(1, 2) = u.z;
    r.at(2, 0) = -f.x; r.at(2, 1) = -f.y; r.at(2, 2) = -f.z;
    r.at(0, 3) = -dot(s, eye);
    r.at(1, 3) = -dot(u, eye);
    r.at(2, 3) = dot(f, eye);
    return r;
}

mat4 mat4::operator*(const mat4& o) const
{
    mat4 r;
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            float sum = 0.0f;
            for (int k = 0; k < 4; ++k)
                sum += at(row, k) * o.at(k, col);
            r.at(row, col) = sum;
        }
    }
    return r;
}

vec4 mat4::operator*(const vec4& v) const
{
    vec4 r;
    for (int row = 0; row < 4; ++row)
        r[row] = at(row, 0) * v.x + at(row, 1) * v.y + at(row, 2) * v.z + at(row, 3) * v.w;
    return r;
}

vec3 mat4::transformPoint(const vec3& p) const
{
    vec4 r = *this * vec4(p.x, p.y, p.z, 1.0f);
    float w = r.w != 0.0f ? r.w : 1.0f;
    return {r.x / w, r.y / w, r.z / w};
}
