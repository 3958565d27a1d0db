// The engine's shading dialect over GLSL 4.10 core: HLSL-style type names,
// intrinsics and the "<type>_zero" constants that generated code uses for
// unlinked inputs. Included by material.h in every program.
#ifndef MATERIAL_COMMON_H
#define MATERIAL_COMMON_H

#define float2 vec2
#define float3 vec3
#define float4 vec4
#define float2x2 mat2
#define float3x3 mat3
#define float4x4 mat4
#define half float
#define half2 vec2
#define half3 vec3
#define half4 vec4
#define int2 ivec2
#define int3 ivec3
#define int4 ivec4
#define uint2 uvec2
#define uint3 uvec3
#define uint4 uvec4
#define bool2 bvec2
#define bool3 bvec3
#define bool4 bvec4

#define lerp(a, b, t) mix(a, b, t)
#define saturate(x) clamp(x, 0.0, 1.0)
#define frac(x) fract(x)
#define rsqrt(x) inversesqrt(x)
#define rcp(x) (1.0 / (x))
#define ddx(x) dFdx(x)
#define ddy(x) dFdy(x)
#define atan2(y, x) atan(y, x)
#define fmod(x, y) ((x) - (y) * trunc((x) / (y)))
#define mul(a, b) ((a) * (b))

const float float_zero = 0.0;
const float2 float2_zero = float2(0.0);
const float3 float3_zero = float3(0.0);
const float4 float4_zero = float4(0.0);
const float2x2 float2x2_zero = float2x2(0.0);
const float3x3 float3x3_zero = float3x3(0.0);
const float4x4 float4x4_zero = float4x4(0.0);
const int int_zero = 0;
const int2 int2_zero = int2(0);
const int3 int3_zero = int3(0);
const int4 int4_zero = int4(0);
const uint uint_zero = 0u;
const bool bool_zero = false;

const float MATERIAL_PI = 3.14159265358979;

// Conversions that let any value feed any input: a scalar is repeated, a
// shorter vector is padded with zeros, a longer one is cut. Block fragments
// read their inputs through them (docs/block-library.md).
float as_float(float x) { return x; }
float as_float(float2 v) { return v.x; }
float as_float(float3 v) { return v.x; }
float as_float(float4 v) { return v.x; }
float as_float(int x) { return float(x); }

float2 as_float2(float x) { return float2(x); }
float2 as_float2(float2 v) { return v; }
float2 as_float2(float3 v) { return v.xy; }
float2 as_float2(float4 v) { return v.xy; }
float2 as_float2(int x) { return float2(float(x)); }

float3 as_float3(float x) { return float3(x); }
float3 as_float3(float2 v) { return float3(v, 0.0); }
float3 as_float3(float3 v) { return v; }
float3 as_float3(float4 v) { return v.xyz; }
float3 as_float3(int x) { return float3(float(x)); }

float4 as_float4(float x) { return float4(x); }
float4 as_float4(float2 v) { return float4(v, 0.0, 0.0); }
float4 as_float4(float3 v) { return float4(v, 0.0); }
float4 as_float4(float4 v) { return v; }
float4 as_float4(int x) { return float4(float(x)); }

#endif
