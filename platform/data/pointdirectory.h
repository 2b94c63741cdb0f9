#pragma once

#include "platform/data/objectkey.h"
#include "platform/platformexport.h"

#include <QString>
#include <QStringView>

#include <vector>

/// The host's list of points by name, for code that resolves or offers points without a runtime database at hand.
///
/// A host registers one directory for the process and keeps it alive while it is registered; nothing here owns it.
/// Without one, everything works on the text of the tags alone. GUI thread only.
class KORVANE_PLATFORM_EXPORT PointDirectory
{
public:
    /// A listed object.
    struct Entry
    {
        ObjectKey key;
        QString name;
        QString description; ///< for the user's eyes; may be empty
    };
    /// A station with its points, units and lines.
    struct Station
    {
        QString name; ///< empty for the objects of none
        std::vector<Entry> objects;
    };

    PointDirectory() = default;
    Q_DISABLE_COPY(PointDirectory)
    /// Takes itself off the registration, so that no dangling directory stays behind.
    virtual ~PointDirectory();

    /// Kind and id of the point named \p name (case-sensitive, no prefix, no field); an invalid key when there is none.
    virtual ObjectKey findPoint(QStringView name) const = 0;

    /// Every object by station, in the order of the host's list.
    virtual std::vector<Station> stations() const = 0;

    /// Makes \p directory the one of this process, in place of the one before; null takes the registration back.
    static void registerDirectory(const PointDirectory* directory);
    static const PointDirectory* registered();
};
