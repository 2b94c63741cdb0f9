#pragma once

#include "host/control/operatingstate.h"
#include "host/hostexport.h"
#include "platform/data/scadaoperationmessage.h"
#include "scada/hub/korvanescadaruntimmanagerinterface.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <optional>

class AlarmSystem;
class DataService;
class KorvaneScadaCoreInterface;
class RuntimeDatabase;

/// What operators change about the objects of a plant beside sending commands: kept in the operating state first, then in
/// force. What can't be kept is not done.
///
/// Each operation gives why it was not done; what asks for them has checked rights before.
class KORVANE_HOST_EXPORT OperatorChanges : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(OperatorChanges)

public:
    using Done = tl::expected<void, QString>;
    using Limit = KorvaneScadaRuntimManagerInterface::LimitKind;
    using Kind = OperatingState::Kind;

    /// \param database, data, alarms, state, hub must outlive this
    OperatorChanges(RuntimeDatabase& database, DataService& data, AlarmSystem& alarms, OperatingState& state,
                    KorvaneScadaCoreInterface& hub, QObject* parent = nullptr);
    ~OperatorChanges() override;

    /// Puts what the operating state holds in force, once every object was added and before the first sample.
    /// \returns what could not be, a text each; it stays kept for a list of points that it fits again.
    QStringList restore();

    /// Values were forgotten: what stands in their place is entered anew.
    void renewSubstitutes();

    Done setControlInhibited(ObjectKey object, bool inhibited, const ScadaOperationMessage& by);
    Done setAlarmInhibited(ObjectKey object, bool inhibited, const ScadaOperationMessage& by);
    /// Of a point: its samples are held back and its value is stale. Of a unit: those of all its points.
    Done setScanInhibited(ObjectKey object, bool inhibited, const ScadaOperationMessage& by);
    Done setInformationTag(ObjectKey object, const QString& text, const ScadaOperationMessage& by);
    Done substitute(ObjectKey object, double value, const ScadaOperationMessage& by);
    Done endSubstitution(ObjectKey object);
    /// \param value none takes the limit away
    Done setLimit(ObjectKey object, Limit limit, std::optional<double> value, const ScadaOperationMessage& by);
    Done resetLimits(ObjectKey object);
    Done setDeadBand(ObjectKey object, double deadBand, const ScadaOperationMessage& by);
    Done resetStatistics(ObjectKey object, const ScadaOperationMessage& by);

    const OperatingState& state() const { return m_state; }
    /// Every object that carries a mark of ValueMark::Tag.
    QList<ObjectKey> objectsMarked(qint32 mark) const;

private:
    Done keep(ObjectKey object, Kind kind, const QString& value, const ScadaOperationMessage& by);
    Done setFlag(ObjectKey object, Kind kind, bool isSet, const ScadaOperationMessage& by);
    void showMarks(ObjectKey object);
    void holdBack(ObjectKey object, bool held);
    void enterSubstitute(ObjectKey object, double value);
    Done applyLimits(ObjectKey object);
    void restoreObject(ObjectKey object, QStringList& problems);
    QList<ObjectKey> pointsOf(ObjectKey unit) const;

    RuntimeDatabase& m_database;
    DataService& m_data;
    AlarmSystem& m_alarms;
    OperatingState& m_state;
    KorvaneScadaCoreInterface& m_hub;
};
