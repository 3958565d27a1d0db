#pragma once

#include "jString.h"

#include <QWidget>

class QToolButton;
class QVBoxLayout;

// A collapsible titled section of a property panel: a header with an arrow
// and the title, and a content area below it. Sections start expanded. A
// panel rebuilds its sections whenever it refreshes, so the collapsed state
// is kept on the panel (by title), not on the section: it lasts while the
// panel lives.
class AttrWrap : public QWidget {
public:
    // The section becomes a child of panel (the caller adds it to the
    // panel's layout).
    AttrWrap(QWidget* panel, const jString& title);

    const jString& getTitle() const { return m_title; }
    QWidget* getContent() const { return m_content; }
    QVBoxLayout* getContentLayout() const { return m_contentLayout; }
    void setContentMargin(int margin);

    bool isExpanded() const;
    void setExpanded(bool expanded);
    const QToolButton* getHeader() const { return m_header; }

private:
    QByteArray state_key() const;

    jString m_title;
    QToolButton* m_header = nullptr;
    QWidget* m_content = nullptr;
    QVBoxLayout* m_contentLayout = nullptr;
};
