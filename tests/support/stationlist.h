#pragma once

#include "platform/data/pointdirectory.h"

#include <QString>

#include <utility>
#include <vector>

/// A registered point directory for tests: stations as they are given, in their order.
class StationList : public PointDirectory
{
public:
    explicit StationList(std::vector<Station> stations) : m_stations(std::move(stations)) { registerDirectory(this); }

    ObjectKey findPoint(QStringView name) const override
    {
        for (const Station& station : m_stations) {
            for (const Entry& object : station.objects) {
                if (Korvane::isPointObjectType(object.key.type) && name == object.name)
                    return object.key;
            }
        }
        return {};
    }
    std::vector<Station> stations() const override { return m_stations; }

private:
    std::vector<Station> m_stations;
};

/// Two stations and two objects of none, of every kind.
inline std::vector<PointDirectory::Station> someStations()
{
    using Korvane::ScadaObjectType;
    return {{QStringLiteral("North intake"),
             {{{ScadaObjectType::AnalogPoint, 200001}, QStringLiteral("P1.FLOW"), QStringLiteral("Flow behind pump 1")},
              {{ScadaObjectType::DigitalPoint, 100001}, QStringLiteral("P1.RUN"), QStringLiteral("Pump 1 is running")},
              {{ScadaObjectType::AnalogPoint, 200002}, QStringLiteral("LEVEL"), QStringLiteral("Level of the well")}}},
            {QStringLiteral("Pump house"),
             {{{ScadaObjectType::AnalogPoint, 200003}, QStringLiteral("P2.FLOW"), QString()},
              {{ScadaObjectType::DigitalPoint, 100002}, QStringLiteral("DOOR"), QStringLiteral("Door, open")}}},
            {QString(),
             {{{ScadaObjectType::RtuObject, 1}, QStringLiteral("RTU1"), QStringLiteral("Terminal unit")},
              {{ScadaObjectType::ChannelObject, 1}, QStringLiteral("COM1"), QStringLiteral("Leased line")}}}};
}
