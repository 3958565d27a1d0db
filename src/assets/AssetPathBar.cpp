#include "AssetPathBar.h"

#include "jDir.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include <filesystem>

AssetPathBar::AssetPathBar(QWidget* parent) : QWidget(parent), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addStretch(1);
    setFolder({});
}

void AssetPathBar::clear_crumbs()
{
    // Everything but the closing stretch goes.
    while (m_layout->count() > 1) {
        QLayoutItem* item = m_layout->takeAt(0);
        // Later: the crumb being clicked is the one asking for this.
        if (QWidget* widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
    m_folders.clear();
}

void AssetPathBar::add_crumb(const QString& text, const jString& folder, bool current)
{
    if (!m_folders.empty()) {
        auto* chevron = new QLabel(QStringLiteral("\u203A"), this);
        chevron->setContentsMargins(2, 0, 2, 0);
        chevron->setEnabled(false);
        m_layout->insertWidget(m_layout->count() - 1, chevron);
    }
    auto* crumb = new QToolButton(this);
    crumb->setText(text);
    crumb->setAutoRaise(true);
    crumb->setFocusPolicy(Qt::NoFocus);
    crumb->setToolTip(QString::fromStdString(folder.empty() ? jDir::getProjectRoot() : folder));
    if (current) {
        QFont bold = crumb->font();
        bold.setBold(true);
        crumb->setFont(bold);
    }
    const int index = int(m_folders.size());
    connect(crumb, &QToolButton::clicked, this, [this, index] { clickCrumb(index); });
    m_layout->insertWidget(m_layout->count() - 1, crumb);
    m_folders.push_back(folder);
}

void AssetPathBar::setFolder(const jString& folder)
{
    clear_crumbs();
    const std::filesystem::path root(jDir::getProjectRoot());
    jString rootName = root.filename().string();
    if (rootName.empty())
        rootName = root.parent_path().filename().string();
    add_crumb(QString::fromStdString(rootName.empty() ? jString("root") : rootName), {}, folder.empty());
    size_t start = 0;
    while (start < folder.size()) {
        size_t end = folder.find('/', start);
        if (end == jString::npos)
            end = folder.size();
        add_crumb(QString::fromStdString(folder.substr(start, end - start)), folder.substr(0, end),
                  end == folder.size());
        start = end + 1;
    }
}

QStringList AssetPathBar::getCrumbTexts() const
{
    QStringList texts;
    for (int i = 0; i < m_layout->count(); ++i)
        if (auto* crumb = qobject_cast<QToolButton*>(m_layout->itemAt(i)->widget()))
            texts << crumb->text();
    return texts;
}

void AssetPathBar::clickCrumb(int index)
{
    if (index >= 0 && size_t(index) < m_folders.size())
        emit folderClicked(QString::fromStdString(m_folders[size_t(index)]));
}
