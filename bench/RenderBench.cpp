// Preview renderer speed: one 256x256 frame of a bundled sample (PBR
// lighting from the shader library, over the editor's sky) whose program is
// built, and a new material from loading its file to its first frame read back.
#include "MaterialManager.h"
#include "PreviewRenderer.h"
#include "jDir.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int kSize = 256;
const char* const kRoot = MATERIAL_SOURCE_ROOT;
const char* const kMaterial = "data/materials/metal_gold.mat";

PreviewRenderer* previewOrSkip(benchmark::State& state)
{
    static std::unique_ptr<PreviewRenderer> preview;
    static jString reason;
    if (!preview) {
        jDir::setProjectRoot(kRoot);
        preview = PreviewRenderer::create(kSize, kSize, reason);
    }
    if (!preview)
        state.SkipWithError(("no OpenGL context: " + reason).c_str());
    return preview.get();
}

void BM_PreviewFrame256(benchmark::State& state)
{
    PreviewRenderer* preview = previewOrSkip(state);
    if (!preview)
        return;
    auto material = MaterialManager::get().load(kMaterial);
    std::vector<uint8_t> rgba;
    preview->renderPixels(*material, rgba); // builds the program once
    for (auto _ : state) {
        preview->renderPixels(*material, rgba);
        benchmark::DoNotOptimize(rgba.data());
    }
    state.SetLabel(preview->getRender().getDescription());
}
BENCHMARK(BM_PreviewFrame256)->Unit(benchmark::kMillisecond);

// Every iteration reloads the file, so the material is new to the renderer:
// its programs are assembled, compiled and linked before the frame.
void BM_NewMaterialToFirstFrame(benchmark::State& state)
{
    PreviewRenderer* preview = previewOrSkip(state);
    if (!preview)
        return;
    std::vector<uint8_t> rgba;
    for (auto _ : state) {
        auto material = MaterialManager::get().reload(kMaterial);
        preview->renderPixels(*material, rgba);
        benchmark::DoNotOptimize(rgba.data());
    }
}
BENCHMARK(BM_NewMaterialToFirstFrame)->Unit(benchmark::kMillisecond);

} // namespace
