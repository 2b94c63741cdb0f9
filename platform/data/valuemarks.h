#pragma once

#include <QtGlobal>

/// The marks that a middleware record carries beside its value, as bits of its members "tag" (T), "limit" (L) and
/// "quality" (Q). The terms are those of IEC 60870-5 where it has one.
namespace ValueMark {

enum Tag : qint32 {
    ControlInhibited = 0x01,
    AlarmInhibited = 0x02,
    ScanInhibited = 0x04,
    InformationTag = 0x08,
};

enum Limit : qint32 {
    BelowLow = 0x01,
    AboveHigh = 0x02,
    BelowLowLow = 0x04,
    AboveHighHigh = 0x08,
    Abnormal = 0x10, ///< abnormal state of a digital point, rate of change of an analog one
};

enum Quality : qint32 {
    Invalid = 0x01,
    Substituted = 0x02, ///< entered by hand
    Stale = 0x04,
    CommunicationFailed = 0x08,
    Estimated = 0x10,
    OutOfRange = 0x20,
    Oscillating = 0x40,
    Test = 0x80,
};

/// Qualities of a value that nothing may be concluded from.
constexpr qint32 unreliable = Invalid | Stale | CommunicationFailed;

} // namespace ValueMark
