// The editor's preview viewport: a frame it renders when its camera moved
// (preview pass, draw, read back into the shown image), a frame step with
// nothing changed, and a new viewport to its first frame shown (sky
// coefficients, GL context, programs of the sample and the sky), and the
// constructor alone.
#include "MatViewport.h"
#include "jDir.h"
#include "BenchApplication.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>

namespace {

constexpr int kSize = 256;
const char* const kMaterial = "data/materials/metal_gold.mat";

std::unique_ptr<MatViewport> makeViewport()
{
    benchApplication("MatViewportBench");
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    auto viewport = std::make_unique<MatViewport>(nullptr, kSize, kSize);
    viewport->setMaterial(kMaterial);
    viewport->render();
    return viewport;
}

MatViewport* viewportOrSkip(benchmark::State& state)
{
    static std::unique_ptr<MatViewport> viewport = makeViewport();
    if (!viewport->getRender()) {
        state.SkipWithError("no OpenGL context");
        return nullptr;
    }
    return viewport.get();
}

void BM_ViewportOrbitFrame(benchmark::State& state)
{
    MatViewport* viewport = viewportOrSkip(state);
    if (!viewport)
        return;
    for (auto _ : state) {
        viewport->getCamera().orbit(1.0f, 0.0f);
        viewport->update(1.0f / 60.0f);
        benchmark::DoNotOptimize(viewport->getImage().constBits());
    }
    state.SetLabel(viewport->getRender()->getDescription());
}
BENCHMARK(BM_ViewportOrbitFrame)->Unit(benchmark::kMillisecond);

void BM_ViewportIdleFrame(benchmark::State& state)
{
    MatViewport* viewport = viewportOrSkip(state);
    if (!viewport)
        return;
    const size_t rendered = viewport->getRenderCount();
    for (auto _ : state)
        viewport->update(1.0f / 60.0f);
    if (viewport->getRenderCount() != rendered)
        state.SkipWithError("an idle frame rendered");
}
BENCHMARK(BM_ViewportIdleFrame)->Unit(benchmark::kMicrosecond);

// The constructor alone: the sky's coefficients and the neutral material.
void BM_ViewportConstruction(benchmark::State& state)
{
    benchApplication("MatViewportBench");
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    for (auto _ : state) {
        MatViewport viewport(nullptr, kSize, kSize);
        benchmark::DoNotOptimize(viewport.getSkyCoefficients().data());
    }
}
BENCHMARK(BM_ViewportConstruction)->Unit(benchmark::kMillisecond);

// Each iteration is a new widget with a context of its own; the programs
// are built again (Mesa's shader disk cache may help).
void BM_ViewportConstructionToFirstFrame(benchmark::State& state)
{
    for (auto _ : state) {
        std::unique_ptr<MatViewport> viewport = makeViewport();
        if (viewport->getRenderCount() != 1) {
            state.SkipWithError("no first frame");
            return;
        }
        benchmark::DoNotOptimize(viewport->getImage().constBits());
    }
}
BENCHMARK(BM_ViewportConstructionToFirstFrame)->Unit(benchmark::kMillisecond)->Iterations(10);

} // namespace
