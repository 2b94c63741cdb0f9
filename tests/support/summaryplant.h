#pragma once

#include "host/runtime/runtimedatabase.h"
#include "platform/data/scadaobjecttype.h"

#include <QDateTime>
#include <QString>

#include <vector>

/// A runtime database whose points and samples come as a test states them, at the time that it states.
class SummaryPlant
{
public:
    SummaryPlant()
    {
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return now.toMSecsSinceEpoch(); });
    }

    /// The point of that number.
    static ObjectKey analog(int number)
    {
        return {Korvane::ScadaObjectType::AnalogPoint, Korvane::firstAnalogPointId + number};
    }
    static ObjectKey digital(int number)
    {
        return {Korvane::ScadaObjectType::DigitalPoint, Korvane::firstDigitalPointId + number};
    }
    /// An object that was not added yet.
    static RuntimeDatabase::Object object(ObjectKey key, const QString& name)
    {
        RuntimeDatabase::Object object;
        object.type = key.type;
        object.id = key.id;
        object.name = name;
        return object;
    }
    void add(const RuntimeDatabase::Object& object)
    {
        if (const auto added = database.add(object); !added)
            qFatal("%s", qPrintable(added.error()));
    }
    void add(ObjectKey key, const QString& name) { add(object(key, name)); }
    /// Analog points A0, A1 and so on with these values.
    void addWithValues(const std::vector<double>& values)
    {
        for (std::size_t number = 0; number < values.size(); ++number) {
            const ObjectKey key = analog(static_cast<int>(number));
            add(key, QStringLiteral("A%1").arg(number));
            sample(key, values[number]);
        }
    }
    void sample(ObjectKey key, double value, qint32 quality = 0)
    {
        if (!database.takeSample({key, now.toMSecsSinceEpoch(), value, quality}))
            qFatal("a sample was not taken");
    }
    void passSeconds(int seconds) { now = now.addSecs(seconds); }

    QDateTime now{QDate(2026, 3, 1), QTime(8, 0), Qt::UTC};
    RuntimeDatabase database;
};
