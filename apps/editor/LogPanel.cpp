#include "LogPanel.h"

#include <QMetaObject>
#include <QPlainTextEdit>

namespace {

QString htmlLine(jLog::Level level, const QString& text)
{
    const QString escaped = text.toHtmlEscaped();
    switch (level) {
    case jLog::Level::Error:
        return QStringLiteral("<span style=\"color:#ff6b6b\"><b>error:</b> %1</span>").arg(escaped);
    case jLog::Level::Warning:
        return QStringLiteral("<span style=\"color:#f0c04a\"><b>warning:</b> %1</span>").arg(escaped);
    case jLog::Level::Message:
        break;
    }
    return QStringLiteral("<span style=\"color:#c8c8c8\">%1</span>").arg(escaped);
}

} // namespace

LogPanel::LogPanel(QWidget* parent)
    : QDockWidget(QStringLiteral("Log"), parent)
{
    setObjectName(QStringLiteral("logPanel"));
    setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    m_text = new QPlainTextEdit(this);
    m_text->setReadOnly(true);
    m_text->setMaximumBlockCount(kMaxLines);
    m_text->setStyleSheet(QStringLiteral("QPlainTextEdit { background: #202020; font-family: monospace; }"));
    setWidget(m_text);
    m_sink = jLog::addSink([this](jLog::Level level, const jString& text) {
        QMetaObject::invokeMethod(this, [this, level, line = QString::fromStdString(text)] {
            append(static_cast<int>(level), line);
        }, Qt::QueuedConnection);
    });
}

LogPanel::~LogPanel()
{
    jLog::removeSink(m_sink);
}

int LogPanel::getLineCount() const
{
    return m_text->document()->blockCount() - (m_text->document()->isEmpty() ? 1 : 0);
}

void LogPanel::append(int level, const QString& text)
{
    const auto kind = static_cast<jLog::Level>(level);
    m_text->appendHtml(htmlLine(kind, text));
    if (kind == jLog::Level::Warning)
        ++m_warnings;
    else if (kind == jLog::Level::Error)
        ++m_errors;
    else
        return;
    emit countsChanged(m_warnings, m_errors);
}
