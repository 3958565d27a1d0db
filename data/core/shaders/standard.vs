// The vertex program of materials whose graph has no vertex part: the
// mesh drawn as it is. The pixel start block names this file in "vertex".
#include "data/core/shaders/material.h"
#include "data/core/shaders/vertex_stage.h"

void main()
{
    write_vertex(read_vertex_input(), float3_zero);
}
