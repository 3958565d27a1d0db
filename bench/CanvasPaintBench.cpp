// Painting one frame of a large graph: 5,000 nodes and 6,000 joints built
// from raw canvas items shaped like the graph's (per node a nine-slice frame,
// an emptied inner nine-slice and one spare polygon, a title and a sub-title,
// four anchors of a label and two squares, one or two variable labels; per
// joint a 25-point curve and an arrow), painted into a 1600x1000 image at
// scale 1.0 and 0.2 with the view in the middle of the graph. The same
// frames of a graph built through the graph classes from the bundled block
// library (maths, constant and texture nodes) follow.
#include "AppData.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"
#include "UICanvas.h"
#include "jDir.h"
#include "jLog.h"
#include "BenchApplication.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using C = UICanvas;

constexpr int kNodes = 5000;
constexpr int kJoints = 6000;
constexpr int kColumns = 100;
constexpr float kNodeWidth = 160.0f;
constexpr float kNodeHeight = 120.0f;
constexpr float kStepX = 260.0f;
constexpr float kStepY = 200.0f;
constexpr int kViewWidth = 1600;
constexpr int kViewHeight = 1000;

const C::Colour kWhite{1.0f, 1.0f, 1.0f, 1.0f};
const C::Colour kNone{0.0f, 0.0f, 0.0f, 0.0f};
const C::Colour kGreen{0.0f, 1.0f, 0.0f, 1.0f};

void nineSlice(C& canvas, const C::ItemId* ids, float x0, float y0, float x1, float y1, const C::TexRect& t)
{
    const float uc = (t.u0 + t.u1) * 0.5f, vc = (t.v0 + t.v1) * 0.5f, gu = 1.0f / 256, gv = 1.0f / 128;
    canvas.setPolygonRect(ids[0], {x0, y0}, {x0 + 16, y0 + 16}, {t.u0, t.v0, uc - gu, vc - gv});
    canvas.setPolygonRect(ids[1], {x1 - 16, y0}, {x1, y0 + 16}, {uc + gu, t.v0, t.u1, vc - gv});
    canvas.setPolygonRect(ids[2], {x0, y1 - 16}, {x0 + 16, y1}, {t.u0, vc + gv, uc - gu, t.v1});
    canvas.setPolygonRect(ids[3], {x1 - 16, y1 - 16}, {x1, y1}, {uc + gu, vc + gv, t.u1, t.v1});
    canvas.setPolygonRect(ids[4], {x0 + 16, y0}, {x1 - 16, y0 + 16}, {uc - gu, t.v0, uc + gu, vc - gv});
    canvas.setPolygonRect(ids[5], {x0, y0 + 16}, {x0 + 16, y1 - 16}, {t.u0, vc - gv, uc - gu, vc + gv});
    canvas.setPolygonRect(ids[6], {x1 - 16, y0 + 16}, {x1, y1 - 16}, {uc + gu, vc - gv, t.u1, vc + gv});
    canvas.setPolygonRect(ids[7], {x0 + 16, y1 - 16}, {x1 - 16, y1}, {uc - gu, vc + gv, uc + gu, t.v1});
    canvas.setPolygonRect(ids[8], {x0 + 16, y0 + 16}, {x1 - 16, y1 - 16}, {uc - gu, vc - gv, uc + gu, vc + gv});
}

C::Point nodePosition(int node)
{
    return {float(node % kColumns) * kStepX + 40.0f, float(node / kColumns) * kStepY + 40.0f};
}

// Anchor k of a node: inputs on the left (k = 0, 1, 2), the output right.
C::Point anchorPosition(int k)
{
    return k < 3 ? C::Point{0.0f, 40.0f + 26.0f * float(k)} : C::Point{kNodeWidth, 40.0f};
}

