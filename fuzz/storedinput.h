#pragma once

#include "platform/data/datafieldinfo.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/tagresolution.h"

#include <QByteArray>
#include <QDataStream>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Fuzz input for readers of stored bytes: two bytes that choose the version, and the stream behind them.
struct StoredInput
{
    StoredInput(const std::uint8_t* data, std::size_t size)
    {
        if (size < 2)
            return;
        context = ScadaTagActionStream(versionOf(static_cast<quint32>(data[0]) << 8 | data[1]));
        bytes = QByteArray(reinterpret_cast<const char*>(data) + 2, int(size) - 2);
    }

    ScadaTagActionStream context;
    QByteArray bytes;

private:
    /// 0 to 1000, or a number that is negative when signed.
    static quint32 versionOf(quint32 choice) { return choice >= 0xFF00 ? 0x80000000U + choice : choice % 1001U; }
};

/// Whether a tag record can hold the tag: it has no code for the current value, none above 16 bits, and no mark for a
/// property's name that begins with the prefix itself.
inline bool fitsRecord(const QString& tag)
{
    const Korvane::DataLinkInfo link = Korvane::quickResolveFromString(tag);
    const DataCode::DataField field = Korvane::dtStringToCode(link.field);
    const bool isDoubled =
        link.type == Korvane::ScadaObjectType::ApplicationProperty && link.name.startsWith(QLatin1String("@::"));
    return field != DataCode::DataField::Value && static_cast<int>(field) <= 0xFFFF && !isDoubled;
}

/// Ends the run as a finding when \p holds is false.
inline void require(bool holds, const char* rule)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}
