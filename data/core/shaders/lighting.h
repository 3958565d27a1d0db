// The preview lighting: physically based shading (GGX specular, Lambert
// diffuse) under one directional light and an environment given by nine
// spherical-harmonic coefficients, then exposure, tone mapping and sRGB
// encoding. Included by pixel_stage.h; see docs/shader-library.md.
#ifndef MATERIAL_LIGHTING_H
#define MATERIAL_LIGHTING_H

// The Environment state: ENVIRONMENT_BANDS=<n>. Absent, or defined without a
// number (empty gives 0 - - 1 == 1 below), it means all three bands.
#if !defined(ENVIRONMENT_BANDS)
#define MATERIAL_ENVIRONMENT_BANDS 3
#elif (0 - ENVIRONMENT_BANDS - 1) == 1
#define MATERIAL_ENVIRONMENT_BANDS 3
#else
#define MATERIAL_ENVIRONMENT_BANDS ENVIRONMENT_BANDS
#endif

// The real SH basis up to band 2 at unit direction n, in the coefficient
// order of g_environment_sh.
void sh_basis(float3 n, out float basis[9])
{
    basis[0] = 0.282095;
    basis[1] = 0.488603 * n.y;
    basis[2] = 0.488603 * n.z;
    basis[3] = 0.488603 * n.x;
    basis[4] = 1.092548 * n.x * n.y;
    basis[5] = 1.092548 * n.y * n.z;
    basis[6] = 0.315392 * (3.0 * n.z * n.z - 1.0);
    basis[7] = 1.092548 * n.x * n.z;
    basis[8] = 0.546274 * (n.x * n.x - n.y * n.y);
}

// Sum of band-weighted coefficients; bands from MATERIAL_ENVIRONMENT_BANDS on count 0.
float3 sh_evaluate(float3 n, float3 bandWeight)
{
    float basis[9];
    sh_basis(n, basis);
    float3 sum = float3(0.0);
    for (int i = 0; i < 9; ++i) {
        int band = i == 0 ? 0 : (i < 4 ? 1 : 2);
        if (band < MATERIAL_ENVIRONMENT_BANDS)
            sum += g_environment_sh[i] * basis[i] * bandWeight[band];
    }
    return max(sum, float3(0.0));
}

// Irradiance arriving at a surface facing n (the cosine lobe convolved).
float3 environment_irradiance(float3 n)
{
    return sh_evaluate(n, float3(MATERIAL_PI, 2.0 * MATERIAL_PI / 3.0, 0.25 * MATERIAL_PI));
}

// Environment radiance seen along r, blurred more for rougher surfaces.
float3 environment_radiance(float3 r, float roughness)
{
    float3 sharp = sh_evaluate(r, float3(1.0));
    float3 blurred = environment_irradiance(r) / MATERIAL_PI;
    return lerp(sharp, blurred, saturate(roughness * 1.5));
}

float distribution_ggx(float nh, float alpha)
{
    float a2 = alpha * alpha;
    float d = nh * nh * (a2 - 1.0) + 1.0;
    return a2 / (MATERIAL_PI * d * d);
}

// Height-correlated Smith visibility (includes the 1 / (4 nl nv) term).
float visibility_smith(float nl, float nv, float alpha)
{
    float a2 = alpha * alpha;
    float gv = nl * sqrt(nv * nv * (1.0 - a2) + a2);
    float gl = nv * sqrt(nl * nl * (1.0 - a2) + a2);
    return 0.5 / max(gv + gl, 1e-5);
}

float3 fresnel_schlick(float3 f0, float vh)
{
    return f0 + (float3(1.0) - f0) * pow(1.0 - vh, 5.0);
}

// Split-sum environment BRDF, analytic fit.
float3 environment_brdf(float3 f0, float roughness, float nv)
{
    const float4 c0 = float4(-1.0, -0.0275, -0.572, 0.022);
    const float4 c1 = float4(1.0, 0.0425, 1.04, -0.04);
    float4 r = roughness * c0 + c1;
    float a004 = min(r.x * r.x, exp2(-9.28 * nv)) * r.x + r.y;
    float2 ab = float2(-1.04, 1.04) * a004 + r.zw;
    return f0 * ab.x + ab.y;
}

