#pragma once

#include "host/hostexport.h"
#include "platform/data/objectkey.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

#include <tl/expected.hpp>

#include <map>
#include <optional>

/// What operators changed about the objects of a plant, and who did: marks, substituted values, limits. It outlasts the
/// program in an SQLite file. GUI thread only.
class KORVANE_HOST_EXPORT OperatingState
{
public:
    /// Numbers stand in the file. That alarms are inhibited stands in the alarm log.
    enum class Kind : qint32 {
        ControlInhibited = 0,
        ScanInhibited = 2,
        InformationTag = 3, ///< value: its text
        Substitution = 4,   ///< value: the number
        LowLowLimit = 5,    ///< value: the number; empty for a limit that was taken away
        LowLimit = 6,
        HighLimit = 7,
        HighHighLimit = 8,
        DeadBand = 9,         ///< value: the number
        StatisticsReset = 10, ///< value: when, milliseconds since 1970-01-01 UTC
    };

    struct Entry
    {
        QString value = {};
        QString user = {};
        QString reason = {};
        QDateTime time = {}; ///< UTC
    };

    OperatingState() = default;
    ~OperatingState();
    Q_DISABLE_COPY(OperatingState)

    /// Opens the SQLite file, which others may use too, makes what is missing in it, and reads what it holds.
    /// \returns the reason, naming the file.
    [[nodiscard]] tl::expected<void, QString> open(const QString& fileName);
    /// Keeps everything in memory, for a system that is not this plant.
    [[nodiscard]] tl::expected<void, QString> openInMemory();
    void close();

    /// Notes what was changed, in place of what stood before of that kind; on the disk when it returns.
    /// \returns why it could not be written; nothing changes then.
    [[nodiscard]] tl::expected<void, QString> set(ObjectKey object, Kind kind, const Entry& entry);
    /// The change was taken back; nothing happens where there was none.
    [[nodiscard]] tl::expected<void, QString> remove(ObjectKey object, Kind kind) { return remove(object, kind, kind); }
    /// The same of all kinds from \p first to \p last, at once: all or, with the reason, none.
    [[nodiscard]] tl::expected<void, QString> remove(ObjectKey object, Kind first, Kind last);

    /// What stands; nothing for what was not changed.
    std::optional<Entry> find(ObjectKey object, Kind kind) const;
    /// Every object with a change of that kind, in no order.
    QList<ObjectKey> objects(Kind kind) const;
    /// Every object with any change.
    QList<ObjectKey> objects() const { return m_entries.keys(); }

private:
    tl::expected<void, QString> prepare();
    tl::expected<void, QString> load();

    QString m_connection; ///< name of the Qt connection; empty while closed
    QString m_fileName;
    QHash<ObjectKey, std::map<Kind, Entry>> m_entries;
};
