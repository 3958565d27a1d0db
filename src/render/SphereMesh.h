#pragma once

#include "Math3D.h"

#include "jString.h"

#include <cstdint>

// The preview object: a unit UV sphere around the origin with its poles on
// the z axis, one surface named "sphere". Every vertex carries the six
// attributes of the stage interface, in location order.
class SphereMesh {
public:
    struct Vertex {
        float position[3];
        float normal[3];
        float tangent[4]; // xyz along increasing u, w the bitangent's sign
        float uv0[2];
        float uv1[2];
        float colour[4];
    };

    enum Attribute : uint32_t { Position = 0, Normal, Tangent, Uv0, Uv1, Colour, AttributeCount };

    static constexpr const char* kSurfaceName = "sphere";

    // segments around the z axis, rings from pole to pole; both at least 3.
    static SphereMesh create(int segments, int rings, float radius = 1.0f);

    const jVector<Vertex>& getVertices() const { return m_vertices; }
    const jVector<uint32_t>& getIndices() const { return m_indices; }
    const char* getSurfaceName() const { return kSurfaceName; }

private:
    jVector<Vertex> m_vertices;
    jVector<uint32_t> m_indices;
};
