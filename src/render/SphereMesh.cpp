#include "SphereMesh.h"

#include <algorithm>
#include <cmath>

SphereMesh SphereMesh::create(int segments, int rings, float radius)
{
    segments = std::max(segments, 3);
    rings = std::max(rings, 3);
    SphereMesh mesh;
    // The seam column is doubled so that u runs from 0 to 1 without a jump.
    mesh.m_vertices.reserve(size_t(segments + 1) * size_t(rings + 1));
    for (int ring = 0; ring <= rings; ++ring) {
        const float v = float(ring) / float(rings);
        const float theta = v * math3d::kPi; // from the north pole (+z)
        for (int segment = 0; segment <= segments; ++segment) {
            const float u = float(segment) / float(segments);
            const float phi = u * 2.0f * math3d::kPi;
            const math3d::Vec3 n{std::sin(theta) * std::cos(phi), std::sin(theta) * std::sin(phi), std::cos(theta)};
            Vertex vertex{};
            const math3d::Vec3 p = n * radius;
            std::copy_n(&p.x, 3, vertex.position);
            std::copy_n(&n.x, 3, vertex.normal);
            const float tangent[4] = {-std::sin(phi), std::cos(phi), 0.0f, 1.0f};
            std::copy_n(tangent, 4, vertex.tangent);
            vertex.uv0[0] = vertex.uv1[0] = u;
            vertex.uv0[1] = vertex.uv1[1] = v;
            std::fill_n(vertex.colour, 4, 1.0f);
            mesh.m_vertices.push_back(vertex);
        }
    }
    const uint32_t row = uint32_t(segments + 1);
    mesh.m_indices.reserve(size_t(segments) * size_t(rings) * 6);
    for (uint32_t ring = 0; ring < uint32_t(rings); ++ring)
        for (uint32_t segment = 0; segment < uint32_t(segments); ++segment) {
            const uint32_t a = ring * row + segment, b = a + row;
            // Counter-clockwise seen from outside.
            for (uint32_t index : {a, b, a + 1, a + 1, b, b + 1})
                mesh.m_indices.push_back(index);
        }
    return mesh;
}
