#include "EditorApp.h"

#include "AppData.h"
#include "Autosave.h"
#include "EditorMainWindow.h"
#include "EditorTheme.h"
#include "Graph.h"
#include "LayoutFile.h"
#include "MaterialEditor.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "RecoveryFile.h"
#include "RecoveryPrompt.h"
#include "ScriptedAnswers.h"
#include "jDir.h"
#include "jLog.h"
#include "tr.h"

#include <QApplication>
#include <QImage>
#include <QPixmap>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <unistd.h>

namespace {

// Milliseconds since the kernel started this process (10 ms resolution);
// -1 where /proc does not tell.
long long processAgeMs()
{
    std::ifstream stat("/proc/self/stat");
    std::ifstream uptime("/proc/uptime");
    std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
    double upSeconds = 0.0;
    const size_t close = text.rfind(')');
    if (close == std::string::npos || !(uptime >> upSeconds))
        return -1;
    std::istringstream fields(text.substr(close + 2));
    std::string field;
    // After the name: state is field 3; starttime is field 22.
    for (int index = 3; index <= 22 && fields >> field; ++index) {
        if (index == 22) {
            const double started = std::stod(field) / static_cast<double>(sysconf(_SC_CLK_TCK));
            return static_cast<long long>((upSeconds - started) * 1000.0);
        }
    }
    return -1;
}

} // namespace

int EditorApp::run(int argc, char** argv)
{
    int exitCode = EditorOptions::kExitSuccess;
    if (!m_options.parse(argc, argv, exitCode))
        return exitCode;

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("material-editor"));
    EditorTheme::apply(app);
    if (!install_root())
        return EditorOptions::kExitUsage;

    LayoutFile layout(LayoutFile::defaultPath());
    layout.read();
    EditorMainWindow window(layout);
    if (const jString warning = layout.takeWarning(); !warning.empty())
        jLog::warning("%s", warning.c_str());

    const std::unique_ptr<ScriptedAnswers> answers = ScriptedAnswers::fromEnvironment();
    const bool loaded = open_document(window);
    if (!loaded && !m_options.screenshot.empty())
        return EditorOptions::kExitFailure;
    const bool restored = loaded && RecoveryPrompt::offer(window);
    window.enableAutosave(m_options.autosaveSeconds);
    if (restored && window.getAutosave())
        window.getAutosave()->adopt(RecoveryFile(AppData::get()->getPath()).getPath());
    apply_test_edit(window);
    if (loaded && m_options.selectNode >= 0 && !select_node(window))
        return EditorOptions::kExitFailure;
    window.show();
    window.startFrames();
    if (m_options.screenshot.empty())
        return app.exec();

    int result = EditorOptions::kExitSuccess;
    window.setOnFirstFrame([&] {
        jLog::message("material-editor: first complete frame %lld ms after the process started", processAgeMs());
        if (!write_screenshot(window))
            result = EditorOptions::kExitFailure;
        window.close();
    });
    app.exec();
    return result;
}

bool EditorApp::install_root()
{
    const jString root = jDir::discoverRoot(m_options.dataRoot, m_options.path);
    if (!jDir::isDirectory(root)) {
        jLog::error("material-editor: the data root \"%s\" is not a folder", root.c_str());
        return false;
    }
    jDir::setProjectRoot(root);
    trReload();
    return true;
}

bool EditorApp::open_document(EditorMainWindow& window)
{
    if (m_options.path.empty())
        return true;
    jString relative;
    if (!jDir::exists(jDir::resolveRead(m_options.path)) && !jDir::exists(m_options.path)) {
        jLog::error("material-editor: no such file \"%s\"", m_options.path.c_str());
        return false;
    }
    if (!jDir::toRootRelative(m_options.path, relative)) {
        jLog::error("material-editor: \"%s\" lies outside the data root \"%s\"", m_options.path.c_str(),
                    jDir::getProjectRoot().c_str());
        return false;
    }
    MaterialEditorWindow* editor = window.getEditor().getWindow();
    if (!window.getEditor().load(editor->getDataPath() + relative))
        return false;
    return AppData::get()->getPath() == relative;
}

// The canvas is filled from the document by the load's notification, so the
// bus is drained first; the selection then shows the node's panel on the
// first frame.
bool EditorApp::select_node(EditorMainWindow& window) const
{
    while (MsgMngr::instance().getPendingCount() > 0)
        MsgMngr::instance().dispatch();
    Graph* graph = window.getEditor().getWindow()->getGraph();
    GraphNode* node = graph->findNode(m_options.selectNode);
    if (!node) {
        jLog::error("material-editor: the document has no node %d", m_options.selectNode);
        return false;
    }
    graph->selectNode(node);
    return true;
}

void EditorApp::apply_test_edit(EditorMainWindow& window)
{
    const char* order = std::getenv("MATERIAL_EDITOR_TEST_RENDER_ORDER");
    MaterialEditorWindow* editor = window.getEditor().getWindow();
    if (!order || !editor)
        return;
    AppData::get()->setRenderOrder(std::atoi(order));
    editor->set_window_modified(true);
}

bool EditorApp::write_screenshot(EditorMainWindow& window) const
{
    // Widgets built during the last frame (a property panel) are laid out by
    // posted layout requests, which may post further ones for the widgets
    // inside them.
    for (int pass = 0; pass < 4; ++pass)
        QCoreApplication::sendPostedEvents();
    const QImage image = window.grab().toImage();
    if (image.isNull() || !image.save(QString::fromStdString(m_options.screenshot), "PNG")) {
        jLog::error("material-editor: can't write the screenshot \"%s\"", m_options.screenshot.c_str());
        return false;
    }
    return true;
}
