#pragma once

#include "platform/platformexport.h"

#include <QDateTime>
#include <QVariant>

#include <utility>

/// One value of a middleware record: a whole number, a real number, a point in time, or any other variant.
///
/// Numbers and times lie inside the object; copying them allocates nothing. Anything else (texts, lists) is shared
/// between copies. A default value is absent and reads as 0 and as an invalid variant.
class KORVANE_PLATFORM_EXPORT QuorixValue
{
public:
    QuorixValue() noexcept = default;
    QuorixValue(qint32 number) noexcept : m_bits(static_cast<quint64>(qint64(number))), m_kind(Kind::Integer) {}
    QuorixValue(qint64 number) noexcept : m_bits(static_cast<quint64>(number)), m_kind(Kind::Integer) {}
    QuorixValue(double number) noexcept;
    /// Keeps \p time to the millisecond, in UTC; an invalid time makes an absent value.
    QuorixValue(const QDateTime& time);
    /// Takes any variant; an invalid one makes an absent value.
    QuorixValue(const QVariant& anything);

    QuorixValue(const QuorixValue& other) noexcept : m_bits(other.m_bits), m_kind(other.m_kind)
    {
        if (m_kind == Kind::Shared)
            addReference();
    }
    QuorixValue(QuorixValue&& other) noexcept : m_bits(other.m_bits), m_kind(std::exchange(other.m_kind, Kind::Absent))
    {
    }
    QuorixValue& operator=(QuorixValue other) noexcept
    {
        std::swap(m_bits, other.m_bits);
        std::swap(m_kind, other.m_kind);
        return *this;
    }
    ~QuorixValue()
    {
        if (m_kind == Kind::Shared)
            dropReference();
    }

    bool isAbsent() const noexcept { return m_kind == Kind::Absent; }

    /// The value as a 32-bit number: the low 32 bits of a whole number; a real number truncated toward zero and held to
    /// the type's bounds, NaN as 0; a variant as QVariant::toInt; 0 for a time and when absent.
    qint32 toInt32() const;

    /// The value as a real number: a variant as QVariant::toDouble; 0 for a time and when absent.
    double toDouble() const;

    /// The value as int, qlonglong (beyond 32 bits), double, QDateTime in UTC, or the variant it was made from; invalid
    /// when absent.
    QVariant toVariant() const;

private:
    enum class Kind : quint8 { Absent, Integer, Real, Time, Shared };
    struct SharedVariant;

    void addReference() const noexcept;
    void dropReference() noexcept;
    SharedVariant* shared() const noexcept;
    qint64 integer() const noexcept { return static_cast<qint64>(m_bits); }
    double real() const noexcept;

    quint64 m_bits = 0; ///< a number, the bits of a double, milliseconds since 1970-01-01 UTC, or a SharedVariant*
    Kind m_kind = Kind::Absent;
};
