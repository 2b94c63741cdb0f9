#pragma once

#include <QtGlobal>

/// The marks of a watched object as they stand now.
struct ObjectMarks
{
    quint32 handle = 0;    ///< the number it is watched under
    qint64 timeMs = 0;     ///< of what changed them, milliseconds since 1970-01-01 UTC
    double value = 0;      ///< present value, in the point's unit; NaN before the first
    qint32 limitMarks = 0; ///< bits of ValueMark::Limit
    qint32 quality = 0;    ///< bits of ValueMark::Quality
};

/// Hears of the limit and quality marks of the objects that it watches, with every sample and every moment that changes
/// them, in order. Must not change the database from within.
class MarksListener
{
public:
    virtual void marksChanged(const ObjectMarks& marks) = 0;

protected:
    ~MarksListener() = default;
};
