// Resource macros the generator writes against (docs/shader-library.md).
#ifndef MATERIAL_RESOURCES_H
#define MATERIAL_RESOURCES_H

// Sampler state (wrap, filter, anisotropy) is bound by the host as a GL
// sampler object on each texture unit, so a sampler needs no GLSL object.
// The line still has to stay a valid declaration when it is repeated for
// several samplers: it declares the same prototype each time.
#define INIT_SAMPLER(n) void material_sampler_state(int index)

// One array of samplers per texture kind. GLSL 4.10 has no binding
// qualifier: the host sets the array's texture units with glUniform1iv,
// element i on unit slot + i.
#define INIT_TEXTURE_2D_GROUP(slot, name, count) uniform sampler2D name[count]
#define INIT_TEXTURE_CUBE_GROUP(slot, name, count) uniform samplerCube name[count]
#define INIT_TEXTURE_3D_GROUP(slot, name, count) uniform sampler3D name[count]

// Material parameters are plain uniforms, filled by name with glUniform*.
#define CBUFFER_BEGIN(name)
#define CBUFFER_END
#define UNIFORM uniform

// Sampling helpers: the index is the texture's "#define" (its place in its
// kind's group); the sampler index is informative only (see INIT_SAMPLER).
#define SAMPLE_2D(group, index, uv, samplerId) texture(group[index], uv)
#define SAMPLE_2D_LOD(group, index, uv, lod, samplerId) textureLod(group[index], uv, lod)
#define SAMPLE_CUBE(group, index, direction, samplerId) texture(group[index], direction)
#define SAMPLE_CUBE_LOD(group, index, direction, lod, samplerId) textureLod(group[index], direction, lod)
#define SAMPLE_3D(group, index, uvw, samplerId) texture(group[index], uvw)

#endif