void addNode(C& canvas, int node, uint32_t& order)
{
    const C::Point at = nodePosition(node);
    const C::Transform place = C::Transform::translation(at.x, at.y);
    C::ItemId polygons[19];
    for (C::ItemId& id : polygons) {
        id = canvas.addPolygon(kWhite);
        canvas.setItemTransform(id, place);
        canvas.setItemOrder(id, order++);
    }
    nineSlice(canvas, polygons, 0, 0, kNodeWidth, kNodeHeight, {0.0f, 0.0f, 0.25f, 0.5f});
    auto addText = [&](const char* text, C::Point position, const C::Colour& colour) {
        C::ItemId id = canvas.addText(text, 14, colour);
        canvas.setTextPosition(id, position);
        canvas.setItemTransform(id, place);
        return id;
    };
    std::vector<C::ItemId> texts;
    texts.push_back(addText(node % 2 ? "Math.Add" : "Texture.Sample2D", {30.0f, 4.0f}, kWhite));
    texts.push_back(addText("", {16.0f, 30.0f}, kWhite));
    const char* names[] = {"a", "b", "alpha", "out"};
    for (int k = 0; k < 4; ++k) {
        const C::Point p = anchorPosition(k);
        C::ItemId square = canvas.addPolygon(kWhite);
        C::ItemId highlight = canvas.addPolygon(kNone);
        const float u = k < 3 ? 0.625f : 0.75f, row = k < 3 ? 0.0f : 0.25f;
        canvas.setPolygonRect(square, {p.x - 8, p.y - 8}, {p.x + 8, p.y + 8}, {u, row, u + 0.125f, row + 0.25f});
        canvas.setPolygonRect(highlight, {p.x - 11, p.y - 11}, {p.x + 11, p.y + 11}, {u, row, u + 0.125f, row + 0.25f});
        for (C::ItemId id : {square, highlight}) {
            canvas.setItemTransform(id, place);
            canvas.setItemOrder(id, order++);
        }
        texts.push_back(addText(names[k], {k < 3 ? p.x + 4 : p.x - 30, p.y - 7}, kWhite));
    }
    texts.push_back(addText("value(0.5)", {8.0f, 96.0f}, kGreen));
    if (node % 2)
        texts.push_back(addText("scale(2)", {90.0f, 96.0f}, kGreen));
    for (C::ItemId id : texts)
        canvas.setItemOrder(id, order++);
}

// The curve the graph draws: a cubic from the output to 16 units before the
// input, then straight into it, and an arrow head there.
void addJoint(C& canvas, int from, int to, uint32_t& order)
{
    const C::Point s0 = nodePosition(from), t0 = nodePosition(to), a = anchorPosition(3), b = anchorPosition(to % 3);
    const C::Point s{s0.x + a.x, s0.y + a.y}, t{t0.x + b.x, t0.y + b.y};
    const float d = std::hypot(t.x - s.x, t.y - s.y) * 0.5f;
    const C::Point p1{s.x + d, s.y}, e{t.x - 16.0f, t.y}, c{e.x - d, e.y};
    C::ItemId line = canvas.addLine(kWhite);
    for (int i = 0; i < 24; ++i) {
        const float u = float(i) / 24.0f, v = 1.0f - u;
        const float w0 = v * v * v, w1 = 3 * v * v * u, w2 = 3 * v * u * u, w3 = u * u * u;
        canvas.addLinePoint(line, {w0 * s.x + w1 * p1.x + w2 * c.x + w3 * e.x, w0 * s.y + w1 * p1.y + w2 * c.y + w3 * e.y});
    }
    canvas.addLinePoint(line, t);
    C::ItemId arrow = canvas.addPolygon(kWhite);
    canvas.setPolygonRect(arrow, {e.x, e.y - 8}, {e.x + 16, e.y + 8}, {0.875f, 0.25f, 1.0f, 0.5f});
    canvas.setItemOrder(line, order++);
    canvas.setItemOrder(arrow, order++);
}

void buildGraph(C& canvas)
{
    uint32_t order = 1;
    for (int node = 0; node < kNodes; ++node)
        addNode(canvas, node, order);
    // Each node feeds its right neighbour; the rest go to the node below.
    int joints = 0;
    for (int node = 0; node + 1 < kNodes && joints < kJoints; ++node) {
        if ((node + 1) % kColumns != 0) {
            addJoint(canvas, node, node + 1, order);
            ++joints;
        }
    }
    for (int node = 0; node + kColumns < kNodes && joints < kJoints; ++node, ++joints)
        addJoint(canvas, node, node + kColumns, order);
}

C& graphCanvas()
{
    static std::unique_ptr<C> canvas = [] {
        benchApplication("CanvasPaintBench");
        jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
        jLog::setStderrEnabled(false);
        auto c = std::make_unique<C>();
        buildGraph(*c);
        return c;
    }();
    return *canvas;
}

// The view: a 1600x1000 window onto the middle of the graph.
void paintFrames(benchmark::State& state, float scale)
{
    C& canvas = graphCanvas();
    const float midX = float(kColumns / 2) * kStepX * scale, midY = float(kNodes / kColumns / 2) * kStepY * scale;
    canvas.setCanvasTransform(C::Transform::scale(scale));
    const QRect view(int(midX) - kViewWidth / 2, int(midY) - kViewHeight / 2, kViewWidth, kViewHeight);
    QImage image(kViewWidth, kViewHeight, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.translate(-view.topLeft());
        canvas.paintArea(painter, view);
    }
    const C::PaintStats& stats = canvas.getLastPaintStats();
    state.counters["polygons"] = double(stats.polygons);
    state.counters["texts"] = double(stats.texts);
    state.counters["lines"] = double(stats.lines);
    state.counters["simplified"] = double(stats.simplified);
}

