#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QSaveFile>
#include <QString>
#include <QVariant>

#include <tl/expected.hpp>

/// Writes a file of separated text line by line, by the rules of AlarmCsv. The file appears under its name, in place of one
/// that was there, only when it is committed.
class KORVANE_HOST_EXPORT CsvWriter
{
    Q_DISABLE_COPY(CsvWriter)

public:
    explicit CsvWriter(const QString& fileName);
    /// Leaves what was under the name as it was, unless the file was committed.
    ~CsvWriter();

    /// \returns the reason, naming the file
    [[nodiscard]] tl::expected<void, QString> open();
    /// A line with its end, as write() writes it, in UTF-8.
    static QByteArray line(const QVariantList& values);
    /// Writes a line; a failure shows when the file is committed.
    void write(const QVariantList& values);
    /// \returns the reason why not all of it could be written, naming the file, which is as it was then
    [[nodiscard]] tl::expected<void, QString> commit();

private:
    tl::unexpected<QString> failure() const;

    QSaveFile m_file;
};
