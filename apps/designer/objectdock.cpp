#include "apps/designer/objectdock.h"

#include "host/design/designdocument.h"

#include <QHeaderView>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

constexpr int shapeRole = Qt::UserRole;
enum Kind { PageItem, LayerItem, ShapeItem };

} // namespace

ObjectDock::ObjectDock(QWidget* parent) : QDockWidget(tr("Objects"), parent)
{
    setObjectName(QStringLiteral("objects"));
    m_filter.setPlaceholderText(tr("Filter: name or class"));
    m_filter.setClearButtonEnabled(true);
    m_tree.setColumnCount(2);
    m_tree.setHeaderLabels({tr("Object"), tr("Class")});
    m_tree.header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_tree.header()->setStretchLastSection(false);
    m_tree.header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_tree.setUniformRowHeights(true);
    connect(&m_filter, &QLineEdit::textChanged, this, &ObjectDock::filter);
    connect(&m_tree, &QTreeWidget::currentItemChanged, this, &ObjectDock::tell);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(&m_filter);
    layout->addWidget(&m_tree);
    setWidget(content);
}

ObjectDock::~ObjectDock() = default;

QString ObjectDock::nameOf(const DesignDocument& document, const Shape* shape)
{
    if (!shape)
        return document.canvas().title();
    if (!shape->name().isEmpty())
        return shape->name();
    const QString text = shape->namedProperty(QStringLiteral("Text")).toString().simplified();
    return text.isEmpty() ? tr("(no name)") : tr("\"%1\"").arg(text);
}

void ObjectDock::showDocument(const DesignDocument* document)
{
    if (m_document)
        m_document->disconnect(this);
    m_document = document;
    m_filter.clear();
    fill();
    if (document) {
        connect(document, &DesignDocument::scriptsChanged, this, &ObjectDock::markScripts);
        connect(document, &DesignDocument::shapeAdded, this, &ObjectDock::refill);
        connect(document, &DesignDocument::shapeGone, this, &ObjectDock::refill);
    }
}

void ObjectDock::fill()
{
    const QSignalBlocker quiet(&m_tree);
    m_tree.clear();
    m_items.clear();
    if (!m_document)
        return;
    auto* page = new QTreeWidgetItem(&m_tree, {nameOf(*m_document, nullptr), tr("Page")}, PageItem);
    m_items.insert(nullptr, page);
    for (const auto& layer : m_document->canvas().layers()) {
        auto* layerItem = new QTreeWidgetItem(page, {layer->name(), tr("Layer")}, LayerItem);
        layerItem->setFlags(Qt::ItemIsEnabled);
        for (const auto& shape : layer->shapes()) {
            auto* item = new QTreeWidgetItem(
                layerItem, {nameOf(*m_document, shape.get()), QString(shape->shapeClass().name)}, ShapeItem);
            item->setData(0, shapeRole, QVariant::fromValue(static_cast<void*>(shape.get())));
            m_items.insert(shape.get(), item);
        }
    }
    for (auto each = m_items.constBegin(); each != m_items.constEnd(); ++each)
        markScripts(each.key());
    m_tree.expandAll();
}

void ObjectDock::refill()
{
    const Shape* selected = m_items.key(m_tree.currentItem());
    fill();
    filter(m_filter.text());
    select(selected);
}

void ObjectDock::markScripts(const Shape* shape)
{
    QTreeWidgetItem* item = m_items.value(shape);
    if (!item)
        return;
    const auto scripts = m_document->scripts(shape).size();
    QFont font = m_tree.font();
    font.setBold(scripts > 0);
    item->setFont(0, font);
    item->setToolTip(0, scripts > 0 ? tr("%n event(s) with a script", nullptr, scripts) : QString());
}

// Layers are shown with what matches in them; all of a layer that matches itself.
void ObjectDock::filter(const QString& text)
{
    QTreeWidgetItem* page = m_items.value(nullptr);
    if (!page)
        return;
    const auto matches = [&text](const QTreeWidgetItem* item) {
        return item->text(0).contains(text, Qt::CaseInsensitive) || item->text(1).contains(text, Qt::CaseInsensitive);
    };
    for (int layer = 0; layer < page->childCount(); ++layer) {
        QTreeWidgetItem* layerItem = page->child(layer);
        const bool isWhole = layerItem->text(0).contains(text, Qt::CaseInsensitive);
        bool isAny = isWhole;
        for (int shape = 0; shape < layerItem->childCount(); ++shape) {
            QTreeWidgetItem* item = layerItem->child(shape);
            item->setHidden(!isWhole && !matches(item));
            isAny |= !item->isHidden();
        }
        layerItem->setHidden(!isAny);
    }
}

void ObjectDock::select(const Shape* shape)
{
    const QSignalBlocker quiet(&m_tree);
    m_tree.setCurrentItem(m_items.value(shape));
}

void ObjectDock::tell(QTreeWidgetItem* item)
{
    if (item && item->type() != LayerItem)
        Q_EMIT selected(static_cast<Shape*>(item->data(0, shapeRole).value<void*>()));
}
