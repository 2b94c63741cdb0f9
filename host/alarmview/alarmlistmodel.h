#pragma once

#include "host/alarms/alarmmanager.h"
#include "host/alarmview/alarmareas.h"
#include "host/alarmview/alarmcsv.h"
#include "host/alarmview/alarmfilter.h"
#include "host/alarmview/alarmlistorder.h"
#include "host/hostexport.h"
#include "scada/records/alarmdatainfo.h"

#include <QAbstractTableModel>
#include <QTimer>

#include <array>
#include <memory>
#include <unordered_map>
#include <vector>

/// The alarms that stand as a table, filtered and sorted.
///
/// Changes of alarms are gathered and shown together, at most every 100 ms: however many alarms come at once, rows are put
/// in order once. A row keeps its selection wherever it goes. GUI thread only.
class KORVANE_HOST_EXPORT AlarmListModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmListModel)

public:
    enum Role {
        IdRole = Qt::UserRole, ///< number of the occurrence
        ValueRole = AlarmCsv::ValueRole
    };

    static constexpr int gatheringMs = 100;

    /// \param manager not owned, must outlive the model
    /// \param areas whose numbers the filter uses; areas that appear with alarms get numbers behind them
    explicit AlarmListModel(AlarmManager& manager, AlarmAreas areas = AlarmAreas(), QObject* parent = nullptr);
    ~AlarmListModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /// Sorts by a column of AlarmListOrder, rows that are equal there in the list's own order; by that alone with a column
    /// that is none, such as -1.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    const AlarmFilter& filter() const { return m_filter; }
    void setFilter(const AlarmFilter& filter);
    const AlarmAreas& areas() const { return m_areas; }
    /// Takes the text colours of the severities.
    void setPresentation(const AlarmDataInfo& presentation);

    /// The alarm in a row that is shown.
    const ScadaAlarm& alarm(int row) const { return m_rows[static_cast<std::size_t>(row)]->alarm; }
    /// How many alarms are in that state, among those that the filter accepts in whatever state.
    int count(ScadaAlarm::State state) const { return m_counts[static_cast<std::size_t>(state)]; }

    /// Shows what has changed until now.
    void applyChanges();
    /// Reads everything anew: for alarms that the manager was given without telling of each.
    void reload();

Q_SIGNALS:
    /// Rows or counts are others than before.
    void changed();

private:
    using Item = AlarmListOrder::Item;
    using Rows = std::vector<Item*>;

    void take(const AlarmTransition& transition);
    Rows readPending();
    void read(Item& item, const ScadaAlarm& alarm);
    void leave(Item& item);
    bool isShown(const Item& item) const { return item.isInScope && m_filter.accepts(item.alarm, item.area); }
    void show(const Rows& touched);
    Rows untouched(const Rows& touched) const;
    Rows merged(const Rows& touched) const;
    void append(const Rows& added);
    void rearrange(Rows rows);
    void truncate(std::size_t count);
    void tellChanged(const Rows& kept);
    void dropEnded(const Rows& touched);
    QVariant decoration(const Item& item, int column, int role) const;
    QString toolTip(const Item& item) const;

    AlarmManager& m_manager;
    AlarmAreas m_areas;
    AlarmFilter m_filter;
    AlarmListOrder m_order;
    AlarmDataInfo m_presentation;
    std::unordered_map<quint64, std::unique_ptr<Item>> m_items; ///< every alarm that stands
    Rows m_rows;                                                ///< those that are shown, in order
    std::vector<quint64> m_pending;                             ///< numbers of alarms that changed, some more than once
    std::array<int, AlarmFilter::stateCount> m_counts = {};
    QTimer m_timer;
};
