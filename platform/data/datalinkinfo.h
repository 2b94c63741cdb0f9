#pragma once

#include "platform/data/scadaobjecttype.h"
#include "platform/platformexport.h"

#include <QString>

namespace Korvane {

/// The result of resolving a tag string: which object it names and which field of it.
///
/// A constant has type NoObject, the number's text as its name and no field.
struct KORVANE_PLATFORM_EXPORT DataLinkInfo
{
    ScadaObjectType type = ScadaObjectType::NoObject;
    qint32 id = 0; ///< 0 when unknown; ids above 2^31 - 1 keep their 32 bits and show as negative numbers
    QString name;  ///< without prefix and field
    QString field; ///< name of a data field, empty when the tag names none

    /// The tag string of this link: prefix, name and, behind a ":", the field. Resolving it gives the link again.
    QString absoluteName() const;

    friend bool operator==(const DataLinkInfo& a, const DataLinkInfo& b)
    {
        return a.type == b.type && a.id == b.id && a.name == b.name && a.field == b.field;
    }
    friend bool operator!=(const DataLinkInfo& a, const DataLinkInfo& b) { return !(a == b); }
};

/// The prefix that tags of \p type carry: "@R::", "@C::" or "@::"; empty for points and every other kind.
KORVANE_PLATFORM_EXPORT QString tagPrefix(ScadaObjectType type);

} // namespace Korvane
