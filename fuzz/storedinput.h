#pragma once

#include <QByteArray>
#include <QDataStream>

#include "platform/data/scadatagactionstream.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Fuzz input for readers of stored bytes: two bytes that choose the version, 0 to 1000, and the stream behind them.
struct StoredInput
{
    StoredInput(const std::uint8_t* data, std::size_t size)
        : context(size < 2 ? 0U : (static_cast<quint32>(data[0]) << 8 | data[1]) % 1001U),
          bytes(size < 2 ? QByteArray() : QByteArray(reinterpret_cast<const char*>(data) + 2, int(size) - 2))
    {
    }

    ScadaTagActionStream context;
    QByteArray bytes;
};

/// Ends the run as a finding when \p holds is false.
inline void require(bool holds, const char* rule)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", rule);
    std::abort();
}
