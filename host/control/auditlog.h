#pragma once

#include "host/hostexport.h"
#include "platform/data/scadaoperationmessage.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <tl/expected.hpp>

/// The audit log: what operators did to the process, line by line, in an SQLite file.
///
/// Each line carries a hash (SHA-256) over itself and the hash of the line before, and the number and hash of the last
/// line stand apart: a line that was changed, taken out, put in or cut off is found by verify(). The file itself refuses
/// to change or delete a line. A line is on the disk when append() returns. GUI thread only.
class KORVANE_HOST_EXPORT AuditLog
{
public:
    AuditLog() = default;
    ~AuditLog();
    Q_DISABLE_COPY(AuditLog)

    /// Opens the SQLite file, or makes it; what was open is closed.
    /// \returns the reason, naming the file.
    [[nodiscard]] tl::expected<void, QString> open(const QString& fileName);
    /// Keeps the log in memory, for a system whose history is not this plant's.
    [[nodiscard]] tl::expected<void, QString> openInMemory();
    void close();
    bool isOpen() const { return !m_connection.isEmpty(); }

    /// Writes one line.
    /// \param workplace where it was done
    /// \returns why it could not be written; the log is as it was then.
    [[nodiscard]] tl::expected<void, QString> append(const ScadaOperationMessage& message, const QString& workplace);

    /// Lines of a time span in UTC, both ends included, newest first, at most \p most.
    tl::expected<QList<ScadaOperationMessage>, QString> read(const QDateTime& from, const QDateTime& to,
                                                             int most) const;

    /// Goes through the whole chain.
    /// \returns how many lines there are, or the first that does not fit and why.
    tl::expected<qint64, QString> verify() const;

private:
    tl::expected<void, QString> prepare();
    tl::unexpected<QString> failure(const QString& what) const;

    QString m_connection; ///< name of the Qt connection; empty while closed
    QString m_fileName;
};
