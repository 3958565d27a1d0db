// The vertex stage interface: vertex attributes, the values a vertex graph
// reads (IN) and the varyings it writes. The vertex start block includes this
// file; standard.vs uses it for materials without a vertex part.
#ifndef MATERIAL_VERTEX_STAGE_H
#define MATERIAL_VERTEX_STAGE_H

layout(location = 0) in float3 in_position;
layout(location = 1) in float3 in_normal;
layout(location = 2) in float4 in_tangent; // xyz direction, w handedness (+1 or -1)
layout(location = 3) in float2 in_uv0;
layout(location = 4) in float2 in_uv1;
layout(location = 5) in float4 in_color;

// Keep in step with pixel_stage.h.
out PixelData {
    float3 world_position;
    float3 world_normal;
    float4 world_tangent;
    float2 uv0;
    float2 uv1;
    float4 color;
    float3 object_position;
} VOUT;

// What block fragments read as IN.<member>; the same members as the pixel
// stage's IN, so one fragment serves both stages.
struct VertexInput {
    float3 world_position;
    float3 world_normal;
    float4 world_tangent;
    float2 uv0;
    float2 uv1;
    float4 color;
    float3 object_position;
};

VertexInput read_vertex_input()
{
    VertexInput v;
    float3x3 normalMatrix = transpose(inverse(float3x3(g_world)));
    v.object_position = in_position;
    v.world_position = (g_world * float4(in_position, 1.0)).xyz;
    v.world_normal = normalize(normalMatrix * in_normal);
    v.world_tangent = float4(float3x3(g_world) * in_tangent.xyz, in_tangent.w);
    v.uv0 = in_uv0;
    v.uv1 = in_uv1;
    v.color = in_color;
    return v;
}

// Writes the varyings and the clip position; offset moves the vertex in
// world space.
void write_vertex(VertexInput v, float3 offset)
{
    float3 position = v.world_position + offset;
    VOUT.world_position = position;
    VOUT.world_normal = v.world_normal;
    VOUT.world_tangent = v.world_tangent;
    VOUT.uv0 = v.uv0;
    VOUT.uv1 = v.uv1;
    VOUT.color = v.color;
    VOUT.object_position = v.object_position;
    gl_Position = g_view_proj * float4(position, 1.0);
}

// Screen position (0..1, origin bottom left) of a world position.
float2 material_screen_uv(float3 worldPosition, float2 size)
{
    float4 clip = g_view_proj * float4(worldPosition, 1.0);
    return clip.w > 0.0 ? clip.xy / clip.w * 0.5 + 0.5 : float2(0.5);
}

#endif
