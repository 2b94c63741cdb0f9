#pragma once

#include "platform/data/scadaobjecttype.h"

#include <QMetaType>
#include <QString>

namespace Korvane {

/// What a user chose in the point browser, or drags from a tree of points. The name's spelling is part of the interface.
struct BrowerItemInfo
{
    ScadaObjectType type = ScadaObjectType::NoObject;
    int number = 0; ///< the object's id
    QString tag;    ///< the tag text as the browser shows it: prefix and name, never a field, which stands in property
    QString name;   ///< the object's name alone
    QString description; ///< for the user's eyes
    QString property;    ///< name of the chosen field; empty for none

    friend bool operator==(const BrowerItemInfo& a, const BrowerItemInfo& b)
    {
        return a.type == b.type && a.number == b.number && a.tag == b.tag && a.name == b.name &&
               a.description == b.description && a.property == b.property;
    }
    friend bool operator!=(const BrowerItemInfo& a, const BrowerItemInfo& b) { return !(a == b); }
};

/// Kinds of objects that the point browser offers.
enum class BrowseType : quint32 {
    DigitalPoints = 0x01,
    AnalogPoints = 0x02,
    Units = 0x04,
    Lines = 0x10,
};
Q_DECLARE_FLAGS(BrowseTypeFlag, BrowseType)
Q_DECLARE_OPERATORS_FOR_FLAGS(BrowseTypeFlag)

} // namespace Korvane

Q_DECLARE_METATYPE(Korvane::BrowerItemInfo)
