#pragma once

#include "host/hostexport.h"
#include "host/runtime/samplehistory.h"
#include "host/sources/valuesource.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/mwdatadepartment.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <tl/expected.hpp>
#include <tsl/robin_set.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class CanvasScadaActionManagerInterface;
class KorvaneScadaCoreInterface;
class RuntimeDatabase;
class RuntimeStore;

/// The reference host's data service: takes samples from the sources, every one of them for the runtime database, and
/// gives pages the newest record of each object once a tick.
///
/// A source that failed takes its points with it, which carry the mark CommunicationFailed until it delivers again. Once
/// all sources have failed, pages get one batch without points, and the next one that has some ends that. A tick without
/// point values sends nothing: records of units and lines wait for one that has. A source that came to its end has not
/// failed: values hold, and go stale by their own time limits.
class KORVANE_HOST_EXPORT DataService : public QObject, public DataServiceInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(DataService)

public:
    struct Figures
    {
        quint64 samples = 0;        ///< taken by the database
        quint64 ignoredSamples = 0; ///< of unknown objects, or older than what was there
        quint64 batches = 0;        ///< sent to pages
        quint64 records = 0;        ///< in these
        qint64 newestSampleMs = 0;  ///< time of the newest sample in the newest batch; 0 when it holds none
    };

    /// What came from one source.
    struct SourceFigures
    {
        quint64 samples = 0;
        quint64 errors = 0;  ///< failures and whatever it had to skip
        qint64 newestMs = 0; ///< time of the newest sample, since 1970-01-01 UTC; 0 before the first
        QString lastError = {};
    };

    /// \param database, hub not owned, must outlive the service
    DataService(RuntimeDatabase& database, KorvaneScadaCoreInterface& hub, QObject* parent = nullptr);
    ~DataService() override;

    void addSource(std::unique_ptr<ValueSource> source);
    const std::vector<std::unique_ptr<ValueSource>>& sources() const { return m_sources; }
    /// What came from the source at that place of sources().
    const SourceFigures& sourceFigures(std::size_t place) const { return *m_sourceFigures[place]; }
    /// The source that commands to \p object go through; null when none takes them.
    ValueSource* commandSource(ObjectKey object) const;
    /// The source that delivers \p object, the first of them; null for none.
    ValueSource* sourceOf(ObjectKey object) const;

    /// Holds the samples of \p object back, or takes them again, beginning with the newest that was held back unless it
    /// is stale by then or its source has failed. Each
    /// hold must be ended by who began it: an object that is held for two reasons stays held until both are gone.
    void hold(ObjectKey object);
    void release(ObjectKey object);
    bool isHeld(ObjectKey object) const { return m_held.find(object) != m_held.end(); }
    /// Takes a sample that no source delivered, held back or not; with the present one's time if that is younger.
    void enter(const Sample& sample);
    /// Pages and listeners get the present record of \p object with the next tick.
    void noteChanged(ObjectKey object);

    /// The newest values of each object, of this run of the program.
    const SampleHistory& history() const { return m_history; }

    /// Where samples and statistics are kept beyond the end of the program; not owned, null for nowhere.
    void setStore(RuntimeStore* store) { m_store = store; }

    /// \param tick 10 ms to 1 s; held to that
    void setTick(std::chrono::milliseconds tick);
    std::chrono::milliseconds tickInterval() const { return m_timer.intervalAsDuration(); }

    /// Starts the sources and the ticks.
    void start();
    void stop();
    bool isRunning() const { return m_timer.isActive(); }

    /// One tick, now: what the timer does.
    void tick();

    /// \param page not owned; must be removed before it goes
    void addPage(CanvasScadaActionManagerInterface* page);
    void removePage(CanvasScadaActionManagerInterface* page);

    /// The batches that bring a page up to date: the present records of \p objects and, while all sources have failed, a
    /// batch that says so.
    std::vector<MwDataDepartment> presentRecords(const QList<ObjectKey>& objects) const;

    /// Whether all sources have failed.
    bool isFailed() const { return m_isFailed; }
    const Figures& figures() const { return m_figures; }
    /// Points whose value can't be relied on now: never seen, invalid, stale or without communication. Those whose values
    /// are entered by hand don't count.
    int failedPoints() const;

    QVariant historyValue(ObjectKey object, DataCode::DataField field) override;
    bool queryUserAccounts(const QString& sql, QList<EUserAccount>& accounts) override;
    /// Answers queries for user accounts; there are none unless it is set.
    using AccountQuery = std::function<tl::expected<QList<EUserAccount>, QString>(const QString& sql)>;
    void setAccountQuery(AccountQuery query) { m_accountQuery = std::move(query); }

Q_SIGNALS:
    /// A batch was passed to the pages.
    void batchSent();
    /// The present records of these objects are others since the last batch; told with each batch.
    void objectsChanged(const std::vector<ObjectKey>& objects);
    /// A source answered a command (ValueSource::commandAnswered).
    void commandAnswered(quint32 requestId, const QString& refusal);
    void ticked();
    /// Something went wrong that does not stop the service; \p text says what, where and what is done instead.
    void problemFound(const QString& text);

private:
    void takeFrom(SourceFigures& figures, const std::vector<Sample>& samples);
    void take(const std::vector<Sample>& samples);
    void takeAsNewest(Sample sample);
    void tellChanged();
    bool isTooOld(const Sample& sample) const;
    void heedSource(ValueSource& source);
    void tellOnce(const QString& problem);
    void send();
    qint64 nowMs() const;

    RuntimeDatabase& m_database;
    KorvaneScadaCoreInterface& m_hub;
    RuntimeStore* m_store = nullptr;
    AccountQuery m_accountQuery;
    struct Hold
    {
        int count = 0;
        std::optional<Sample> newest; ///< that was held back
    };

    std::vector<std::unique_ptr<ValueSource>> m_sources;
    std::vector<std::unique_ptr<SourceFigures>> m_sourceFigures; ///< parallel to the sources
    QHash<ObjectKey, Hold> m_held;
    std::vector<Sample> m_taken; ///< scratch, of what was not held back
    SampleHistory m_history;
    std::vector<CanvasScadaActionManagerInterface*> m_pages;
    QTimer m_timer;
    tsl::robin_set<quint32, MwDataDepartment::IdHash> m_newPoints;
    std::vector<ObjectKey> m_newOthers; ///< units and lines
    MwDataDepartment m_batch;
    Figures m_figures;
    QString m_toldProblem;
    qint64 m_newestMs = 0;
    bool m_isTicking = false;
    bool m_isFailed = false;
    bool m_isFailureTold = false;
};
