#pragma once

#include "host/alarmview/alarmcsv.h"
#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"
#include "host/summary/summarycolumns.h"
#include "host/summary/summaryfilter.h"

#include <QAbstractTableModel>
#include <QTimeZone>
#include <QTimer>

#include <tsl/robin_map.h>

#include <memory>
#include <vector>

class SummaryArrangement;
class SummaryRanks;

/// Every point of the runtime database as a row, filtered and sorted. Cells are read from the database when they are asked
/// for, so only what is on the screen costs anything.
///
/// What is shown follows the samples that noteChanged() tells of within gatheringMs. Rows move and come and go less often,
/// at most once in orderMs, and only those of the points that were told of: values stay readable, and a plant of any size
/// keeps the user interface free. What changes without a sample, such as a mean, moves its row with refresh().
///
/// Whatever concerns all points, a new filter, another column to sort by, refresh(), is worked out in slices between which
/// events are handled; the rows stay as they were until it is done. An inactive model, as it is made, does nothing at all.
/// GUI thread only.
class KORVANE_HOST_EXPORT SummaryModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY(SummaryModel)

public:
    enum Role { ValueRole = AlarmCsv::ValueRole };

    /// What the work on order and filter came to.
    struct Figures
    {
        qint64 slices = 0;   ///< of work on all points
        qint64 merges = 0;   ///< of points that were told of, into the others
        int longestRead = 0; ///< points read at once
    };

    static constexpr int gatheringMs = 100;
    static constexpr int orderMs = 1000;
    /// Points whose rows are moved at once; when more were told of, all are sorted anew.
    static constexpr int mostMerged = 16384;

    /// \param database not owned, must outlive the model
    /// \param zone whose clocks times are shown by
    SummaryModel(const RuntimeDatabase& database, const QTimeZone& zone, QObject* parent = nullptr);
    ~SummaryModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Sorts by a column of SummaryColumns, numbers as numbers, texts in whatever case; rows that are equal there follow each
    /// other as in the list of points, which is the order by a column that is none, such as -1.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    QStringList mimeTypes() const override;
    /// The point of the first of \p indexes as KVPointMimeData.
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::LinkAction; }

    const SummaryFilter& filter() const { return m_filter; }
    void setFilter(const SummaryFilter& filter);

    /// Has the model follow, from what is there now on, or rest.
    void setActive(bool isActive);
    bool isActive() const { return m_isActive; }
    /// Keeps rows where they are, whatever samples bring; refresh(), filter and sorting still move them.
    void setOrderHeld(bool isHeld);
    bool isOrderHeld() const { return m_isHeld; }
    /// Brings rows into order and filters them anew, by all that is there now.
    void refresh();
    /// Moves the rows of the points that were told of now, unless the order is held or all is being worked out.
    void applyChanges();
    /// Whether filter or order is being worked out.
    bool isArranging() const { return m_arrangement != nullptr; }

    ObjectKey point(int row) const { return m_points[static_cast<std::size_t>(m_rows[static_cast<std::size_t>(row)])]; }
    /// Where a point is shown; -1 for one that is not.
    int rowOf(ObjectKey point) const;
    /// The points that are shown, in order.
    std::vector<ObjectKey> shownPoints() const;
    /// All points, shown or not.
    const std::vector<ObjectKey>& points() const { return m_points; }
    const RuntimeDatabase& database() const { return m_database; }
    const Figures& figures() const { return m_figures; }

public Q_SLOTS:
    /// Values or marks of these objects changed; those that are no points of the database are left out.
    void noteChanged(const std::vector<ObjectKey>& objects);

Q_SIGNALS:
    /// Rows are about to come, move or go.
    void aboutToArrange();
    /// Rows came, moved or went.
    void arranged();
    /// isArranging(), isOrderHeld() or the number of rows is another than before.
    void stateChanged();

private:
    using Rows = std::vector<int>; ///< places in m_points

    void reload();
    void startArranging();
    void arrangeOn();
    void endArranging();
    bool isOrderLive() const { return m_filter.isLive() || SummaryColumns::isLive(m_column); }
    void orderSoon();
    Rows takePending();
    void merge();
    bool isShown(int place) const;
    void apply(Rows rows);
    void append(const Rows& added);
    void rearrange(Rows rows);
    void truncate(std::size_t count);
    void tellChanged();
    QVariant appearance(ObjectKey point, int column, int role) const;

    const RuntimeDatabase& m_database;
    QTimeZone m_zone;
    std::vector<ObjectKey> m_points; ///< as the database lists them
    tsl::robin_map<qint32, int> m_places;
    SummaryFilter m_filter;
    int m_column = -1;
    bool m_isDescending = false;
    bool m_isActive = false;
    bool m_isHeld = false;

    Rows m_rows;                   ///< that are shown, in order
    std::vector<int> m_rowOf;      ///< of each point; -1 for none
    std::vector<double> m_keys;    ///< what each point was sorted by last
    std::vector<bool> m_scope;     ///< of each point: the filter accepts it whatever its marks
    std::vector<bool> m_isPending; ///< of each point: in m_pending
    Rows m_pending;                ///< points that were told of since rows moved last
    int m_firstChanged = -1;       ///< rows to show anew
    int m_lastChanged = -1;
    std::unique_ptr<SummaryRanks> m_ranks;
    std::unique_ptr<SummaryArrangement> m_arrangement; ///< while one is worked out
    QTimer m_sliceTimer;
    QTimer m_showTimer;
    QTimer m_orderTimer;
    Figures m_figures;
};
