#pragma once

#include "host/hostexport.h"
#include "host/sources/sample.h"

#include <QHash>

#include <tsl/robin_map.h>

#include <cstddef>
#include <vector>

/// The newest values of each object, in memory: what was sampled since the program started, up to so many values an
/// object that all of them together stay within one bound. Room is taken as it is needed, and given back by an object's next
/// value when there are more objects by then.
class KORVANE_HOST_EXPORT SampleHistory
{
public:
    /// Values of all objects together; 24 bytes each.
    static constexpr std::size_t mostValues = 4000000;
    /// Values of one object, at most and at least, however few or many objects there are.
    static constexpr std::size_t mostOfOne = 20000;
    static constexpr std::size_t fewestOfOne = 20;

    struct Value
    {
        qint64 timeMs = 0; ///< milliseconds since 1970-01-01 UTC
        double value = 0;
        qint32 quality = 0; ///< bits that the source stated
    };

    /// Notes a sample. One of the same time as the one before of the same object replaces it; with an older one the
    /// object's history begins anew, as after a clock that went back.
    void append(const Sample& sample);

    /// Values of a time span, both ends included, oldest first; of more than \p most, as many that lie evenly among
    /// them, the first and the last included.
    std::vector<Value> read(ObjectKey object, qint64 fromMs, qint64 toMs, std::size_t most) const;

private:
    struct KeyHash
    {
        std::size_t operator()(ObjectKey key) const noexcept { return qHash(key); }
    };
    /// The values of one object; once the room is full, the oldest is overwritten.
    struct Ring
    {
        std::vector<Value> values;
        std::size_t first = 0; ///< place of the oldest

        const Value& at(std::size_t place) const { return values[(first + place) % values.size()]; }
    };

    std::size_t roomOfOne() const;
    static void keepNewest(Ring& ring, std::size_t count);

    tsl::robin_map<ObjectKey, Ring, KeyHash> m_rings;
};
