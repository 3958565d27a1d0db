#pragma once

#include "SphereMesh.h"

// A mesh in GL buffers with its vertex array: the six attributes at
// locations 0..5 (position, normal, tangent, uv0, uv1, colour).
class MeshBuffer {
public:
    explicit MeshBuffer(const SphereMesh& mesh);
    ~MeshBuffer();
    MeshBuffer(const MeshBuffer&) = delete;
    MeshBuffer& operator=(const MeshBuffer&) = delete;

    void draw() const;

private:
    uint32_t m_vertexArray = 0;
    uint32_t m_vertices = 0;
    uint32_t m_indices = 0;
    int m_indexCount = 0;
};
