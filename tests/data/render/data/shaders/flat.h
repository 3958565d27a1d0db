// A minimal stage interface for the renderer's tests.
uniform mat4 g_world;
uniform mat4 g_view_proj;
uniform vec3 g_environment_sh[9];
