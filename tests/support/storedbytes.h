#pragma once

#include <QByteArray>
#include <QDataStream>

/// The bytes that \p hex spells out; blanks are for reading.
inline QByteArray bytesOf(const char* hex)
{
    return QByteArray::fromHex(QByteArray(hex));
}

/// A stream over \p bytes as stored pages are read: stream version 12, big-endian.
class StoredBytes : public QDataStream
{
public:
    explicit StoredBytes(const QByteArray& bytes) : QDataStream(bytes) { setVersion(12); }
};
