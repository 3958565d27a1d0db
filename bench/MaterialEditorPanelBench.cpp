// The parameters column: selecting a node of 20 variables (every kind of
// editor row) builds its property panel, laid out in a shown window; and
// the refresh in place of the panel already shown.
#include "AppData.h"
#include "Graph.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "WindowlessRoot.h"
#include "jDir.h"
#include "jLog.h"
#include "BenchApplication.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

constexpr int kVariables = 20;

// A block of 20 variables: numbers, vectors, colours, integers, flags,
// texts and a list of choices, in turn.
std::string wideBlock()
{
    static const char* const kinds[] = {
        "type float\n\t\t\tdefault 0.5",      "type float\n\t\t\tdefault \"0,0,0\"",
        "type color\n\t\t\tdefault \"1,0,0,1\"", "type int\n\t\t\tdefault 3",
        "type bool\n\t\t\tdefault true",      "type string\n\t\t\tdefault label",
        "type string\n\t\t\tdefault a\n\t\t\tsub {\n\t\t\t\tname a\n\t\t\t}\n\t\t\tsub {\n\t\t\t\tname b\n\t\t\t}",
    };
    std::string text = "blocks {\n\tversion 1\n\tblock {\n\t\ttype Bench.Wide\n";
    for (int i = 0; i < kVariables; ++i)
        text += "\t\tvariable {\n\t\t\ttext Value" + std::to_string(i) + "\n\t\t\tname v" + std::to_string(i) +
                "\n\t\t\t" + kinds[i % std::size(kinds)] + "\n\t\t}\n";
    return text + "\t}\n}\n";
}

class PanelFixture {
public:
    PanelFixture()
    {
        benchApplication("MaterialEditorPanelBench");
        jLog::setStderrEnabled(false);
        m_root = std::filesystem::temp_directory_path() / "material-panel-bench";
        std::filesystem::create_directories(m_root / "data/core/materials/generate");
        std::ofstream(m_root / "data/core/materials/generate/block.cfg") << wideBlock();
        jDir::setProjectRoot(m_root.string());
        AppData::get()->reloadBlocks();
        window = std::make_unique<MaterialEditorWindow>(&host);
        window->resize(1440, 900);
        window->show();
        drain();
        graph = window->getGraph();
        first = graph->create_node("Bench.Wide", 100, 100);
        second = graph->create_node("Bench.Wide", 400, 100);
        drain();
    }

    ~PanelFixture()
    {
        window.reset();
        MsgMngr::instance().clearQueue();
        std::filesystem::remove_all(m_root);
    }

    // The messages, then the layout of what they built.
    static void drain()
    {
        while (MsgMngr::instance().getPendingCount() > 0)
            MsgMngr::instance().dispatch();
        QCoreApplication::sendPostedEvents();
    }

    WindowlessRoot host{1440, 900};
    std::unique_ptr<MaterialEditorWindow> window;
    Graph* graph = nullptr;
    GraphNode* first = nullptr;
    GraphNode* second = nullptr;

private:
    std::filesystem::path m_root;
};

// Each iteration selects the other node: the shown panel goes and a new one
// of 20 rows is built and laid out.
void BM_SelectNodeRebuildsItsPanel(benchmark::State& state)
{
    PanelFixture fixture;
    bool toggle = false;
    for (auto _ : state) {
        fixture.graph->selectNode(toggle ? fixture.first : fixture.second);
        toggle = !toggle;
        PanelFixture::drain();
    }
    if (fixture.window->getExpressions().size() != 1)
        state.SkipWithError("no panel shown");
}
BENCHMARK(BM_SelectNodeRebuildsItsPanel)->Unit(benchmark::kMillisecond);

// The node of the shown panel reported again (message 11): the same panel
// rebuilds its rows in place.
void BM_RefreshShownPanelInPlace(benchmark::State& state)
{
    PanelFixture fixture;
    fixture.graph->selectNode(fixture.first);
    PanelFixture::drain();
    for (auto _ : state) {
        MsgMngr::instance().postPtr(11, fixture.first);
        PanelFixture::drain();
    }
}
BENCHMARK(BM_RefreshShownPanelInPlace)->Unit(benchmark::kMillisecond);

} // namespace
