#include "AttrWrap.h"

#include <QToolButton>
#include <QVBoxLayout>
#include <QVariant>

AttrWrap::AttrWrap(QWidget* panel, const jString& title) : QWidget(panel), m_title(title)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);

    m_header = new QToolButton(this);
    m_header->setText(QString::fromStdString(title));
    m_header->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_header->setAutoRaise(true);
    m_header->setCheckable(true);
    m_header->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    layout->addWidget(m_header);

    m_content = new QWidget(this);
    m_contentLayout = new QVBoxLayout(m_content);
    m_contentLayout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_content);

    const QVariant stored = panel ? panel->property(state_key()) : QVariant();
    setExpanded(stored.isValid() ? stored.toBool() : true);
    connect(m_header, &QToolButton::toggled, this, [this](bool checked) { setExpanded(checked); });
}

QByteArray AttrWrap::state_key() const
{
    return QByteArray("AttrWrap.expanded.") + QByteArray::fromStdString(m_title);
}

void AttrWrap::setContentMargin(int margin)
{
    m_contentLayout->setContentsMargins(margin, margin, margin, margin);
}

bool AttrWrap::isExpanded() const
{
    return m_header->isChecked();
}

void AttrWrap::setExpanded(bool expanded)
{
    m_header->setChecked(expanded);
    m_header->setArrowType(expanded ? Qt::DownArrow : Qt::RightArrow);
    m_content->setVisible(expanded);
    if (QWidget* panel = parentWidget())
        panel->setProperty(state_key(), expanded);
}
