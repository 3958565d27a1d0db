#include "EditorMainWindow.h"

#include "Autosave.h"
#include "DialogAnswerer.h"
#include "LayoutFile.h"
#include "LogPanel.h"
#include "MaterialEditor.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "PackageItem.h"

#include <QAction>
#include <QCloseEvent>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolButton>
#include <QWindow>

namespace {

constexpr const char* kHostPackage = "host";
constexpr const char* kLogVisible = "log_panel";

} // namespace

EditorMainWindow::EditorMainWindow(LayoutFile& layout)
    : m_layout(layout)
{
    resize(kDefaultWidth, kDefaultHeight);
    init_log_panel();
    m_editor = std::make_unique<MaterialEditor>(this);
    setCentralWidget(m_editor->getWidget());
    m_editor->readLayout(&m_layout.getPackage());
    init_quit();
    connect(&m_timer, &QTimer::timeout, this, &EditorMainWindow::frame);
}

EditorMainWindow::~EditorMainWindow()
{
    m_timer.stop();
    m_autosave.reset();
    // The editor's widget goes with this window; the editor object lets it go.
    m_editor.reset();
}

void EditorMainWindow::init_log_panel()
{
    m_log = new LogPanel(this);
    addDockWidget(Qt::BottomDockWidgetArea, m_log);
    resizeDocks({m_log}, {110}, Qt::Vertical);
    const Package* host = m_layout.getPackage().findPackage(kHostPackage);
    if (host && !host->getBool(kLogVisible, true))
        m_log->hide();

    m_logButton = new QToolButton(this);
    m_logButton->setCheckable(true);
    m_logButton->setAutoRaise(true);
    m_logButton->setChecked(m_log->isVisible() || !host || host->getBool(kLogVisible, true));
    connect(m_logButton, &QToolButton::toggled, m_log, &QWidget::setVisible);
    connect(m_log, &QDockWidget::visibilityChanged, this, [this](bool) {
        if (!isHidden())
            m_logButton->setChecked(!m_log->isHidden());
    });
    connect(m_log, &LogPanel::countsChanged, this, &EditorMainWindow::update_log_button);
    statusBar()->addPermanentWidget(m_logButton);
    statusBar()->setSizeGripEnabled(false);
    update_log_button(0, 0);
}

void EditorMainWindow::update_log_button(int warnings, int errors)
{
    QString text = QStringLiteral("Log");
    if (warnings || errors)
        text += QStringLiteral("  (%1 warnings, %2 errors)").arg(warnings).arg(errors);
    m_logButton->setText(text);
    m_logButton->setToolTip(QStringLiteral("Show or hide the engine log"));
}

void EditorMainWindow::init_quit()
{
    auto* quit = new QAction(QStringLiteral("Quit"), this);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setShortcutContext(Qt::ApplicationShortcut);
    connect(quit, &QAction::triggered, this, &QWidget::close);
    addAction(quit);
}

void EditorMainWindow::startFrames()
{
    m_clock.start();
    m_timer.start(kFrameMs);
}

void EditorMainWindow::frame()
{
    const float dt = m_clock.isValid() ? static_cast<float>(m_clock.restart()) / 1000.0f : 0.0f;
    m_editor->update(dt);
    MsgMngr::instance().dispatch();
    m_editor->render();
    if (m_onFirstFrame && is_first_frame_ready()) {
        auto callback = std::move(m_onFirstFrame);
        m_onFirstFrame = nullptr;
        callback();
    }
}

bool EditorMainWindow::is_first_frame_ready() const
{
    const MaterialEditorWindow* window = m_editor->getWindow();
    return isVisible() && windowHandle() && windowHandle()->isExposed() && window && window->isPreviewReady()
        && MsgMngr::instance().getPendingCount() == 0;
}

void EditorMainWindow::setTitle(const jString& title)
{
    m_title = title;
    setWindowTitle(QString::fromStdString(title));
    // The title follows the modified mark.
    if (m_autosave)
        m_autosave->documentChanged();
}

void EditorMainWindow::enableAutosave(int seconds)
{
    if (MaterialEditorWindow* window = m_editor->getWindow())
        m_autosave = std::make_unique<Autosave>(*window, seconds);
}

void EditorMainWindow::getWindowPos(int& x, int& y) const
{
    x = pos().x();
    y = pos().y();
}

void EditorMainWindow::setWindowPos(int x, int y)
{
    move(x, y);
}

void EditorMainWindow::getWindowSize(int& width, int& height) const
{
    width = size().width();
    height = size().height();
}

void EditorMainWindow::setWindowSize(int width, int height)
{
    if (width > 0 && height > 0)
        resize(width, height);
}

bool EditorMainWindow::confirmClose()
{
    MaterialEditorWindow* window = m_editor->getWindow();
    if (!window || !window->isModified())
        return true;
    QMessageBox box(QMessageBox::Question, QStringLiteral("MaterialEditor"),
                    QStringLiteral("The material has unsaved changes. Save them before closing?"),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setDefaultButton(QMessageBox::Save);
    switch (DialogAnswerer::exec(box)) {
    case QMessageBox::Save:
        window->save();
        return !window->isModified();
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

void EditorMainWindow::closeEvent(QCloseEvent* event)
{
    if (!confirmClose()) {
        event->ignore();
        return;
    }
    m_timer.stop();
    if (m_autosave)
        m_autosave->cleanQuit();
    store_layout();
    event->accept();
}

void EditorMainWindow::store_layout()
{
    m_editor->onUnload();
    Package& package = m_layout.getPackage();
    Package* host = package.findPackage(kHostPackage);
    if (!host)
        host = package.addPackage(kHostPackage);
    host->setBool(kLogVisible, !m_log->isHidden());
    m_layout.write();
}
