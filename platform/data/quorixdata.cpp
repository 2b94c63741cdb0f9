#include "platform/data/quorixdata.h"

#include <QSharedData>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

static_assert(sizeof(QuorixData) <= 96, "the dispatch path copies one record for each matching target");

struct QuorixData::Extra : QSharedData
{
    struct Member
    {
        std::string name;
        QuorixValue value;
    };

    std::vector<Member>::iterator find(const char* name)
    {
        return std::find_if(members.begin(), members.end(),
                            [name](const Member& member) { return member.name == name; });
    }
    std::vector<Member>::const_iterator find(const char* name) const
    {
        return std::find_if(members.begin(), members.end(),
                            [name](const Member& member) { return member.name == name; });
    }

    std::vector<Member> members; ///< few: searched in line
};

namespace {

constexpr const char* usualNames[] = {"value", "tag", "limit", "quality", "time"};

/// Place of a usual member, or -1.
int usualPlace(const char* name)
{
    for (std::size_t place = 0; place < std::size(usualNames); ++place) {
        if (std::strcmp(usualNames[place], name) == 0)
            return static_cast<int>(place);
    }
    return -1;
}

} // namespace

QuorixData::QuorixData() noexcept = default;
QuorixData::QuorixData(const QuorixData& other) = default;
QuorixData::QuorixData(QuorixData&& other) noexcept = default;
QuorixData& QuorixData::operator=(const QuorixData& other) = default;
QuorixData& QuorixData::operator=(QuorixData&& other) noexcept = default;
QuorixData::~QuorixData() = default;

const QuorixValue* QuorixData::GetValue(const char* name) const noexcept
{
    static_assert(std::size(usualNames) == usualCount);
    const int place = usualPlace(name);
    if (place >= 0) {
        const QuorixValue& value = m_usual[static_cast<std::size_t>(place)];
        return value.isAbsent() ? nullptr : &value;
    }
    if (!m_extra)
        return nullptr;
    const auto found = m_extra->find(name);
    return found == m_extra->members.cend() ? nullptr : &found->value;
}

void QuorixData::setMember(const char* name, const QuorixValue& value)
{
    const int place = usualPlace(name);
    if (place >= 0) {
        m_usual[static_cast<std::size_t>(place)] = value;
        return;
    }
    if (!m_extra) {
        if (value.isAbsent())
            return;
        m_extra = new Extra;
    }
    Extra& extra = *m_extra;
    const auto found = extra.find(name);
    if (found == extra.members.end()) {
        if (!value.isAbsent())
            extra.members.push_back({name, value});
    } else if (value.isAbsent()) {
        extra.members.erase(found);
    } else {
        found->value = value;
    }
}
