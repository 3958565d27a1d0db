#include "BlockBrowser.h"

#include "AppData.h"
#include "Block.h"
#include "BlockDrag.h"
#include "BlockManager.h"
#include "Graph.h"
#include "UICanvasTextures.h"
#include "UIEventTranslator.h"
#include "jLog.h"

#include <QApplication>
#include <QDrag>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>

#include <algorithm>
#include <cctype>
#include <unordered_map>

namespace {

constexpr int kReturnKey = 13;

jString lowerCase(jString text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

QString textOf(const jString& text)
{
    return QString::fromStdString(text);
}

// "a (float4), b (float4)" over the anchors of one direction.
template <typename Count, typename At>
jString anchorList(Count count, At at)
{
    jString list;
    for (size_t i = 0; i < count; ++i) {
        const BlockAnchor* anchor = at(i);
        if (!anchor)
            continue;
        if (!list.empty())
            list += ", ";
        list += anchor->getText().empty() ? anchor->getName() : anchor->getText();
        if (!anchor->getType().empty())
            list += " (" + anchor->getType() + ")";
    }
    return list;
}

} // namespace

BlockBrowser::BlockBrowser(QWidget* parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setColumnCount(1);
    setSelectionMode(QAbstractItemView::SingleSelection);
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) { createNode(item); });
}

BlockBrowser::~BlockBrowser() = default;

void BlockBrowser::refresh()
{
    const BlockManager* blocks = AppData::get()->getBlockManager();
    if (!blocks) {
        clear();
        return;
    }
    build(*blocks);
}

void BlockBrowser::build(const BlockManager& blocks)
{
    clear();
    // The tree is put together detached and handed to the view at once: an
    // item added to the shown tree costs a model notification.
    QList<QTreeWidgetItem*> roots;
    std::unordered_map<jString, QTreeWidgetItem*> byPrefix;
    for (const Block* block : blocks) {
        const jString& name = block->getType();
        if (!m_filter.empty() && lowerCase(name).find(m_filter) == jString::npos)
            continue;
        const bool several = name.find('.') != jString::npos;
        jString prefix;
        QTreeWidgetItem* parent = nullptr;
        QTreeWidgetItem* item = nullptr;
        size_t start = 0;
        for (bool last = false; !last;) {
            const size_t dot = name.find('.', start);
            last = dot == jString::npos;
            const jString component = name.substr(start, last ? jString::npos : dot - start);
            prefix = start == 0 ? component : prefix + "." + component;
            auto found = byPrefix.find(prefix);
            if (found != byPrefix.end()) {
                item = found->second;
            } else {
                item = new QTreeWidgetItem(QStringList(textOf(component)));
                if (parent) {
                    parent->addChild(item);
                    parent->setToolTip(0, {});
                } else {
                    roots.append(item);
                }
                if (several)
                    byPrefix.emplace(prefix, item);
            }
            parent = item;
            start = dot + 1;
        }
        if (item->childCount() == 0)
            item->setToolTip(0, textOf(tooltipOf(*block)));
    }
    addTopLevelItems(roots);
    if (!m_filter.empty())
        expandAll();
}

jString BlockBrowser::tooltipOf(const Block& block)
{
    jString tip = block.getType();
    jString inputs = anchorList(block.getInputPathCount(), [&](size_t i) { return block.getInputPath(i); });
    jString links = anchorList(block.getInputLinkCount(), [&](size_t i) { return block.getInputLink(i); });
    if (!links.empty())
        inputs += (inputs.empty() ? "" : ", ") + links;
    jString outputs = anchorList(block.getOutputPathCount(), [&](size_t i) { return block.getOutputPath(i); });
    links = anchorList(block.getOutputLinkCount(), [&](size_t i) { return block.getOutputLink(i); });
    if (!links.empty())
        outputs += (outputs.empty() ? "" : ", ") + links;
    if (!inputs.empty())
        tip += "\ninputs: " + inputs;
    if (!outputs.empty())
        tip += "\noutputs: " + outputs;
    return tip;
}

jString BlockBrowser::get_full_node_type_name(const QTreeWidgetItem* item) const
{
    if (!item)
        return {};
    const jString text = item->text(0).toStdString();
    if (item->childCount() > 0) {
        jLog::warning("%s: \"%s\" is not leaf item, ignore", "BlockBrowser::get_full_node_type_name", text.c_str());
        return {};
    }
    jString name = text;
    for (const QTreeWidgetItem* parent = item->parent(); parent; parent = parent->parent())
        name = parent->text(0).toStdString() + "." + name;
    return name;
}