void BM_PaintFrameScale1(benchmark::State& state)
{
    paintFrames(state, 1.0f);
}
BENCHMARK(BM_PaintFrameScale1)->Unit(benchmark::kMillisecond);

void BM_PaintFrameScale02(benchmark::State& state)
{
    paintFrames(state, 0.2f);
}
BENCHMARK(BM_PaintFrameScale02)->Unit(benchmark::kMillisecond);

// A document of kNodes nodes of four block types on a grid with kJoints
// links, shown by a Graph.
constexpr float kGraphStepX = 300.0f;
constexpr float kGraphStepY = 260.0f;

Graph& documentGraph()
{
    static std::unique_ptr<Graph> graph = [] {
        benchApplication("CanvasPaintBench");
        jDir::setProjectRoot(MATERIAL_SOURCE_ROOT);
        jLog::setStderrEnabled(false);
        AppData* doc = AppData::get();
        if (!doc->reloadBlocks())
            std::abort();
        auto g = std::make_unique<Graph>(nullptr, int(kColumns * kGraphStepX), int(kNodes / kColumns * kGraphStepY));
        const char* types[] = {"Math.Add", "Constant.Float", "Math.Multiply", "Texture.Sample2D"};
        std::vector<DataNode*> nodes;
        for (int i = 0; i < kNodes; ++i) {
            DataNode* data = doc->createNode(types[i % 4]);
            data->setPosX(int(float(i % kColumns) * kGraphStepX));
            data->setPosY(int(float(i / kColumns) * kGraphStepY));
            g->addNode(new GraphNode(data, Graph::kWhite));
            nodes.push_back(data);
        }
        // Outputs feed the right neighbour, then the node below, then the
        // node two to the right, until there are kJoints links (constants
        // take no input).
        int joints = 0;
        auto link = [&](int from, int to, size_t input) {
            DataNode* a = nodes[size_t(from)];
            DataNode* b = nodes[size_t(to)];
            if (joints == kJoints || a->getOutputPathCount() == 0 || b->getInputPathCount() == 0)
                return;
            DataAnchor* target = b->getInputPath(input % b->getInputPathCount());
            if (g->createGrahpJoint(doc->createJoint(a->getOutputPath(0), target)))
                ++joints;
        };
        for (int i = 0; i + 1 < kNodes; ++i)
            if ((i + 1) % kColumns != 0)
                link(i, i + 1, 0);
        for (int i = 0; i + kColumns < kNodes; ++i)
            link(i, i + kColumns, 1);
        for (int i = 0; i + 2 < kNodes; ++i)
            if ((i + 2) % kColumns > 1)
                link(i, i + 2, 2);
        g->refreshHighlight(-1, -1);
        return g;
    }();
    return *graph;
}

void paintGraphFrames(benchmark::State& state, float scale)
{
    Graph& graph = documentGraph();
    graph.setScale(scale);
    const float midX = float(kColumns / 2) * kGraphStepX * scale, midY = float(kNodes / kColumns / 2) * kGraphStepY * scale;
    const QRect view(int(midX) - kViewWidth / 2, int(midY) - kViewHeight / 2, kViewWidth, kViewHeight);
    QImage image(kViewWidth, kViewHeight, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.translate(-view.topLeft());
        graph.paintArea(painter, view);
    }
    const C::PaintStats& stats = graph.getLastPaintStats();
    state.counters["polygons"] = double(stats.polygons);
    state.counters["texts"] = double(stats.texts);
    state.counters["lines"] = double(stats.lines);
    state.counters["simplified"] = double(stats.simplified);
    state.counters["items"] = double(graph.getItemCount());
    state.counters["joints"] = double(graph.getJoints().size());
}

void BM_PaintGraphFrameScale1(benchmark::State& state)
{
    paintGraphFrames(state, 1.0f);
}
BENCHMARK(BM_PaintGraphFrameScale1)->Unit(benchmark::kMillisecond);

void BM_PaintGraphFrameScale02(benchmark::State& state)
{
    paintGraphFrames(state, 0.2f);
}
BENCHMARK(BM_PaintGraphFrameScale02)->Unit(benchmark::kMillisecond);

// Building the items of the whole graph and the first frame's index.
void BM_BuildAndFirstFrame(benchmark::State& state)
{
    benchApplication("CanvasPaintBench");
    QImage image(kViewWidth, kViewHeight, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        C canvas;
        buildGraph(canvas);
        QPainter painter(&image);
        canvas.paintArea(painter, QRect(0, 0, kViewWidth, kViewHeight));
    }
}
BENCHMARK(BM_BuildAndFirstFrame)->Unit(benchmark::kMillisecond);

} // namespace
