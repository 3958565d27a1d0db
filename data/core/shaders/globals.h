// Uniforms the host sets for every program (docs/shader-library.md).
#ifndef MATERIAL_GLOBALS_H
#define MATERIAL_GLOBALS_H

uniform float4x4 g_world;          // object to world
uniform float4x4 g_view_proj;      // world to clip
uniform float3 g_camera_position;  // world space
uniform float g_time;              // seconds, the game's clock
uniform float g_editor_time;       // seconds, the editor preview's clock
uniform float2 g_screen_size;      // pixels of the game's render target
uniform float2 g_editor_viewport;  // pixels of the editor preview's target
uniform float3 g_light_direction;  // world space, from the surface towards the light
uniform float3 g_light_color;      // linear radiance of the directional light
uniform float3 g_environment_sh[9]; // environment radiance, see docs/shader-library.md
uniform float g_exposure;          // exposure in stops; 0 leaves colours as they are

#endif
