#pragma once

#include "platform/data/broweriteminfo.h"
#include "platform/data/objectkey.h"
#include "platform/data/pointdirectory.h"
#include "platform/platformexport.h"

#include <QAbstractItemModel>
#include <QString>
#include <QStringList>

#include <vector>

class QStringMatcher;

/// The objects of a point directory as a tree: the stations, and under each its points, units and lines, in the
/// directory's order. What a filter leaves of 100,000 objects is there before the user strikes the next key.
///
/// A view that allows drags drags one object at a time, as KVPointMimeData.
///
/// A change of the filter resets the model.
class KORVANE_PLATFORM_EXPORT PointTreeModel : public QAbstractItemModel
{
    Q_OBJECT
    Q_DISABLE_COPY(PointTreeModel)

public:
    enum Column { Name, Description, Kind, Number, ColumnCount };

    /// \param types kinds that the tree has; stations without any are left out
    PointTreeModel(std::vector<PointDirectory::Station> stations, Korvane::BrowseTypeFlag types,
                   QObject* parent = nullptr);
    ~PointTreeModel() override;

    /// Shows the objects with \p text in their tag or description, and every object of the stations that have it in
    /// their name, in any case of letters. Blanks around it do not count; an empty text shows everything.
    void setFilter(const QString& text);
    bool isFiltered() const { return !m_filter.isEmpty(); }

    /// How many objects the tree has, whatever the filter.
    int objectCount() const { return m_objectCount; }
    /// How many of them the filter shows.
    int shownCount() const { return m_shownCount; }

    /// The object at \p index, without a field; one of type NoObject for a station and an invalid index.
    Korvane::BrowerItemInfo item(const QModelIndex& index) const;
    /// Where the object of that key is shown; invalid when it is not. A type of Point stands for either kind of point.
    QModelIndex indexOf(ObjectKey key) const;
    /// Whether the tree has the object, shown or not; likewise.
    bool contains(ObjectKey key) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QStringList mimeTypes() const override;
    /// Of the first object among \p indexes; null without one.
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

private:
    struct Station
    {
        QString name;
        std::vector<PointDirectory::Entry> objects;
        /// What a filter looks through: the folded texts of the objects, one behind the other, since 100,000 texts in
        /// places of their own cost more to reach than to search.
        QString searched;
        std::vector<int> ends;  ///< of each object's text
        std::vector<int> shown; ///< places of the objects that the filter leaves
    };

    void addStation(PointDirectory::Station& given, Korvane::BrowseTypeFlag types);
    void filterStation(Station& station, const QStringMatcher& matcher) const;
    void showFiltered();
    const Station& stationAt(int row) const;
    const PointDirectory::Entry* objectAt(const QModelIndex& index) const;
    QVariant stationCell(const Station& station, int column) const;
    static QVariant objectCell(const PointDirectory::Entry& object, int column);

    std::vector<Station> m_stations;
    std::vector<std::size_t> m_shownStations;
    QString m_filter; ///< folded
    int m_objectCount = 0;
    int m_shownCount = 0;
};
