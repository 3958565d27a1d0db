#include "MeshBuffer.h"

#include <epoxy/gl.h>

#include <cstddef>

namespace {

struct AttributeLayout {
    GLuint location;
    GLint components;
    size_t offset;
};

constexpr AttributeLayout kLayout[] = {
    {SphereMesh::Position, 3, offsetof(SphereMesh::Vertex, position)},
    {SphereMesh::Normal, 3, offsetof(SphereMesh::Vertex, normal)},
    {SphereMesh::Tangent, 4, offsetof(SphereMesh::Vertex, tangent)},
    {SphereMesh::Uv0, 2, offsetof(SphereMesh::Vertex, uv0)},
    {SphereMesh::Uv1, 2, offsetof(SphereMesh::Vertex, uv1)},
    {SphereMesh::Colour, 4, offsetof(SphereMesh::Vertex, colour)},
};

} // namespace

MeshBuffer::MeshBuffer(const SphereMesh& mesh) : m_indexCount(int(mesh.getIndices().size()))
{
    glGenVertexArrays(1, &m_vertexArray);
    glBindVertexArray(m_vertexArray);
    glGenBuffers(1, &m_vertices);
    glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(mesh.getVertices().size() * sizeof(SphereMesh::Vertex)),
        mesh.getVertices().data(), GL_STATIC_DRAW);
    glGenBuffers(1, &m_indices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, GLsizeiptr(mesh.getIndices().size() * sizeof(uint32_t)),
        mesh.getIndices().data(), GL_STATIC_DRAW);
    for (const AttributeLayout& attribute : kLayout) {
        glEnableVertexAttribArray(attribute.location);
        glVertexAttribPointer(attribute.location, attribute.components, GL_FLOAT, GL_FALSE,
            sizeof(SphereMesh::Vertex), reinterpret_cast<const void*>(attribute.offset));
    }
    glBindVertexArray(0);
}

MeshBuffer::~MeshBuffer()
{
    glDeleteBuffers(1, &m_vertices);
    glDeleteBuffers(1, &m_indices);
    glDeleteVertexArrays(1, &m_vertexArray);
}

void MeshBuffer::draw() const
{
    glBindVertexArray(m_vertexArray);
    glDrawElements(GL_TRIANGLES, m_indexCount, GL_UNSIGNED_INT, nullptr);
    glBindVertexArray(0);
}
