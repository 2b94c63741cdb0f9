#pragma once

#include "host/hostexport.h"
#include "host/sources/csvreader.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <tl/expected.hpp>

#include <optional>

/// A file of separated text, read record by record as the reader asks, so that memory does not grow with the file.
class KORVANE_HOST_EXPORT CsvFile
{
    Q_DISABLE_COPY(CsvFile)

public:
    explicit CsvFile(CsvReader::LineBreaks lineBreaks = CsvReader::LineBreaks::EndRecords);
    ~CsvFile();

    /// Opens the file at its beginning, also once more.
    /// \returns the reason, naming the file, when there is none, it cannot be opened, or it is no regular file: opening
    /// a pipe would wait for its writer.
    [[nodiscard]] tl::expected<void, QString> open(const QString& path);
    void close();
    bool isOpen() const { return m_file.isOpen(); }

    /// Takes the next record; never says NeedsBytes.
    /// \returns the reason, naming the file, when it cannot be read on.
    [[nodiscard]] tl::expected<CsvReader::Result, QString> next();

    /// The record taken last.
    const CsvReader& record() const { return m_reader; }

private:
    CsvReader::LineBreaks m_lineBreaks;
    CsvReader m_reader;
    QFile m_file;
    QByteArray m_bytes;
};
