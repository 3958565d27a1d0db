#include "GlProgram.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cstring>

GlProgram::GlProgram(uint32_t program) : m_program(program)
{
    collectBlocks();
    collectUniforms();
}

GlProgram::~GlProgram()
{
    for (Block& block : m_blocks)
        glDeleteBuffers(1, &block.buffer);
    glDeleteProgram(m_program);
}

void GlProgram::collectBlocks()
{
    GLint count = 0;
    glGetProgramiv(m_program, GL_ACTIVE_UNIFORM_BLOCKS, &count);
    m_blocks.resize(size_t(count));
    for (GLint i = 0; i < count; ++i) {
        Block& block = m_blocks[size_t(i)];
        GLint size = 0;
        glGetActiveUniformBlockiv(m_program, GLuint(i), GL_UNIFORM_BLOCK_DATA_SIZE, &size);
        block.data.assign(size_t(size), 0);
        block.binding = GLuint(i);
        glUniformBlockBinding(m_program, GLuint(i), block.binding);
        glGenBuffers(1, &block.buffer);
        glBindBuffer(GL_UNIFORM_BUFFER, block.buffer);
        glBufferData(GL_UNIFORM_BUFFER, size, nullptr, GL_DYNAMIC_DRAW);
    }
    glBindBuffer(GL_UNIFORM_BUFFER, 0);
}

void GlProgram::collectUniforms()
{
    GLint count = 0, maxLength = 0;
    glGetProgramiv(m_program, GL_ACTIVE_UNIFORMS, &count);
    glGetProgramiv(m_program, GL_ACTIVE_UNIFORM_MAX_LENGTH, &maxLength);
    jString name(size_t(std::max(maxLength, 1)), '\0');
    for (GLint i = 0; i < count; ++i) {
        const GLuint index = GLuint(i);
        GLsizei length = 0;
        GLint size = 0;
        GLenum type = 0;
        glGetActiveUniform(m_program, index, maxLength, &length, &size, &type, name.data());
        Uniform uniform;
        uniform.type = type;
        uniform.size = size;
        glGetActiveUniformsiv(m_program, 1, &index, GL_UNIFORM_BLOCK_INDEX, &uniform.block);
        glGetActiveUniformsiv(m_program, 1, &index, GL_UNIFORM_OFFSET, &uniform.offset);
        glGetActiveUniformsiv(m_program, 1, &index, GL_UNIFORM_ARRAY_STRIDE, &uniform.arrayStride);
        glGetActiveUniformsiv(m_program, 1, &index, GL_UNIFORM_MATRIX_STRIDE, &uniform.matrixStride);
        jString key(name.data(), size_t(length));
        if (uniform.block < 0)
            uniform.location = glGetUniformLocation(m_program, key.c_str());
        // Arrays are reported as "name[0]"; they are set by their plain name.
        if (key.size() > 3 && key.compare(key.size() - 3, 3, "[0]") == 0)
            key.resize(key.size() - 3);
        m_uniforms[key] = uniform;
    }
}

void GlProgram::writeToBlock(const Uniform& uniform, const void* values, int elementBytes, int count, int components)
{
    Block& block = m_blocks[size_t(uniform.block)];
    const auto* source = static_cast<const uint8_t*>(values);
    const int stride = uniform.arrayStride > 0 ? uniform.arrayStride : elementBytes;
    for (int i = 0; i < std::min(count, uniform.size); ++i) {
        const size_t at = size_t(uniform.offset) + size_t(i) * size_t(stride);
        if (components == 16 && uniform.matrixStride > 0) {
            // Column by column: std140 pads every column to 16 bytes.
            for (int column = 0; column < 4; ++column)
                std::memcpy(block.data.data() + at + size_t(column * uniform.matrixStride),
                    source + size_t(i * elementBytes + column * 16), 16);
        } else if (at + size_t(elementBytes) <= block.data.size()) {
            std::memcpy(block.data.data() + at, source + size_t(i * elementBytes), size_t(elementBytes));
        }
    }
    block.dirty = true;
}

bool GlProgram::setFloats(const jString& name, const float* values, int components, int count)
{
    auto it = m_uniforms.find(name);
    if (it == m_uniforms.end())
        return false;
    const Uniform& uniform = it->second;
    if (uniform.block >= 0) {
        writeToBlock(uniform, values, components * int(sizeof(float)), count, components);
        return true;
    }
    glUseProgram(m_program);
    count = std::min(count, uniform.size);
    switch (components) {
    case 1: glUniform1fv(uniform.location, count, values); break;
    case 2: glUniform2fv(uniform.location, count, values); break;
    case 3: glUniform3fv(uniform.location, count, values); break;
    case 4: glUniform4fv(uniform.location, count, values); break;
    case 16: glUniformMatrix4fv(uniform.location, count, GL_FALSE, values); break;
    default: return false;
    }
    return true;
}

bool GlProgram::setInts(const jString& name, const int* values, int count)
{
    auto it = m_uniforms.find(name);
    if (it == m_uniforms.end())
        return false;
    const Uniform& uniform = it->second;
    if (uniform.block >= 0) {
        writeToBlock(uniform, values, int(sizeof(int)), count, 1);
        return true;
    }
    glUseProgram(m_program);
    glUniform1iv(uniform.location, std::min(count, uniform.size), values);
    return true;
}

void GlProgram::use()
{
    glUseProgram(m_program);
    for (Block& block : m_blocks) {
        if (block.dirty) {
            glBindBuffer(GL_UNIFORM_BUFFER, block.buffer);
            glBufferSubData(GL_UNIFORM_BUFFER, 0, GLsizeiptr(block.data.size()), block.data.data());
            block.dirty = false;
        }
        glBindBufferBase(GL_UNIFORM_BUFFER, block.binding, block.buffer);
    }
}
