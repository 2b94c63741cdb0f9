#include "platform/data/quorixvalue.h"

#include <QAtomicInt>

#include <cstring>
#include <limits>

static_assert(sizeof(QuorixValue) == 16, "five of them make a record of the dispatch path");

struct QuorixValue::SharedVariant
{
    QAtomicInt references;
    QVariant value;
};

namespace {

qint32 truncated(double number)
{
    constexpr double lowest = std::numeric_limits<qint32>::min();
    constexpr double highest = std::numeric_limits<qint32>::max();
    if (!(number == number))
        return 0;
    return static_cast<qint32>(qBound(lowest, number, highest));
}

} // namespace

QuorixValue::QuorixValue(double number) noexcept : m_kind(Kind::Real)
{
    std::memcpy(&m_bits, &number, sizeof m_bits);
}

QuorixValue::QuorixValue(const QDateTime& time)
{
    if (!time.isValid())
        return;
    *this = QuorixValue(qint64(time.toMSecsSinceEpoch()));
    m_kind = Kind::Time;
}

QuorixValue::QuorixValue(const QVariant& anything)
{
    switch (anything.userType()) {
    case QMetaType::UnknownType:
        break;
    case QMetaType::Int:
        *this = QuorixValue(anything.toInt());
        break;
    case QMetaType::LongLong:
        *this = QuorixValue(qint64(anything.toLongLong()));
        break;
    case QMetaType::Double:
        *this = QuorixValue(anything.toDouble());
        break;
    case QMetaType::QDateTime:
        *this = QuorixValue(anything.toDateTime());
        break;
    default: {
        const auto* variant = new SharedVariant{1, anything};
        std::memcpy(&m_bits, &variant, sizeof(void*));
        m_kind = Kind::Shared;
    }
    }
}

QuorixValue::SharedVariant* QuorixValue::shared() const noexcept
{
    SharedVariant* variant = nullptr;
    std::memcpy(&variant, &m_bits, sizeof(void*));
    return variant;
}

double QuorixValue::real() const noexcept
{
    double number = 0;
    std::memcpy(&number, &m_bits, sizeof number);
    return number;
}

void QuorixValue::addReference() const noexcept
{
    shared()->references.ref();
}

void QuorixValue::dropReference() noexcept
{
    if (!shared()->references.deref())
        delete shared();
}

qint32 QuorixValue::toInt32() const
{
    switch (m_kind) {
    case Kind::Integer:
        return static_cast<qint32>(static_cast<quint32>(m_bits));
    case Kind::Real:
        return truncated(real());
    case Kind::Shared:
        return shared()->value.toInt();
    case Kind::Time:
    case Kind::Absent:
        break;
    }
    return 0;
}

double QuorixValue::toDouble() const
{
    switch (m_kind) {
    case Kind::Integer:
        return static_cast<double>(integer());
    case Kind::Real:
        return real();
    case Kind::Shared:
        return shared()->value.toDouble();
    case Kind::Time:
    case Kind::Absent:
        break;
    }
    return 0;
}

QVariant QuorixValue::toVariant() const
{
    switch (m_kind) {
    case Kind::Integer: {
        const auto low = static_cast<qint32>(integer());
        return low == integer() ? QVariant(low) : QVariant(static_cast<qlonglong>(integer()));
    }
    case Kind::Real:
        return real();
    case Kind::Time:
        return QDateTime::fromMSecsSinceEpoch(integer(), Qt::UTC);
    case Kind::Shared:
        return shared()->value;
    case Kind::Absent:
        break;
    }
    return {};
}
