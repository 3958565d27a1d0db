#pragma once

#include "jString.h"

#include <QWidget>

class QHBoxLayout;

// The path bar above the strip: one button per folder of the current path,
// starting with the data root (shown by its folder's name), separated by
// chevrons. Clicking a crumb asks for that folder through folderClicked.
class AssetPathBar : public QWidget {
    Q_OBJECT

public:
    explicit AssetPathBar(QWidget* parent = nullptr);

    // Rebuilds the crumbs for a root-relative folder ("" is the root).
    void setFolder(const jString& folder);
    // The crumbs' texts, root first (for tests and the screenshot check).
    QStringList getCrumbTexts() const;
    // Clicks the crumb at index (0 is the root).
    void clickCrumb(int index);

signals:
    // The root-relative folder of a clicked crumb.
    void folderClicked(const QString& folder);

private:
    void clear_crumbs();
    void add_crumb(const QString& text, const jString& folder, bool current);

    QHBoxLayout* m_layout;
    std::vector<jString> m_folders;
};
