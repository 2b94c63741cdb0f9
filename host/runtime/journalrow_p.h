#pragma once

#include "host/sources/sample.h"
#include "platform/data/objectkey.h"

#include <QByteArray>

#include <optional>
#include <vector>

/// An object as one number: its id, and which of the three families it belongs to. Stored files depend on it.
quint64 storedKey(ObjectKey key);
/// \returns a point of unknown kind for any point.
ObjectKey keyOfStored(quint64 stored);

/// What happened to objects within one tick, as the bytes of one journal row: a value takes 6 to 22 of them.
class JournalRow
{
public:
    struct Note
    {
        Sample sample;
        bool isCommunication = false; ///< communication failed (value 1) or returned (0); otherwise a sample
    };

    JournalRow();

    void add(const Sample& sample);
    void addCommunicationFailed(ObjectKey object, bool failed, qint64 timeMs);
    void clear();

    std::size_t count() const { return m_count; }
    /// The row with its check sum.
    QByteArray bytes() const;

    /// \returns nothing for bytes that are damaged or of another layout.
    static std::optional<std::vector<Note>> read(QByteArray bytes);

private:
    void put(ObjectKey object, qint64 timeMs, double value, qint32 quality, bool isCommunication);

    QByteArray m_bytes;
    qint64 m_baseMs = 0; ///< time of the first note: the others are written as what they differ by
    std::size_t m_count = 0;
};
