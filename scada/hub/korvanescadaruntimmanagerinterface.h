#pragma once

#include "platform/data/datacode.h"
#include "platform/data/objectkey.h"
#include "platform/data/scadaalarm.h"
#include "platform/data/scadaoperationmessage.h"
#include "platform/data/valuemarks.h"
#include "scada/scadaexport.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <chrono>

class KVCanvasInterface;
class QuorixData;

/// The runtime manager: everything an operator can do to the process and ask of it. Implemented by the host.
///
/// Control is the one way by which a value is written to the process; whatever checks a host makes, it makes here.
/// Operations that give a quint32 make a request of that number: its progress comes with remoteControled() and its end
/// with remoteControlFinished(), also when it was refused at once, but never before the operation has returned its
/// number. 0 means that there is no such object. A reason may be empty where the object does not ask for one. All
/// others are done, or refused, when they return.
class KORVANE_SCADA_EXPORT KorvaneScadaRuntimManagerInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScadaRuntimManagerInterface)

public:
    explicit KorvaneScadaRuntimManagerInterface(QObject* parent);
    ~KorvaneScadaRuntimManagerInterface() override;

    /// A limit of an analog point.
    enum class LimitKind { LowLow, Low, High, HighHigh };

    /// One stored value.
    struct Sample
    {
        QDateTime time; ///< UTC
        QVariant value;
        qint32 quality = 0; ///< bits of ValueMark::Quality
    };

    /// One line of the event log.
    struct Event
    {
        QDateTime time; ///< UTC
        ObjectKey object;
        QString text;
        QString user; ///< empty for what no operator did
    };

    /// How a source of values is.
    struct SourceHealth
    {
        QString name;
        bool isConnected = false;
        QDateTime lastSample; ///< UTC; invalid before the first
        quint64 sampleCount = 0;
        quint64 errorCount = 0;
        QString lastError;
    };

    // Control

    /// Reserves \p object for this operator, as the first of two steps.
    virtual quint32 select(ObjectKey object, const QString& reason) = 0;
    /// Sends a command, as the second step where the object asks for two.
    virtual quint32 operate(ObjectKey object, const QVariant& value, const QString& reason) = 0;
    /// Gives a selection, or a request that was not yet sent, up; false when there is none of that number, or it was
    /// sent.
    virtual bool cancel(quint32 requestId) = 0;
    /// Sends a setpoint in the point's engineering unit.
    virtual quint32 setPoint(ObjectKey object, double value, const QString& reason) = 0;
    /// Sends one step up.
    virtual quint32 raise(ObjectKey object, const QString& reason) = 0;
    /// Sends one step down.
    virtual quint32 lower(ObjectKey object, const QString& reason) = 0;
    /// Confirms a request that waits for a second person; false when it does not, or the person may not.
    virtual bool confirm(quint32 requestId, const QString& secondUser) = 0;
    /// When the selection of \p object runs out, in UTC; invalid when nobody has selected it.
    virtual QDateTime selectedUntil(ObjectKey object) const = 0;
    /// Who has selected \p object; empty when nobody has.
    virtual QString selectedBy(ObjectKey object) const = 0;
    /// Requests that have not ended, in the order in which they were made.
    virtual QList<ScadaOperationMessage> pendingRequests() const = 0;
    /// A request as it stands, ended ones included until the session ends; one with number 0 when there is none.
    virtual ScadaOperationMessage request(quint32 requestId) const = 0;
    /// How long a command may wait for its read-back.
    virtual std::chrono::milliseconds feedbackTimeout() const = 0;
    /// Counts for requests made from then on; must be positive.
    virtual void setFeedbackTimeout(std::chrono::milliseconds timeout) = 0;

    // Manual entry and substitution

    /// Enters the value of a point that no source supplies.
    virtual quint32 enterValue(ObjectKey object, const QVariant& value, const QString& reason) = 0;
    /// Puts a value in the place of the source's, marked as substituted, until endSubstitution().
    virtual quint32 substitute(ObjectKey object, const QVariant& value, const QString& reason) = 0;
    /// Puts the source's value back in its place.
    virtual quint32 endSubstitution(ObjectKey object, const QString& reason) = 0;
    /// Who has substituted the value; empty when it is the source's.
    virtual QString substitutedBy(ObjectKey object) const = 0;
    /// Every object with a substituted value.
    virtual QList<ObjectKey> substitutedObjects() const = 0;

    // Marks and inhibits

    /// Inhibits commands to \p object, or allows them again.
    virtual quint32 setControlInhibited(ObjectKey object, bool inhibited, const QString& reason) = 0;
    /// Inhibits alarms of \p object, or allows them again.
    virtual quint32 setAlarmInhibited(ObjectKey object, bool inhibited, const QString& reason) = 0;
    /// Stops taking values of one point from its source, or goes on; the unit itself is asked on.
    virtual quint32 setScanInhibited(ObjectKey object, bool inhibited, const QString& reason) = 0;
    /// Hangs an information tag on \p object; an empty text takes it off.
    virtual quint32 setInformationTag(ObjectKey object, const QString& text) = 0;
    /// Text of the information tag; empty without one.
    virtual QString informationTag(ObjectKey object) const = 0;
    /// Bits of ValueMark::Tag.
    virtual qint32 tagMarks(ObjectKey object) const = 0;
    /// Every object that carries \p mark.
    virtual QList<ObjectKey> objectsMarked(ValueMark::Tag mark) const = 0;

    // Limits

    /// The limit that the point list states, in the engineering unit; invalid for none. The one in force is its field.
    virtual QVariant statedLimit(ObjectKey object, LimitKind kind) const = 0;
    /// Changes a limit; an invalid value takes it away.
    virtual quint32 setLimit(ObjectKey object, LimitKind kind, const QVariant& value, const QString& reason) = 0;
    /// Puts the limits of the point list back in force.
    virtual quint32 resetLimits(ObjectKey object, const QString& reason) = 0;
    /// How far a value must come back behind a limit before the alarm returns, in the engineering unit; 0 for at once.
    virtual double deadBand(ObjectKey object) const = 0;
    /// Must not be negative.
    virtual quint32 setDeadBand(ObjectKey object, double deadBand, const QString& reason) = 0;

    // Acknowledgement

    /// Acknowledges the alarms of one point; false when none waited. Then alarmAcked() follows.
    virtual bool acknowledgePoint(uint pointId) = 0;
    /// Acknowledges the alarms of several points; the number that waited. Then alarmSequenceAcked() follows.
    virtual int acknowledgePoints(const QList<uint>& pointIds) = 0;
    /// Acknowledges the alarms of every point on a page; the number that waited. Then alarmSequenceAcked() follows.
    virtual int acknowledgePage(const KVCanvasInterface* canvas) = 0;
    /// Acknowledges every alarm of an area, of all areas with an empty name; the number that waited. Then
    /// alarmSequenceAcked() follows.
    virtual int acknowledgeArea(const QString& area) = 0;
    /// Shelves the alarms of \p object until a time in UTC.
    virtual bool shelve(ObjectKey object, const QDateTime& until, const QString& reason) = 0;
    /// Ends shelving before its time; false when it was not shelved.
    virtual bool unshelve(ObjectKey object, const QString& reason) = 0;
    /// Stops sound and speech until the next alarm.
    virtual void silence() = 0;

    // Scan and communication of units and lines

    /// Goes on asking a unit for its values.
    virtual quint32 startScan(ObjectKey unit, const QString& reason) = 0;
    /// Asks a unit no more; its points turn stale.
    virtual quint32 stopScan(ObjectKey unit, const QString& reason) = 0;
    /// Whether a unit is asked, be it reached or not.
    virtual bool isScanning(ObjectKey unit) const = 0;
    /// Closes a line's connection and opens it again.
    virtual quint32 reconnect(ObjectKey line, const QString& reason) = 0;
    /// Whether the newest exchange with a unit or on a line went well.
    virtual bool isCommunicating(ObjectKey unitOrLine) const = 0;
    /// When a unit or line last came on line, or went off it, in UTC; invalid when it never did.
    virtual QDateTime lastCommunicationChange(ObjectKey unitOrLine, bool onLine) const = 0;

    // Values and fields read back

    /// The newest value; invalid before the first.
    virtual QVariant value(ObjectKey object) const = 0;
    /// The newest record; without members before the first.
    virtual QuorixData record(ObjectKey object) const = 0;
    /// Any field, whoever supplies it; invalid when the object does not have it.
    virtual QVariant fieldValue(ObjectKey object, DataCode::DataField field) const = 0;
    /// When the value last became another one, in UTC; invalid before the first.
    virtual QDateTime lastChange(ObjectKey object) const = 0;
    /// Asks the source for the value anew; it comes with a batch.
    virtual bool readAgain(ObjectKey object) = 0;

    // Statistics

    /// Starts the running statistics of \p object anew.
    virtual quint32 resetStatistics(ObjectKey object, const QString& reason) = 0;
    /// Since when the total statistics run, in UTC.
    virtual QDateTime statisticsStart(ObjectKey object) const = 0;

    // Histories and events

    /// Stored values of a time span in UTC, both ends included, oldest first; thinned evenly to \p mostSamples where
    /// there are more.
    virtual QList<Sample> history(ObjectKey object, const QDateTime& from, const QDateTime& to,
                                  int mostSamples) const = 0;
    /// Lines of the event log of a time span in UTC, newest first, at most \p most; an invalid \p object stands for
    /// all.
    virtual QList<Event> events(ObjectKey object, const QDateTime& from, const QDateTime& to, int most) const = 0;
    /// Operators' actions of a time span in UTC, newest first, at most \p most.
    virtual QList<ScadaOperationMessage> operations(const QDateTime& from, const QDateTime& to, int most) const = 0;

    // Alarms counted

    /// Alarms of a severity that have not returned to normal.
    virtual int alarmCount(int severity) const = 0;
    /// Alarms of an area that wait for an operator; of all areas with an empty name.
    virtual int unacknowledgedCount(const QString& area) const = 0;

    // Stations and areas

    /// Names of the stations, in the order of the point list.
    virtual QStringList stations() const = 0;
    /// Points, units and lines of a station, in the order of the point list.
    virtual QList<ObjectKey> objectsOf(const QString& station) const = 0;
    /// Names of the areas of responsibility that the current user sees.
    virtual QStringList areas() const = 0;
    /// The area of responsibility of \p object; empty for one of none.
    virtual QString areaOf(ObjectKey object) const = 0;

    // Session and rights

    /// Who operates; empty while nobody is logged in.
    virtual QString currentUser() const = 0;
    /// The name of this operator's workplace, as logs state it.
    virtual QString workplace() const = 0;
    /// Whether the current user may send commands to \p object.
    virtual bool mayControl(ObjectKey object) const = 0;
    /// Whether the current user may see a page; true for every page while security is off.
    virtual bool mayOpenPage(const QString& page) const = 0;
    /// Logs the current user out; selections are given up.
    virtual void endSession() = 0;

    // Time, simulation and replay

    /// Whether values come from a recording or a simulation and commands reach no process.
    virtual bool isReplay() const = 0;
    /// How many times faster than it was recorded a replay runs; 0 holds it.
    virtual double replaySpeed() const = 0;
    /// False for a negative speed, and where there is no replay.
    virtual bool setReplaySpeed(double speed) = 0;
    /// Goes to a time of the recording, in UTC; false outside of it or without one.
    virtual bool seekReplay(const QDateTime& time) = 0;

    // Health of the sources

    /// Every source of the project, in its order.
    virtual QList<SourceHealth> sources() const = 0;
    /// Whether every source is connected and delivers.
    virtual bool isHealthy() const = 0;

Q_SIGNALS:
    /// A request came further. Spelled so: connections by text match it.
    void remoteControled(const ScadaOperationMessage& d);
    /// A request ended.
    void remoteControlFinished(const ScadaOperationMessage& d);
    /// The alarms of a point were acknowledged.
    void alarmAcked(uint pid);
    /// The alarms of several points were acknowledged at once.
    void alarmSequenceAcked(QList<uint> points);
};
