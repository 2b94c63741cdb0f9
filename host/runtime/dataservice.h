#pragma once

#include "host/hostexport.h"
#include "host/sources/valuesource.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/mwdatadepartment.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <tl/expected.hpp>
#include <tsl/robin_set.h>

#include <chrono>
#include <functional>
#include <memory>
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

    /// \param database, hub not owned, must outlive the service
    DataService(RuntimeDatabase& database, KorvaneScadaCoreInterface& hub, QObject* parent = nullptr);
    ~DataService() override;

    void addSource(std::unique_ptr<ValueSource> source);
    const std::vector<std::unique_ptr<ValueSource>>& sources() const { return m_sources; }
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
    /// Objects whose value can't be relied on now: never seen, invalid, stale or without communication.
    int failedPoints() const;

    QVariant historyValue(ObjectKey object, DataCode::DataField field) override;
    bool queryUserAccounts(const QString& sql, QList<EUserAccount>& accounts) override;
    /// Answers queries for user accounts; there are none unless it is set.
    using AccountQuery = std::function<tl::expected<QList<EUserAccount>, QString>(const QString& sql)>;
    void setAccountQuery(AccountQuery query) { m_accountQuery = std::move(query); }

Q_SIGNALS:
    /// A batch was passed to the pages.
    void batchSent();
    void ticked();
    /// Something went wrong that does not stop the service; \p text says what, where and what is done instead.
    void problemFound(const QString& text);

private:
    void take(const std::vector<Sample>& samples);
    void note(ObjectKey object);
    void heedSource(ValueSource& source);
    void tellOnce(const QString& problem);
    void send();
    qint64 nowMs() const;

    RuntimeDatabase& m_database;
    KorvaneScadaCoreInterface& m_hub;
    RuntimeStore* m_store = nullptr;
    AccountQuery m_accountQuery;
    std::vector<std::unique_ptr<ValueSource>> m_sources;
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
