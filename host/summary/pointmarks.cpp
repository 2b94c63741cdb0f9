#include "host/summary/pointmarks_p.h"

#include "platform/data/quorixdata.h"
#include "platform/data/valuemarks.h"

namespace {

constexpr qint32 outerLimits = ValueMark::BelowLowLow | ValueMark::AboveHighHigh | ValueMark::Abnormal;

qint32 codes(const QuorixData& record, const char* member)
{
    const QuorixValue* value = record.GetValue(member);
    return value ? value->toInt32() : 0;
}

} // namespace

PointMarks::PointMarks(const QuorixData& record)
    : tag(codes(record, "tag")), limit(codes(record, "limit")), quality(codes(record, "quality"))
{
}

bool PointMarks::isUnreliable() const
{
    return (quality & ValueMark::unreliable) != 0;
}

int PointMarks::weight() const
{
    if (isUnreliable())
        return 5;
    if ((limit & outerLimits) != 0)
        return 4;
    if (limit != 0)
        return 3;
    if (quality != 0)
        return 2;
    return tag != 0 ? 1 : 0;
}
