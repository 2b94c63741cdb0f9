#pragma once

#include "host/runtime/runtimedatabase.h"

#include <QString>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

/// Names as plants have them, all of one length so that sizes compare: "STATION_042.POINT_0042042".
inline QString pointName(std::size_t number)
{
    return QStringLiteral("STATION_%1.POINT_%2")
        .arg(number % 1000, 3, 10, QLatin1Char('0'))
        .arg(number, 7, 10, QLatin1Char('0'));
}

/// Fills an empty database with \p count analog points.
inline void addPoints(RuntimeDatabase& runtime, std::size_t count)
{
    runtime.reserve(Korvane::ScadaObjectType::Point, count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto added = runtime.add({Korvane::ScadaObjectType::AnalogPoint, qint32(200001 + i), pointName(i)});
        if (!added) {
            std::fprintf(stderr, "%s\n", qPrintable(added.error()));
            std::abort();
        }
    }
}

/// \p wanted random ones of the first \p count names, as texts of their own (no key's text is shared).
inline std::vector<QString> namesToFind(std::size_t count, std::size_t wanted)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> any(0, count - 1);
    std::vector<QString> names(wanted);
    std::generate(names.begin(), names.end(), [&] { return pointName(any(random)); });
    return names;
}
