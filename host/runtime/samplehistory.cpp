#include "host/runtime/samplehistory.h"

#include <algorithm>
#include <utility>

std::size_t SampleHistory::roomOfOne() const
{
    return std::clamp(mostValues / std::max<std::size_t>(m_rings.size(), 1), fewestOfOne, mostOfOne);
}

void SampleHistory::keepNewest(Ring& ring, std::size_t count)
{
    std::vector<Value> kept;
    kept.reserve(count);
    for (std::size_t place = ring.values.size() - count; place < ring.values.size(); ++place)
        kept.push_back(ring.at(place));
    ring.values = std::move(kept);
    ring.first = 0;
}

void SampleHistory::append(const Sample& sample)
{
    Ring& ring = m_rings[sample.object];
    const Value value{sample.timeMs, sample.value, sample.quality};
    if (!ring.values.empty()) {
        const std::size_t newest = (ring.first + ring.values.size() - 1) % ring.values.size();
        if (ring.values[newest].timeMs == sample.timeMs) {
            ring.values[newest] = value;
            return;
        }
        if (sample.timeMs < ring.values[newest].timeMs)
            keepNewest(ring, 0);
    }
    const std::size_t room = roomOfOne();
    if (ring.values.size() > room)
        keepNewest(ring, room);
    if (ring.values.size() < room) {
        ring.values.push_back(value);
        return;
    }
    ring.values[ring.first] = value;
    ring.first = (ring.first + 1) % ring.values.size();
}

std::vector<SampleHistory::Value> SampleHistory::read(ObjectKey object, qint64 fromMs, qint64 toMs,
                                                      std::size_t most) const
{
    std::vector<Value> found;
    const auto ring = m_rings.find(object);
    if (ring == m_rings.end() || most == 0)
        return found;
    const Ring& values = ring->second;
    const auto placeOf = [&values](auto isBefore) {
        std::size_t low = 0;
        std::size_t high = values.values.size();
        while (low < high) {
            const std::size_t middle = (low + high) / 2;
            if (isBefore(values.at(middle)))
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    };
    const std::size_t begin = placeOf([fromMs](const Value& value) { return value.timeMs < fromMs; });
    const std::size_t end = placeOf([toMs](const Value& value) { return value.timeMs <= toMs; });
    if (begin >= end)
        return found;
    const std::size_t count = end - begin;
    const std::size_t taken = std::min(count, most);
    found.reserve(taken);
    for (std::size_t i = 0; i < taken; ++i)
        found.push_back(values.at(begin + (taken == 1 ? count - 1 : i * (count - 1) / (taken - 1))));
    return found;
}
