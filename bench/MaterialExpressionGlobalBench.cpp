// The global options panel of a document with 40 render states (toggles,
// switches and int values in turn), as when the panel is shown after a load
// or refreshed in place: built, and built up to its first paint.
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
    // The offscreen platform warns on every window resize; the figures are
    // the output here.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
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

// The column (256 pixels wide, shown) holding the panel of the document.
struct Column {
    Column()
    {
        jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
        trReload();
        document.clear();
        add_states(document);
        widget.setFixedWidth(kColumnWidth);
        layout = new QVBoxLayout(&widget);
        panel = new MaterialExpressionGlobal(&widget, &document, nullptr);
        layout->addWidget(panel);
        widget.show();
    }
    QApplication& app = application();
    AppData document;
    QWidget widget;
    QVBoxLayout* layout = nullptr;
    MaterialExpressionGlobal* panel = nullptr;
};

// create() and the column's layout brought up to date.
void BM_BuildGlobalPanel40States(benchmark::State& state)
{
    Column column;
    jLog::Capture quiet;
    for (auto _ : state) {
        column.panel->create();
        column.layout->activate();
        benchmark::DoNotOptimize(column.panel->sizeHint());
    }
    state.counters["rows"] = static_cast<double>(column.panel->getStateLabels().size());
}

// The same up to the panel on screen: the new widgets shown, polished and
// painted by the event loop, as after a load.
void BM_ShowGlobalPanel40States(benchmark::State& state)
{
    Column column;
    jLog::Capture quiet;
    for (auto _ : state) {
        column.panel->create();
        QApplication::processEvents();
        column.widget.repaint();
    }
}

} // namespace

BENCHMARK(BM_BuildGlobalPanel40States)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ShowGlobalPanel40States)->Unit(benchmark::kMillisecond);
