#pragma once

#include "platform/data/datacode.h"
#include "platform/data/objectkey.h"
#include "platform/platformexport.h"

#include <QStringView>
#include <QVariant>

/// The runtime database: the objects that live process data belongs to. Implemented by the host, used on the GUI
/// thread.
///
/// Points, units and lines have separate names. A look-up names the family by one of the kinds Point (any point),
/// RtuObject and ChannelObject; an answer for Point carries the point's own kind.
class KORVANE_PLATFORM_EXPORT ScadaRuntimeInterface
{
public:
    ScadaRuntimeInterface() = default;
    Q_DISABLE_COPY(ScadaRuntimeInterface)
    virtual ~ScadaRuntimeInterface();

    /// Looks an object up by its name (case-sensitive, no prefix, no field).
    /// \returns an invalid key when the family has no such object or is none of the three.
    virtual ObjectKey findByName(Korvane::ScadaObjectType family, QStringView name) const = 0;

    /// Looks an object up by its id.
    /// \returns an invalid key when the family has no such object or is none of the three.
    virtual ObjectKey findById(Korvane::ScadaObjectType family, qint32 id) const = 0;

    /// What the database holds of an object: a field that it supplies (DataFieldInfo::Supplier::RuntimeDatabase).
    /// \returns an invalid variant when it holds none, or has no such object.
    virtual QVariant fieldValue(ObjectKey object, DataCode::DataField field) const = 0;
};
