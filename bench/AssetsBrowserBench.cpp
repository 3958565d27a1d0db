// The asset strip on a folder of 1,000 images (128 x 128 DDS files): opening
// it (listing, items, first paint) must not wait for any thumbnail; the
// thumbnails of the items in sight follow from the worker thread.
#include "AssetListModel.h"
#include "AssetThumbnailer.h"
#include "AssetsBrowser.h"
#include "DdsWriter.h"
#include "jDir.h"
#include "BenchApplication.h"

#include <QApplication>
#include <QElapsedTimer>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace {

constexpr int kImages = 1000;
constexpr int kImageSize = 128;

// A temporary data root holding data/images/img<n>.dds, made once and
// removed at exit.
class ImageFolder {
public:
    ImageFolder() : m_root(std::filesystem::temp_directory_path() / ("AssetsBrowserBench-" + std::to_string(getpid())))
    {
        jDir::setProjectRoot(m_root.string());
        jImage image;
        image.create(kImageSize, kImageSize, 1, 1, 1);
        uint8_t* pixels = image.getPixels(0, 0);
        for (size_t i = 0; i < image.getLevelBytes(0); ++i)
            pixels[i] = uint8_t(i * 7);
        for (int i = 0; i < kImages; ++i)
            DdsWriter::save(image, "data/images/img" + std::to_string(i) + ".dds");
    }
    ~ImageFolder()
    {
        std::error_code ec;
        std::filesystem::remove_all(m_root, ec);
    }

private:
    std::filesystem::path m_root;
};

void ensureFolder()
{
    benchApplication("AssetsBrowserBench");
    static ImageFolder folder;
}

// Until the worker has nothing left and every result reached the strip.
void waitForThumbnails(AssetsBrowser& browser)
{
    while (browser.getThumbnailer()->getBusyCount() > 0 || browser.getThumbnailer()->drain() > 0)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
}

// What the event loop does after a folder change, done at once: lay the
// items out and paint the strip.
void paintNow(AssetsBrowser& browser)
{
    browser.getView()->doItemsLayout();
    browser.getView()->viewport()->repaint();
}

// From asking for the folder to the first frame of the strip showing it.
void BM_OpenFolderOf1000Images(benchmark::State& state)
{
    ensureFolder();
    int wanted = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto browser = std::make_unique<AssetsBrowser>();
        browser->resize(1200, 110);
        browser->show();
        QApplication::processEvents();
        wanted = 0;
        QObject::connect(browser->getModel(), &AssetListModel::thumbnailWanted, [&wanted] { ++wanted; });
        state.ResumeTiming();

        browser->showFolder("data/images");
        paintNow(*browser);
        benchmark::DoNotOptimize(browser->getCount());

        state.PauseTiming();
        waitForThumbnails(*browser);
        browser.reset();
        state.ResumeTiming();
    }
    state.counters["items"] = kImages;
    state.counters["thumbnails_asked"] = wanted;
}
BENCHMARK(BM_OpenFolderOf1000Images)->Unit(benchmark::kMillisecond);

// From asking for the folder until every thumbnail in sight is shown.
void BM_ThumbnailsInSight(benchmark::State& state)
{
    ensureFolder();
    for (auto _ : state) {
        state.PauseTiming();
        auto browser = std::make_unique<AssetsBrowser>();
        browser->resize(1200, 110);
        browser->show();
        QApplication::processEvents();
        state.ResumeTiming();

        browser->showFolder("data/images");
        paintNow(*browser);
        waitForThumbnails(*browser);

        state.PauseTiming();
        browser.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_ThumbnailsInSight)->Unit(benchmark::kMillisecond)->UseRealTime();

// One thumbnail on the worker: read, decode and scale a 128 x 128 image.
void BM_MakeThumbnail(benchmark::State& state)
{
    ensureFolder();
    const jString path = jDir::resolveRead("data/images/img0.dds");
    for (auto _ : state) {
        jString reason;
        benchmark::DoNotOptimize(AssetThumbnailer::make(path, 48, reason));
    }
}
BENCHMARK(BM_MakeThumbnail)->Unit(benchmark::kMicrosecond);

} // namespace