// ACES filmic curve fit.
float3 tone_map(float3 x)
{
    return saturate((x * (2.51 * x + 0.03)) / (x * (2.43 * x + 0.59) + 0.14));
}

float3 linear_to_srgb(float3 c)
{
    float3 low = c * 12.92;
    float3 high = 1.055 * pow(c, float3(1.0 / 2.4)) - 0.055;
    return lerp(high, low, float3(lessThanEqual(c, float3(0.0031308))));
}

// The world-space shading normal of a tangent-space normal.
float3 surface_normal(float3 tangentNormal)
{
    float3 n = normalize(IN.world_normal);
    if (!gl_FrontFacing)
        n = -n;
    float3 t = IN.world_tangent.xyz - n * dot(IN.world_tangent.xyz, n);
    if (dot(t, t) < 1e-10)
        return n;
    t = normalize(t);
    float3 b = cross(n, t) * (IN.world_tangent.w < 0.0 ? -1.0 : 1.0);
    float3 mapped = t * tangentNormal.x + b * tangentNormal.y + n * tangentNormal.z;
    return dot(mapped, mapped) > 1e-10 ? normalize(mapped) : n;
}

// Linear scene colour of a surface.
float3 shade_lit(Surface s)
{
    float3 n = surface_normal(s.normal);
    float3 v = normalize(g_camera_position - IN.world_position);
    float3 l = normalize(g_light_direction);
    float3 h = normalize(v + l);
    float nl = saturate(dot(n, l));
    float nv = max(dot(n, v), 1e-4);
    float nh = saturate(dot(n, h));
    float vh = saturate(dot(v, h));
    float roughness = clamp(s.roughness, 0.02, 1.0);
    float alpha = roughness * roughness;
    float metallic = saturate(s.metallic);
    float3 albedo = max(s.base_color, float3(0.0));
    float3 diffuseColor = albedo * (1.0 - metallic);
    float3 f0 = lerp(float3(0.08 * saturate(s.specular)), albedo, metallic);

    float3 diffuse = diffuseColor / MATERIAL_PI;
    float3 specular = distribution_ggx(nh, alpha) * visibility_smith(nl, nv, alpha) * fresnel_schlick(f0, vh);
#if defined(LIGHT_MODULATION_DIFFUSE)
    specular = float3(0.0);
#endif
    float3 direct = (diffuse + specular) * g_light_color * nl;

    float3 ambient = diffuseColor * environment_irradiance(n) / MATERIAL_PI;
#if !defined(LIGHT_MODULATION_DIFFUSE)
    ambient += environment_brdf(f0, roughness, nv) * environment_radiance(reflect(-v, n), roughness);
#endif
    return direct + ambient * saturate(s.occlusion) + max(s.emissive, float3(0.0));
}

// Scene colour by the LightModulation state.
float3 shade_surface(Surface s)
{
#if defined(LIGHT_MODULATION_UNLIT)
    return max(s.base_color, float3(0.0)) + max(s.emissive, float3(0.0));
#else
    return shade_lit(s);
#endif
}

// Exposure, tone mapping and sRGB encoding of a linear scene colour. With
// EDITOR_MODE, values that are not numbers show as magenta.
float4 finish_color(float3 color, float alpha)
{
#if defined(EDITOR_MODE)
    if (any(isnan(color)) || any(isinf(color)))
        return float4(1.0, 0.0, 1.0, 1.0);
#endif
    float3 mapped = tone_map(color * exp2(g_exposure));
    return float4(linear_to_srgb(mapped), saturate(alpha));
}

// The pixel end blocks' main_end calls.
void write_opaque(Surface s)
{
    if (s.opacity_mask < 1.0 / 3.0)
        discard;
    out_color = finish_color(shade_surface(s), 1.0);
}

void write_transparent(Surface s)
{
    out_color = finish_color(shade_surface(s), s.opacity);
}

void write_unlit(Surface s)
{
    if (s.opacity_mask < 1.0 / 3.0)
        discard;
    out_color = finish_color(max(s.emissive, float3(0.0)), s.opacity);
}

#endif
