#pragma once

#include "host/control/controlorder.h"
#include "host/control/controlrules.h"
#include "host/hostexport.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <optional>

class AuditLog;
class ControlConfirmer;
class DataService;
class DatabaseManager;
class KorvaneScadaCoreInterface;
class RuntimeDatabase;

/// The one way to the process: every request of an operator, from its checks to its end.
///
/// A request goes through its checks (role, page, area, inhibit mark, selection, value, interlock, reason), then through
/// its confirmation, through the checks once more, then into the audit log and to the source. It ends when the
/// feedback shows the value, when the source refuses, or when the time for it is over, and its end is in the audit log
/// before it is told, or, where that can't be written, as soon as it can. A command that can't be written to the audit log is not sent. Requests wait for the event loop: none
/// goes further before begin() has returned.
class KORVANE_HOST_EXPORT ControlPath : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ControlPath)

public:
    using Operation = ScadaOperationMessage::Operation;
    using Outcome = ScadaOperationMessage::Outcome;
    /// Milliseconds from any moment on, never fewer than before.
    using Clock = std::function<qint64()>;

    static constexpr std::chrono::seconds selectionTime{30};
    static constexpr std::chrono::seconds secondPersonTime{120};
    static constexpr std::chrono::seconds usualFeedbackTime{10};
    static constexpr std::chrono::seconds logPause{1}; ///< before a line that could not be written is tried again
    static constexpr int mostEnded = 10000;            ///< ended requests that are remembered

    struct Services
    {
        RuntimeDatabase& database;
        DataService& data;
        DatabaseManager& users;
        AuditLog& audit;
        KorvaneScadaCoreInterface& hub;
    };

    /// \param services must outlive the path
    /// \param clock the system's monotonic clock unless given
    explicit ControlPath(const Services& services, Clock clock = {}, QObject* parent = nullptr);
    ~ControlPath() override;

    /// Who asks for confirmations; not owned. Without one nothing that needs a confirmation is sent.
    void setConfirmer(ControlConfirmer* confirmer) { m_confirmer = confirmer; }
    /// Says whether the current user may open a page; every page unless set.
    void setPageCheck(std::function<bool(const QString& page)> mayOpen) { m_rules.setPageCheck(std::move(mayOpen)); }
    void setWorkplace(const QString& workplace) { m_workplace = workplace; }
    /// Who operates, as logs state it: the user who is logged on; while security is off the machine's user.
    QString user() const;

    /// \returns the request's number; 0 when there is no such object.
    quint32 begin(const ControlOrder& order);
    /// Gives up a selection, or a request that was not yet sent.
    bool cancel(quint32 requestId);
    /// A second person confirms. He must have given his password since the request began to wait for him.
    bool confirm(quint32 requestId, const QString& secondUser);

    QDateTime selectedUntil(ObjectKey object) const;
    QString selectedBy(ObjectKey object) const;
    QList<ScadaOperationMessage> pending() const;
    ScadaOperationMessage request(quint32 requestId) const;
    std::chrono::milliseconds feedbackTimeout() const { return m_feedbackTimeout; }
    void setFeedbackTimeout(std::chrono::milliseconds timeout);

    /// What time does: feedback that comes or is overdue, selections that run out. To be called once a tick.
    void advance();
    /// What \p user began and was not sent is cancelled, his selections are given up, ended requests are forgotten.
    void endSession(const QString& user);

Q_SIGNALS:
    void progressed(const ScadaOperationMessage& request);
    void finished(const ScadaOperationMessage& request);
    void problemFound(const QString& text);

private:
    struct Request
    {
        ScadaOperationMessage message;
        ControlOrder order;
        double target = 0;        ///< that is sent
        bool isCancelled = false; ///< its end is on its way
        bool awaitsSecond = false;
        quint64 proofsBefore = 0; ///< when it began to wait for the second person
        ObjectKey feedback = {};
        double tolerance = 0;
        std::chrono::milliseconds timeout = usualFeedbackTime;
        qint64 sentMs = 0;     ///< by the system's clock
        qint64 deadlineMs = 0; ///< by the monotonic one; 0 for none
    };
    struct Selection
    {
        quint32 requestId = 0;
        QString user;
        qint64 untilMs = 0; ///< by the monotonic clock
        QDateTime until;    ///< UTC
    };
    void process(quint32 requestId);
    void askUser(quint32 requestId);
    void askNow(quint32 requestId);
    void logEnds();
    bool takeProof(const QString& user, quint64 newerThan);
    void awaitSecond(quint32 requestId);
    void carryOut(quint32 requestId);
    void act(Request& request);
    void select(Request& request);
    void send(Request& request);
    void takeAnswer(quint32 requestId, const QString& refusal);
    bool hasFeedback(const Request& request) const;
    void finish(quint32 requestId, Outcome outcome, const QString& text);
    void tell(Request& request, Outcome outcome, const QString& text);
    bool audit(const ScadaOperationMessage& message);

    ControlRules::Asking asking(const Request& request) const;
    bool passes(Request& request);
    /// Null too for one that was cancelled.
    Request* find(quint32 requestId);
    qint64 nowMs() const;

    Services m_services;
    Clock m_clock;
    ControlConfirmer* m_confirmer = nullptr;
    ControlRules m_rules;
    QString m_workplace;
    std::chrono::milliseconds m_feedbackTimeout = usualFeedbackTime;
    quint32 m_lastId = 0;
    QHash<QString, quint64> m_usedProofs;  ///< by user
    std::map<quint32, Request> m_requests; ///< that have not ended
    std::map<quint32, ScadaOperationMessage> m_ended;
    std::deque<ScadaOperationMessage> m_unlogged; ///< ends that the audit log has yet to take
    qint64 m_nextLogMs = 0;                       ///< when it is tried again
    std::deque<quint32> m_toAsk;                  ///< that wait for the operator's confirmation
    bool m_isAsking = false;
    bool m_isReachable = true; ///< the accounts, since the last tick
    QHash<ObjectKey, Selection> m_selections;
};
