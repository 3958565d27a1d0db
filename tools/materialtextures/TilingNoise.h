#pragma once

// Smooth value noise that repeats every `cells` lattice cells on each axis,
// so textures made from it tile without a seam. Values are in 0..1.
namespace tiling {

float lattice(int x, int y, int z);
float noise(float x, float y, float z, int cells);

// `octaves` layers of noise over a square of `size` texels, the first with
// `cells` lattice cells across, each next one twice as fine and half as
// strong; `layer` picks an independent pattern. Normalised to 0..1.
float fractal(float x, float y, int size, int cells, int octaves, int layer);

} // namespace tiling
