#pragma once

#include "host/control/operatorchanges.h"
#include "host/hostexport.h"
#include "scada/hub/korvanescadaruntimmanagerinterface.h"

#include <QString>

#include <functional>
#include <utility>

class AlarmSystem;
class AuditLog;
class CanvasManager;
class ControlPath;
class DataService;
class DatabaseManager;
class KorvaneScadaCoreInterface;
class RuntimeDatabase;
class ValueSource;

/// The reference host's runtime manager: what operators do to the process goes to the control path, what they ask is
/// answered by whoever knows.
///
/// What changes something needs the role that its kind asks for (AccountRole): commands that of their point; information
/// tags, acknowledging and shelving an operator; everything else a supervisor; and the object's area. What is refused
/// that way is a request that ends so, or gives false.
class KORVANE_HOST_EXPORT RuntimeManager : public KorvaneScadaRuntimManagerInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(RuntimeManager)

public:
    /// All must outlive the manager.
    struct Services
    {
        RuntimeDatabase& database;
        DataService& data;
        AlarmSystem& alarms;
        DatabaseManager& users;
        AuditLog& audit;
        ControlPath& path;
        OperatorChanges& changes;
        CanvasManager& pages;
        KorvaneScadaCoreInterface& hub;
    };
    /// A recording that plays; whatever is not set is not there.
    struct Replay
    {
        std::function<double()> speed;
        std::function<bool(double)> setSpeed;
        std::function<bool(qint64)> seek; ///< milliseconds since 1970-01-01 UTC
    };
    /// Says whether the current user may open a page.
    using PageCheck = std::function<bool(const QString& page)>;

    RuntimeManager(const Services& services, const QString& workplace, QObject* parent = nullptr);
    ~RuntimeManager() override;

    void setReplay(const Replay& replay) { m_replay = replay; }
    /// Whether values come from a simulation and commands reach no process.
    void setSimulated(bool simulated) { m_isSimulated = simulated; }
    void setPageCheck(PageCheck mayOpen) { m_mayOpenPage = std::move(mayOpen); }

    /// While it lives, requests are made from a page: who may not open that page may not operate from it.
    class Origin
    {
    public:
        Origin(RuntimeManager& manager, const QString& page);
        ~Origin();
        Q_DISABLE_COPY(Origin)

    private:
        RuntimeManager& m_manager;
        QString m_before;
    };

    // Control
    quint32 select(ObjectKey object, const QString& reason) override;
    quint32 operate(ObjectKey object, const QVariant& value, const QString& reason) override;
    bool cancel(quint32 requestId) override;
    quint32 setPoint(ObjectKey object, double value, const QString& reason) override;
    quint32 raise(ObjectKey object, const QString& reason) override;
    quint32 lower(ObjectKey object, const QString& reason) override;
    bool confirm(quint32 requestId, const QString& secondUser) override;
    QDateTime selectedUntil(ObjectKey object) const override;
    QString selectedBy(ObjectKey object) const override;
    QList<ScadaOperationMessage> pendingRequests() const override;
    ScadaOperationMessage request(quint32 requestId) const override;
    std::chrono::milliseconds feedbackTimeout() const override;
    void setFeedbackTimeout(std::chrono::milliseconds timeout) override;

    // Manual entry and substitution
    quint32 enterValue(ObjectKey object, const QVariant& value, const QString& reason) override;
    quint32 substitute(ObjectKey object, const QVariant& value, const QString& reason) override;
    quint32 endSubstitution(ObjectKey object, const QString& reason) override;
    QString substitutedBy(ObjectKey object) const override;
    QList<ObjectKey> substitutedObjects() const override;

    // Marks and inhibits
    quint32 setControlInhibited(ObjectKey object, bool inhibited, const QString& reason) override;
    quint32 setAlarmInhibited(ObjectKey object, bool inhibited, const QString& reason) override;
    quint32 setScanInhibited(ObjectKey object, bool inhibited, const QString& reason) override;
    quint32 setInformationTag(ObjectKey object, const QString& text) override;
    QString informationTag(ObjectKey object) const override;
    qint32 tagMarks(ObjectKey object) const override;
    QList<ObjectKey> objectsMarked(ValueMark::Tag mark) const override;

    // Limits
    QVariant statedLimit(ObjectKey object, LimitKind kind) const override;
    quint32 setLimit(ObjectKey object, LimitKind kind, const QVariant& value, const QString& reason) override;
    quint32 resetLimits(ObjectKey object, const QString& reason) override;
    double deadBand(ObjectKey object) const override;
    quint32 setDeadBand(ObjectKey object, double deadBand, const QString& reason) override;

    // Acknowledgement
    bool acknowledgePoint(uint pointId) override;
    int acknowledgePoints(const QList<uint>& pointIds) override;
    int acknowledgePage(const KVCanvasInterface* canvas) override;
    int acknowledgeArea(const QString& area) override;
    bool shelve(ObjectKey object, const QDateTime& until, const QString& reason) override;
    bool unshelve(ObjectKey object, const QString& reason) override;
    void silence() override;

    // Scan and communication of units and lines
    quint32 startScan(ObjectKey unit, const QString& reason) override;
    quint32 stopScan(ObjectKey unit, const QString& reason) override;
    bool isScanning(ObjectKey unit) const override;
    quint32 reconnect(ObjectKey line, const QString& reason) override;
    bool isCommunicating(ObjectKey unitOrLine) const override;
    QDateTime lastCommunicationChange(ObjectKey unitOrLine, bool onLine) const override;

    // Values and fields read back
    QVariant value(ObjectKey object) const override;
    QuorixData record(ObjectKey object) const override;
    QVariant fieldValue(ObjectKey object, DataCode::DataField field) const override;
    QDateTime lastChange(ObjectKey object) const override;
    bool readAgain(ObjectKey object) override;

    // Statistics
    quint32 resetStatistics(ObjectKey object, const QString& reason) override;
    QDateTime statisticsStart(ObjectKey object) const override;

    // Histories and events
    QList<Sample> history(ObjectKey object, const QDateTime& from, const QDateTime& to, int mostSamples) const override;
    QList<Event> events(ObjectKey object, const QDateTime& from, const QDateTime& to, int most) const override;
    QList<ScadaOperationMessage> operations(const QDateTime& from, const QDateTime& to, int most) const override;

    // Alarms counted
    int alarmCount(int severity) const override;
    int unacknowledgedCount(const QString& area) const override;

    // Stations and areas
    QStringList stations() const override;
    QList<ObjectKey> objectsOf(const QString& station) const override;
    QStringList areas() const override;
    QString areaOf(ObjectKey object) const override;

    // Session and rights
    QString currentUser() const override;
    QString workplace() const override;
    bool mayControl(ObjectKey object) const override;
    bool mayOpenPage(const QString& page) const override;
    void endSession() override;

    // Time, simulation and replay
    bool isReplay() const override;
    double replaySpeed() const override;
    bool setReplaySpeed(double speed) override;
    bool seekReplay(const QDateTime& time) override;

    // Health of the sources
    QList<SourceHealth> sources() const override;
    bool isHealthy() const override;

Q_SIGNALS:
    /// What is heard of alarms is to be silent until the next one.
    void silenced();

private:
    using Operation = ScadaOperationMessage::Operation;

    quint32 command(Operation operation, ObjectKey object, const QVariant& value, const QString& reason);
    template <typename Change>
    quint32 change(Operation operation, ObjectKey object, const QVariant& value, const QString& reason, Change change);
    using Inhibit = OperatorChanges::Done (OperatorChanges::*)(ObjectKey, bool, const ScadaOperationMessage&);
    quint32 inhibit(ObjectKey object, bool inhibited, const QString& reason, Inhibit set);
    quint32 setScanning(ObjectKey unit, bool scanning, const QString& reason);
    ValueSource* sourceOfLine(ObjectKey line) const;

    Services m_services;
    QString m_workplace;
    Replay m_replay;
    PageCheck m_mayOpenPage;
    QString m_origin; ///< page from which requests are made now; empty for none
    bool m_isSimulated = false;
};
