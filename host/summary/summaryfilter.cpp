#include "host/summary/summaryfilter.h"

#include "host/summary/pointmarks_p.h"
#include "platform/data/quorixdata.h"

#include <algorithm>

bool SummaryFilter::acceptsObject(const RuntimeDatabase::Object& object) const
{
    if (station && object.station != *station)
        return false;
    if (area && object.area != *area)
        return false;
    const QString* const texts[] = {&object.name, &object.description, &object.station, &object.area};
    return text.isEmpty() || std::any_of(std::begin(texts), std::end(texts), [this](const QString* each) {
               return each->contains(text, Qt::CaseInsensitive);
           });
}

bool SummaryFilter::acceptsMarks(const QuorixData& record) const
{
    const PointMarks marks(record);
    return (!isMarkedOnly || marks.isMarked()) && (!isUnreliableOnly || marks.isUnreliable());
}
