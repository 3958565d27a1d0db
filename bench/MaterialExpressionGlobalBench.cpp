// The global options panel of a document with 40 render states (toggles,
// switches and int values in turn): create() builds the whole section, and
// the column's layout is brought up to date, as when the panel is shown
// after a load or refreshed in place.
#include "AppData.h"
#include "MaterialExpressionGlobal.h"
#include "jDir.h"
#include "jLog.h"
#include "tr.h"

#include <QApplication>
#include <QLayout>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

namespace {

constexpr int kStates = 40;
constexpr int kColumnWidth = 256;

QApplication& application()
{
    static int argc = 1;
    static char name[] = "MaterialExpressionGlobalBench";
    static char* argv[] = {name, nullptr};
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static QApplication app(argc, argv);
    return app;
}

void add_states(AppData& document)
{
    for (int i = 0; i < kStates; ++i) {
        MaterialState state;
        state.name = "STATE_" + std::to_string(i);
        state.type = i % 3;
        state.value = 1;
        state.source = i % 3;
        if (state.type == MaterialState::Switch)
            state.items = {"Low", "Medium", "High", "Ultra"};
        document.getStates().push_back(state);
    }
    // The "tessellate" row is shown too.
    document.getStates()[0].name = "Tessellate";
}

void BM_BuildGlobalPanel40States(benchmark::State& state)
{
    application();
    jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
    trReload();
    AppData document;
    document.clear();
    add_states(document);
    QWidget column;
    column.setFixedWidth(kColumnWidth);
    auto* layout = new QVBoxLayout(&column);
    auto* panel = new MaterialExpressionGlobal(&column, &document, nullptr);
    layout->addWidget(panel);
    column.show();
    jLog::Capture quiet;
    for (auto _ : state) {
        panel->create();
        layout->activate();
        benchmark::DoNotOptimize(panel->sizeHint());
    }
    state.counters["rows"] = static_cast<double>(panel->getStateLabels().size());
}

} // namespace

BENCHMARK(BM_BuildGlobalPanel40States)->Unit(benchmark::kMillisecond);
