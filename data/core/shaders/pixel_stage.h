// The pixel stage interface: the interpolated values (IN), the surface a
// pixel graph fills (Surface) and the colour output. The pixel start block
// includes this file.
#ifndef MATERIAL_PIXEL_STAGE_H
#define MATERIAL_PIXEL_STAGE_H

// Keep in step with vertex_stage.h.
in PixelData {
    float3 world_position;
    float3 world_normal;
    float4 world_tangent;
    float2 uv0;
    float2 uv1;
    float4 color;
    float3 object_position;
} IN;

layout(location = 0) out float4 out_color;

// What the pixel end blocks fill. normal is in tangent space (+z is the
// interpolated normal).
struct Surface {
    float3 base_color;
    float3 normal;
    float3 emissive;
    float roughness;
    float metallic;
    float specular;
    float occlusion;
    float opacity;
    float opacity_mask;
};

Surface default_surface()
{
    Surface s;
    s.base_color = float3(1.0);
    s.normal = float3(0.0, 0.0, 1.0);
    s.emissive = float3(0.0);
    s.roughness = 0.5;
    s.metallic = 0.0;
    s.specular = 0.5;
    s.occlusion = 1.0;
    s.opacity = 1.0;
    s.opacity_mask = 1.0;
    return s;
}

// Screen position (0..1, origin bottom left) of the pixel; the world
// position is not needed in this stage.
float2 material_screen_uv(float3 worldPosition, float2 size)
{
    return gl_FragCoord.xy / max(size, float2(1.0));
}

#include "data/core/shaders/lighting.h"

#endif
