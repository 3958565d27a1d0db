#pragma once

#include "UIRoot.h"
#include "jString.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <memory>

class Autosave;
class LayoutFile;
class LogPanel;
class MaterialEditor;
class QToolButton;

// The host of the editor module ("UIRoot"): the main window with the
// MaterialEditor as its central widget, the frame timer, the log panel and
// the layout file. Closing it (Ctrl+Q or the window's close button) asks
// whether to save a modified document first.
class EditorMainWindow : public QMainWindow, public UIRoot {
public:
    static constexpr int kFrameMs = 16;
    static constexpr int kDefaultWidth = 1440;
    static constexpr int kDefaultHeight = 900;

    explicit EditorMainWindow(LayoutFile& layout);
    ~EditorMainWindow() override;

    MaterialEditor& getEditor() { return *m_editor; }
    LogPanel* getLogPanel() const { return m_log; }

    // One frame: update(dt), the message bus, render().
    void frame();
    void startFrames();

    // Called at the first frame after the window was shown and the preview
    // had its first frame.
    void setOnFirstFrame(std::function<void()> callback) { m_onFirstFrame = std::move(callback); }

    // UIRoot
    QWidget* getWindow() const override { return const_cast<EditorMainWindow*>(this); }
    void setTitle(const jString& title) override;
    const jString& getTitle() const override { return m_title; }
    void getWindowPos(int& x, int& y) const override;
    void setWindowPos(int x, int y) override;
    void getWindowSize(int& width, int& height) const override;
    void setWindowSize(int width, int height) override;

    // Starts the recovery copy of a modified document (seconds 0: never
    // written, yet a clean quit and a save still remove an old one).
    void enableAutosave(int seconds);
    Autosave* getAutosave() const { return m_autosave.get(); }

    // Whether the window may close: true unless the user cancels the
    // save / discard / cancel question about a modified document.
    bool confirmClose();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void init_log_panel();
    void init_quit();
    void update_log_button(int warnings, int errors);
    bool is_first_frame_ready() const;
    void store_layout();

    LayoutFile& m_layout;
    std::unique_ptr<MaterialEditor> m_editor;
    std::unique_ptr<Autosave> m_autosave;
    LogPanel* m_log = nullptr;
    QToolButton* m_logButton = nullptr;
    QTimer m_timer;
    QElapsedTimer m_clock;
    jString m_title;
    std::function<void()> m_onFirstFrame;
    bool m_closing = false;
};
