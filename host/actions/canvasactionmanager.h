#pragma once

#include "host/hostexport.h"
#include "platform/data/mwdatadepartment.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"

#include <QSet>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

class KorvaneScadaCoreInterface;
class Shape;
class TagAction;

/// The reference host's action manager of one page.
///
/// Each batch is passed to every action, in effect: an action is skipped when none of its targets' objects is in the
/// batch and nothing else about the batch could concern it. Actions of other hosts, with targets that properties or
/// logging feed, and with an overlay that the next batch may take away, are never skipped; nor is any when the data source
/// fails or comes back.
class KORVANE_HOST_EXPORT CanvasActionManager : public CanvasScadaActionManagerInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(CanvasActionManager)

public:
    /// Gives the batches that bring a page up to date that was out of sight: the present records of \p objects and,
    /// while the data source has failed, a batch that says so.
    using PresentRecords = std::function<std::vector<MwDataDepartment>(const QList<ObjectKey>& objects)>;

    /// What changed an action last.
    struct LastChange
    {
        quint64 batch = 0; ///< its number, from 1; 0 for a property or a single record
        QDateTime time;    ///< the hub's; invalid when it has not changed since the page was opened
    };

    /// \param hub not owned, must outlive the manager; null for a page without services
    CanvasActionManager(KVCanvasInterface* canvas, KorvaneScadaCoreInterface* hub, QObject* parent = nullptr);
    ~CanvasActionManager() override;

    void setPresentRecords(const PresentRecords& records) { m_presentRecords = records; }
    /// Batches taken since the page was opened.
    quint64 batchCount() const { return m_batchCount; }
    LastChange lastChange(const ScadaTagActionInterface* action) const;
    /// Values pushed onto shapes since the page was opened.
    quint64 updateCount() const { return m_updateCount; }

    // Page
    KVCanvasInterface* canvas() const override { return m_canvas; }
    void open(ScadaRuntimeInterface* runtime) override;
    void close() override;
    bool isOpen() const override { return m_state == State::Open; }
    void setShown(bool shown) override;
    bool isShown() const override { return m_isShown; }

    // Actions
    void addAction(ScadaTagActionInterface* action) override;
    bool takeAction(ScadaTagActionInterface* action) override;
    void removeActionsOf(const TesselInterface* shape) override;
    void clear() override;
    QList<ScadaTagActionInterface*> actions() const override;
    QList<ScadaTagActionInterface*> actionsOf(const TesselInterface* shape) const override;
    QList<ScadaTagActionInterface*> actionsBoundTo(ObjectKey object) const override;
    bool moveAction(const TesselInterface* shape, int from, int to) override;

    // Tags
    QStringList tagStrings() const override;
    QList<ObjectTarget*> targets() const override;
    int replaceText(const QString& before, const QString& after) override;
    int replacePointNames(const QList<QPair<QString, QString>>& renames) override;
    QList<ScadaTagActionInterface*> actionsNaming(const QString& tag) const override;
    QList<ObjectKey> boundObjects() const override;

    // Data
    void takeBatch(const MwDataDepartment& batch) override;
    void takeRecord(ObjectKey object, QuorixData& record) override;
    void takeProperty(const QString& name, const QVariant& value) override;
    void refreshAll() override;
    QDateTime lastBatchTime() const override { return m_lastBatchTime; }
    quint64 changeCount(const ScadaTagActionInterface* action) const override;

    // Quality
    void setOverlayKept(bool kept) override;
    bool isOverlayKept() const override { return m_isOverlayKept; }
    void setOverlayShown(bool shown) override;
    bool isSourceFailed() const override { return m_isSourceFailed; }
    QList<ObjectTarget*> unresolvedTargets() const override;

    // Shapes
    bool takesMouse(const TesselInterface* shape) const override;
    void geometryChanged(const TesselInterface* shape, const QTransform& transform) override;
    void timeOut() override;

    // Alarms
    void requestAlarm(const ScadaAlarm& alarm, const QList<ScadaTagActionInterface*>& concerned) override;
    QList<ScadaAlarm> pendingAlarms() const override { return m_pendingAlarms; }
    void setAlarmResult(int result) override;

private:
    template <typename Value>
    using IdMap = tsl::robin_map<quint32, Value, MwDataDepartment::IdHash>;

    enum class State {
        New,    ///< waits for open()
        Open,   ///< takes batches
        Closed, ///< waits for its end
    };
    struct Entry
    {
        std::unique_ptr<ScadaTagActionInterface> action;
        TagAction* known = nullptr;       ///< the action where it is one of the host's
        TesselInterface* shape = nullptr; ///< that drawn is
        Shape* drawn = nullptr;           ///< the action's shape where it is one of the host's
        quint64 changes = 0;
        quint64 lastBatch = 0;
        QDateTime lastTime; ///< invalid before the first
    };

    void makeIndex();
    void indexTargets(int place);
    IdMap<std::vector<int>>* indexOf(Korvane::ScadaObjectType type);
    const IdMap<std::vector<int>>* indexOf(Korvane::ScadaObjectType type) const;
    bool isIndexCurrent() const;
    void collectConcerned(const MwDataDepartment& batch);
    void pass(int place, const MwDataDepartment& batch, bool isTurn);
    void owe(int place);
    Entry& entryAt(int place) { return m_entries[static_cast<std::size_t>(place)]; }
    int entryCount() const { return static_cast<int>(m_entries.size()); }
    void push(Entry& entry, bool force);
    void countPush(Entry& entry);
    void stamp(Entry& entry, quint64 batch);
    QDateTime hubTime() const;
    void start(Entry& entry);
    Shape* drawnShape(Entry& entry);
    template <typename Change>
    void watchOverlay(Entry& entry, const Change& change);
    template <typename Doomed>
    void removeIf(const Doomed& isDoomed);
    static void dropOverlay(ScadaTagActionInterface& action);
    static QList<ObjectTarget*> targetsOf(ScadaTagActionInterface& action);
    Entry* find(const ScadaTagActionInterface* action);
    const Entry* find(const ScadaTagActionInterface* action) const;
    void bringUpToDate();

    /// Places of the actions bound to each object, by the three families of a batch. Most objects have one action.
    struct Index
    {
        IdMap<std::vector<int>> points;
        IdMap<std::vector<int>> rtus;
        IdMap<std::vector<int>> channels;
        std::vector<int> always; ///< those that no batch may skip
        quint64 bindings = 0;    ///< ObjectTagValue::bindingChanges() it was made at
        bool isMade = false;
    };

    KVCanvasInterface* m_canvas;
    KorvaneScadaCoreInterface* m_hub;
    PresentRecords m_presentRecords;
    std::deque<Entry> m_entries; ///< an action may add others while it runs: entries stay where they are
    QSet<const ScadaTagActionInterface*> m_known; ///< the actions of the entries
    Index m_index;
    /// Actions that the next batch may not skip: a single record left an overlay that it decides on, or they hold a value
    /// that is never the same as itself.
    std::vector<int> m_owedABatch;
    std::vector<int> m_concerned;
    std::vector<quint64> m_foundIn; ///< the number of the batch that each place was last found to be concerned by
    QList<ScadaAlarm> m_pendingAlarms;
    QDateTime m_lastBatchTime;
    quint64 m_batchCount = 0;
    quint64 m_updateCount = 0;
    State m_state = State::New;
    bool m_isShown = true;
    bool m_isOverlayKept = true;
    bool m_isSourceFailed = false;
    bool m_isPassedToAll = true; ///< the next batch is: the source failed, came back or overlays began to be kept
};
