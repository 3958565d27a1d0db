// The first include of every generated program (the block library's
// code_include): the dialect, the resource macros and the global uniforms.
// The stage interface comes from the start block's include.
#include "data/core/shaders/common.h"
#include "data/core/shaders/resources.h"
#include "data/core/shaders/globals.h"
