#pragma once

#include "jString.h"

#include <cstdint>
#include <map>
#include <memory>

// A linked GL program with its active uniforms, set by name whether they sit
// in the default block or in a uniform block (a constant buffer of the
// shader library): block members are written into a buffer of the block
// that is uploaded before a draw.
class GlProgram {
public:
    // Takes ownership of a linked program object.
    explicit GlProgram(uint32_t program);
    ~GlProgram();
    GlProgram(const GlProgram&) = delete;
    GlProgram& operator=(const GlProgram&) = delete;

    uint32_t getId() const { return m_program; }
    bool hasUniform(const jString& name) const { return m_uniforms.count(name) > 0; }

    // Floats: components per element (1..4, 16 for a matrix), count elements.
    // Ints go to int and sampler uniforms. False when the uniform is absent.
    bool setFloats(const jString& name, const float* values, int components, int count = 1);
    bool setInts(const jString& name, const int* values, int count = 1);

    // Makes the program current and uploads the changed uniform blocks.
    void use();

private:
    struct Uniform {
        int location = -1; // default block
        int block = -1;    // index into m_blocks, or -1
        int offset = 0;
        int arrayStride = 0;
        int matrixStride = 0;
        uint32_t type = 0;
        int size = 1;
    };
    struct Block {
        uint32_t buffer = 0;
        uint32_t binding = 0;
        jVector<uint8_t> data;
        bool dirty = true;
    };

    void collectBlocks();
    void collectUniforms();
    void writeToBlock(const Uniform& uniform, const void* values, int elementBytes, int count, int components);

    uint32_t m_program = 0;
    std::map<jString, Uniform> m_uniforms;
    jVector<Block> m_blocks;
};