QTreeWidgetItem* BlockBrowser::findLeaf(const jString& typeName) const
{
    for (QTreeWidgetItemIterator it(const_cast<BlockBrowser*>(this), QTreeWidgetItemIterator::NoChildren); *it; ++it)
        if (get_full_node_type_name(*it) == typeName)
            return *it;
    return nullptr;
}

// ------------------------------------------------------------- creation

QPoint BlockBrowser::visible_centre() const
{
    QRect visible = m_graph->rect();
    for (const QWidget* ancestor = m_graph->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        visible &= QRect(m_graph->mapFrom(ancestor, QPoint(0, 0)), ancestor->size());
        if (ancestor->isWindow())
            break;
    }
    return visible.isEmpty() ? m_graph->rect().center() : visible.center();
}

bool BlockBrowser::createNode(const QTreeWidgetItem* item)
{
    if (!m_graph || !item || item->childCount() > 0)
        return false;
    const QPoint local = visible_centre();
    const QPoint absolute = m_graph->mapTo(m_graph->window(), local);
    UIEventDrop drop;
    drop.x = absolute.x();
    drop.y = absolute.y();
    drop.localX = local.x();
    drop.localY = local.y();
    drop.dragType = UIEventDrop::kDragTreeItem;
    drop.sourceType = UIEventDrop::kSourceTreeBox;
    drop.text = get_full_node_type_name(item);
    const size_t before = m_graph->getNodes().size();
    m_graph->onDropFinish(drop);
    return m_graph->getNodes().size() > before;
}

// ------------------------------------------------------------------ drag

void BlockBrowser::start_drag()
{
    m_pressed = false;
    const jString name = get_full_node_type_name(currentItem());
    auto* drag = new QDrag(this);
    drag->setMimeData(BlockDrag::makeMimeData(name));
    const QImage icon = UICanvasTextures::load(kDragIcon);
    if (!icon.isNull())
        drag->setPixmap(QPixmap::fromImage(
            icon.scaled(kDragIconSize, kDragIconSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
    drag->setHotSpot(QPoint(kDragIconSize / 2, kDragIconSize / 2));
    if (m_dragRunner)
        m_dragRunner(*drag);
    else
        drag->exec(Qt::CopyAction, Qt::CopyAction);
}

bool BlockBrowser::onMouseDown(UIEventMouse& event)
{
    m_pressed = (event.buttons & UIEventMouse::kLeft) != 0;
    m_pressPos = QPoint(event.localX, event.localY);
    return false;
}

bool BlockBrowser::onMouseMove(UIEventMouse& event)
{
    if (!m_pressed || !(event.buttons & UIEventMouse::kLeft))
        return false;
    // A click that trembles a pixel is still a click.
    if ((QPoint(event.localX, event.localY) - m_pressPos).manhattanLength() < QApplication::startDragDistance())
        return false;
    start_drag();
    return true;
}

bool BlockBrowser::onKeyPress(UIEventKey& event)
{
    if (!event.down || event.key != kReturnKey || event.modifiers != 0)
        return false;
    const QTreeWidgetItem* item = currentItem();
    if (!item || item->childCount() > 0)
        return false;
    createNode(item);
    return true;
}

void BlockBrowser::mousePressEvent(QMouseEvent* event)
{
    QTreeWidget::mousePressEvent(event);
    UIEventMouse e = UIEventTranslator::mouse(*event, *viewport());
    onMouseDown(e);
}

void BlockBrowser::mouseMoveEvent(QMouseEvent* event)
{
    UIEventMouse e = UIEventTranslator::mouse(*event, *viewport());
    if (onMouseMove(e))
        event->accept();
    else
        QTreeWidget::mouseMoveEvent(event);
}

void BlockBrowser::mouseReleaseEvent(QMouseEvent* event)
{
    m_pressed = false;
    QTreeWidget::mouseReleaseEvent(event);
}

void BlockBrowser::keyPressEvent(QKeyEvent* event)
{
    UIEventKey e;
    if (UIEventTranslator::key(*event, e) && onKeyPress(e))
        event->accept();
    else
        QTreeWidget::keyPressEvent(event);
}
