#include "host/sources/csvfile.h"

#include <QFileInfo>

namespace {

constexpr int chunkBytes = 1 << 16;

tl::unexpected<QString> failed(const QString& path, const QString& reason)
{
    return tl::make_unexpected(QStringLiteral("%1: %2").arg(path, reason));
}

} // namespace

CsvFile::CsvFile(CsvReader::LineBreaks lineBreaks) : m_lineBreaks(lineBreaks), m_reader(lineBreaks)
{
}

CsvFile::~CsvFile() = default;

tl::expected<void, QString> CsvFile::open(const QString& path)
{
    close();
    const QFileInfo info(path);
    if (!info.exists())
        return failed(path, QStringLiteral("there is no such file"));
    if (!info.isFile())
        return failed(path, QStringLiteral("is no regular file"));
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return failed(path, QStringLiteral("cannot be opened: %1").arg(m_file.errorString()));
    return {};
}

void CsvFile::close()
{
    m_file.close();
    m_reader = CsvReader(m_lineBreaks);
}

tl::expected<CsvReader::Result, QString> CsvFile::next()
{
    while (true) {
        const CsvReader::Result result = m_reader.next();
        if (result != CsvReader::Result::NeedsBytes)
            return result;
        m_bytes.resize(chunkBytes);
        const qint64 count = m_file.read(m_bytes.data(), chunkBytes);
        if (count < 0)
            return failed(m_file.fileName(), QStringLiteral("cannot be read: %1").arg(m_file.errorString()));
        if (count == 0)
            m_reader.finish();
        else
            m_reader.append(m_bytes.constData(), std::size_t(count));
    }
}
