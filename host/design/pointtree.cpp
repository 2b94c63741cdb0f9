#include "host/design/pointtree.h"

#include <QHeaderView>
#include <QLocale>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

constexpr int fewMatches = 200; // looked over at a glance: up to here the stations of what matches are opened
constexpr Korvane::BrowseTypeFlag everyType = Korvane::BrowseType::DigitalPoints | Korvane::BrowseType::AnalogPoints |
                                              Korvane::BrowseType::Units | Korvane::BrowseType::Lines;

std::vector<PointDirectory::Station> registeredStations()
{
    const PointDirectory* directory = PointDirectory::registered();
    return directory ? directory->stations() : std::vector<PointDirectory::Station>();
}

} // namespace

PointTree::PointTree(QWidget* parent) : QWidget(parent), m_model(registeredStations(), everyType)
{
    m_filter.setPlaceholderText(tr("Filter: name, description or station"));
    m_filter.setClearButtonEnabled(true);
    m_view.setModel(&m_model);
    m_view.setUniformRowHeights(true);
    m_view.setDragEnabled(true);
    m_view.setSelectionBehavior(QAbstractItemView::SelectItems); // the picture of a whole row would hide the page
    m_view.setDragDropMode(QAbstractItemView::DragOnly);
    m_view.setColumnHidden(PointTreeModel::Kind, true);
    m_view.setColumnHidden(PointTreeModel::Number, true);
    m_view.header()->setStretchLastSection(false);
    m_view.header()->setSectionResizeMode(PointTreeModel::Name, QHeaderView::ResizeToContents);
    m_view.header()->setSectionResizeMode(PointTreeModel::Description, QHeaderView::Stretch);
    if (m_model.rowCount() == 1)
        m_view.expandAll();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(&m_filter);
    layout->addWidget(&m_view);
    layout->addWidget(&m_count);
    connect(&m_filter, &QLineEdit::textChanged, this, &PointTree::setFilter);
    auto* down = new QShortcut(Qt::Key_Down, &m_filter, nullptr, nullptr, Qt::WidgetShortcut);
    connect(down, &QShortcut::activated, this, &PointTree::goToTree);
    showCount();
}

PointTree::~PointTree() = default;

Korvane::BrowerItemInfo PointTree::currentItem() const
{
    return m_model.item(m_view.currentIndex());
}

void PointTree::setFilter(const QString& text)
{
    if (!m_model.isFiltered()) {
        m_openStations.clear();
        for (int row = 0; row < m_model.rowCount(); ++row) {
            if (m_view.isExpanded(m_model.index(row, 0)))
                m_openStations.push_back(row);
        }
    }
    const Korvane::BrowerItemInfo current = currentItem();
    m_model.setFilter(text);
    if (!m_model.isFiltered()) {
        for (const int row : m_openStations)
            m_view.expand(m_model.index(row, 0));
    } else if (m_model.shownCount() <= fewMatches) {
        m_view.expandAll();
    }
    m_view.setCurrentIndex(m_model.indexOf({current.type, current.number}));
    showCount();
}

void PointTree::goToTree()
{
    m_view.setFocus();
    if (m_view.currentIndex().isValid() || m_model.shownCount() == 0)
        return;
    const QModelIndex station = m_model.index(0, 0);
    m_view.setCurrentIndex(m_view.isExpanded(station) ? m_model.index(0, 0, station) : station);
}

void PointTree::showCount()
{
    const QLocale locale;
    m_count.setText(m_model.objectCount() == 0
                        ? tr("The project has no points.")
                        : tr("%1 of %2", "points")
                              .arg(locale.toString(m_model.shownCount()), locale.toString(m_model.objectCount())));
}
