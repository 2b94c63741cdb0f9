#pragma once

#include "platform/data/quorixvalue.h"
#include "platform/platformexport.h"

#include <QSharedDataPointer>

#include <array>

/// One middleware value record: named members of an object at one moment.
///
/// The usual members lie inside the record: "value", the marks "tag" (T), "limit" (L) and "quality" (Q), and "time".
/// Any other member lies in a block shared between copies. Copying a record of usual members with numbers allocates
/// nothing.
class KORVANE_PLATFORM_EXPORT QuorixData
{
public:
    QuorixData() noexcept;
    QuorixData(const QuorixData& other);
    QuorixData(QuorixData&& other) noexcept;
    QuorixData& operator=(const QuorixData& other);
    QuorixData& operator=(QuorixData&& other) noexcept;
    ~QuorixData();

    /// The member of that name (case-sensitive); null when the record lacks it. Does not allocate. The pointer holds
    /// until the record is changed or destroyed.
    const QuorixValue* GetValue(const char* name) const noexcept;

    /// Sets the member of that name in place of the one before; an absent value takes the member out.
    void setMember(const char* name, const QuorixValue& value);

private:
    struct Extra;
    static constexpr std::size_t usualCount = 5;

    std::array<QuorixValue, usualCount> m_usual;
    QSharedDataPointer<Extra> m_extra;
};
