#pragma once

#include "jLog.h"

#include <QDockWidget>

class QPlainTextEdit;

// The engine log inside the editor: every jLog line while the panel lives,
// warnings and errors marked by colour and prefix. Lines may come from any
// thread (thumbnails are made off the UI thread); they are shown on the UI
// thread in the order logged.
class LogPanel : public QDockWidget {
    Q_OBJECT

public:
    static constexpr int kMaxLines = 5000;

    explicit LogPanel(QWidget* parent);
    ~LogPanel() override;

    int getWarningCount() const { return m_warnings; }
    int getErrorCount() const { return m_errors; }
    int getLineCount() const;

signals:
    void countsChanged(int warnings, int errors);

private:
    void append(int level, const QString& text);

    QPlainTextEdit* m_text = nullptr;
    int m_sink = -1;
    int m_warnings = 0;
    int m_errors = 0;
};
