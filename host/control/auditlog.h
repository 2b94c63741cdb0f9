#pragma once

#include "host/control/auditline.h"
#include "host/hostexport.h"
#include "platform/data/scadaoperationmessage.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <tl/expected.hpp>

struct AccountEvent;

/// The audit log: what operators did to the process, and what happened to user accounts, line by line, in an SQLite file.
///
/// Each line carries a hash (SHA-256) over itself and the hash of the line before, and the number and hash of the last
/// line stand apart: a line that was changed, taken out, put in or cut off is found by verify(). The file itself refuses
/// to change or delete a line. A line is on the disk when append() returns. Several programs may have the file open, and
/// each may write: a line goes behind whatever stands there then. GUI thread only.
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
    /// Opens a file for reading, and changes nothing on the disk: neither the file nor anything beside it is made or written,
    /// whether a program writes to it, has ended, or was killed.
    /// \returns why not, naming the file: there is none, or no audit log is in it.
    [[nodiscard]] tl::expected<void, QString> openReadOnly(const QString& fileName);
    /// Whether a program has begun to write to the file, or ended, since the last openReadOnly(), which went by the other:
    /// what it gave, and what was read since, may be wrong then. Another opening goes by how it is now.
    bool isOvertaken() const;
    void close();
    bool isOpen() const { return !m_connection.isEmpty(); }

    /// Writes one line.
    /// \param workplace where it was done
    /// \returns why it could not be written; the log is as it was then.
    [[nodiscard]] tl::expected<void, QString> append(const ScadaOperationMessage& message, const QString& workplace);

    /// The same of what happened to an account.
    [[nodiscard]] tl::expected<void, QString> append(const AccountEvent& event, const QString& workplace,
                                                     const QDateTime& time);

    /// Lines about the process of a time span in UTC, both ends included, newest first, at most \p most.
    tl::expected<QList<ScadaOperationMessage>, QString> read(const QDateTime& from, const QDateTime& to,
                                                             int most) const;

    /// Lines of any kind, newest first, at most \p most.
    tl::expected<QList<AuditLine>, QString> newest(int most) const;

    /// Goes through the whole chain, as it is at this moment.
    /// \returns how many lines there are, or the first that does not fit and why.
    tl::expected<qint64, QString> verify() const;

private:
    tl::expected<void, QString> prepare();
    tl::expected<void, QString> checkLayout() const;
    tl::expected<void, QString> write(const QByteArray& entry, qint64 timeMs);
    tl::unexpected<QString> failure(const QString& what) const;

    QString m_connection; ///< name of the Qt connection; empty while closed
    QString m_fileName;
    QDateTime m_changed;       ///< the file, when it was opened for reading
    bool m_hadJournal = false; ///< then
};
