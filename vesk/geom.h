// Geometry values of the host: 64-bit planar coordinates with elevations.
// In the document x is easting and y is northing.
#pragma once
#include <cmath>

namespace vesk::geom {

struct VECTOR_2D {
    double x = 0.0;
    double y = 0.0;
    VECTOR_2D() = default;
    VECTOR_2D(double dx, double dy) : x(dx), y(dy) {}
    double getX() const { return x; }
    double getY() const { return y; }
    double Length() const { return std::hypot(x, y); }
    // A zero vector stays zero rather than becoming NaN.
    VECTOR_2D& Normalize() {
        const double l = Length();
        if (l > 0.0) { x /= l; y /= l; }
        return *this;
    }
    VECTOR_2D operator-() const { return {-x, -y}; }
    VECTOR_2D operator*(double k) const { return {x * k, y * k}; }
    VECTOR_2D operator+(const VECTOR_2D& o) const { return {x + o.x, y + o.y}; }
    bool operator==(const VECTOR_2D&) const = default;
};

struct PNT_2D {
    double x = 0.0;
    double y = 0.0;
    PNT_2D() = default;
    PNT_2D(double px, double py) : x(px), y(py) {}
    double getX() const { return x; }
    double getY() const { return y; }
    PNT_2D operator+(const VECTOR_2D& v) const { return {x + v.x, y + v.y}; }
    VECTOR_2D operator-(const PNT_2D& o) const { return {x - o.x, y - o.y}; }
    bool operator==(const PNT_2D&) const = default;
};

struct PNT_3D {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    PNT_3D() = default;
    PNT_3D(double px, double py, double pz) : x(px), y(py), z(pz) {}
    double getX() const { return x; }
    double getY() const { return y; }
    double getZ() const { return z; }
    PNT_2D get2D() const { return {x, y}; }
    bool operator==(const PNT_3D&) const = default;
};

struct LINE_3D {
    PNT_3D p1;
    PNT_3D p2;
    LINE_3D() = default;
    LINE_3D(const PNT_3D& a, const PNT_3D& b) : p1(a), p2(b) {}
    bool operator==(const LINE_3D&) const = default;
};

inline double dist(const PNT_2D& a, const PNT_2D& b) { return std::hypot(b.x - a.x, b.y - a.y); }
inline double dist(const PNT_3D& a, const PNT_3D& b) {
    return std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y) + (b.z - a.z) * (b.z - a.z));
}

}  // namespace vesk::geom
