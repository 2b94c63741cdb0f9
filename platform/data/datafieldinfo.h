#pragma once

#include "platform/data/datacode.h"
#include "platform/data/scadaobjecttype.h"
#include "platform/platformexport.h"

#include <QString>
#include <QStringView>

#include <vector>

/// One entry of the field table: what a data field is called in tag strings, what it holds, which objects have it and
/// who supplies it. Entries live as long as the process and are compared by address.
struct KORVANE_PLATFORM_EXPORT DataFieldInfo
{
    enum class FieldType {
        Number, ///< measured or counted quantity
        Count,  ///< whole number of events
        State,  ///< number of a state
        Text,
        Time, ///< point in time
    };

    enum class FieldUnit {
        None,
        Point,      ///< the point's engineering unit
        PointHours, ///< the point's unit times hours: accumulated values are integrals over time (our choice)
        Seconds,
        Percent,
    };

    /// Which kinds of objects have the field.
    enum ObjectFamily : quint8 { Digital = 0x01, Analog = 0x02, Rtu = 0x04, Channel = 0x08 };

    /// Member of the middleware record that holds the current value.
    static constexpr const char* currentValueMember = "value";

    DataCode::DataField field;
    const char* name; ///< ASCII, without ":", unique in the table
    FieldType type;
    FieldUnit unit;
    quint8 families; ///< ObjectFamily bits
    /// Member of the middleware record that holds the field; null when someone else supplies it.
    const char* recordMember;

    /// Who a value of the field comes from.
    enum class Supplier {
        Record,          ///< the middleware record
        RuntimeDatabase, ///< names, limits and statistics of the running periods
        History,         ///< the data service: periods that have ended
    };
    Supplier supplier() const noexcept
    {
        if (recordMember)
            return Supplier::Record;
        return field >= DataCode::DataField::PastMaximum ? Supplier::History : Supplier::RuntimeDatabase;
    }

    /// Whether objects of \p type have the field. A point of unknown kind has every field of both kinds; constants and
    /// application properties have none.
    bool isFieldOf(Korvane::ScadaObjectType type) const noexcept;

    /// The whole table, in order of the codes.
    static const std::vector<const DataFieldInfo*>& all();

    /// \returns null for an unknown code.
    static const DataFieldInfo* find(DataCode::DataField field) noexcept;
    /// Case-sensitive.
    /// \returns null for an unknown name. Does not allocate.
    static const DataFieldInfo* find(QStringView name) noexcept;
};

namespace Korvane {

/// Name of \p field in tag strings; empty for an unknown code. Shares one stored text: does not allocate.
KORVANE_PLATFORM_EXPORT QString dtFieldToString(DataCode::DataField field);

/// Field of that name; DataField::Unknown (-1) when there is none. The inverse of dtFieldToString.
KORVANE_PLATFORM_EXPORT DataCode::DataField dtStringToCode(const QString& name);

} // namespace Korvane
