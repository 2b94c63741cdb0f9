#pragma once

#include <QtGlobal>

class QuorixData;

/// The marks of a record.
struct PointMarks
{
    explicit PointMarks(const QuorixData& record);

    bool isMarked() const { return (tag | limit | quality) != 0; }
    bool isUnreliable() const;
    /// How much the marks take from the value: 0 for none, up to 5 for one that nothing may be concluded from.
    int weight() const;

    qint32 tag = 0;     ///< ValueMark::Tag
    qint32 limit = 0;   ///< ValueMark::Limit
    qint32 quality = 0; ///< ValueMark::Quality
};
