#pragma once

#include "host/alarms/alarmsystem.h"
#include "host/core/scadacore.h"
#include "host/runtime/runtimedatabase.h"
#include "tests/support/testcore.h"
#include "tests/support/testservices.h"

#include <QDateTime>
#include <QString>

/// A plant whose alarms come as a test states them, at the time that it states, with somebody at work.
class AlarmPlant
{
public:
    AlarmPlant()
    {
        hub.setRuntimeManager(&m_runtime);
        if (const auto started = system.start({}); !started)
            qFatal("%s", qPrintable(started.error()));
    }

    AlarmManager& manager() { return system.manager(); }
    void passSeconds(int seconds) { now = now.addSecs(seconds); }

    /// An alarm that was not raised yet, of a point that has no other: "P1" with the first call.
    ScadaAlarm alarmOf(int severity, const QString& message, const QString& area = {})
    {
        ScadaAlarm alarm;
        alarm.objectType = Korvane::ScadaObjectType::AnalogPoint;
        alarm.objectId = Korvane::firstAnalogPointId + ++m_points;
        alarm.tag = QStringLiteral("P%1").arg(m_points);
        alarm.area = area;
        alarm.severity = severity;
        alarm.cause = ScadaAlarm::Cause::High;
        alarm.message = message;
        alarm.raised = now;
        return alarm;
    }
    quint64 raise(int severity, const QString& message, const QString& area = {})
    {
        return manager().raiseAlarm(alarmOf(severity, message, area));
    }
    ObjectKey objectOf(quint64 id)
    {
        const ScadaAlarm alarm = manager().alarm(id);
        return {alarm.objectType, alarm.objectId};
    }
    ScadaAlarm::State stateOf(quint64 id) { return manager().alarm(id).state; }

    QDateTime now{QDate(2026, 3, 1), QTime(8, 0), Qt::UTC};

private:
    class Runtime : public TestScadaRuntimManager
    {
    public:
        Runtime() : TestScadaRuntimManager(nullptr) {}
        QString currentUser() const override { return QStringLiteral("kim"); }
    };

    int m_points = 0;
    Runtime m_runtime;
    TestCore m_core;

public:
    ScadaCore hub{&m_core, [this] { return now; }};
    RuntimeDatabase database;
    AlarmSystem system{database, hub};
};
