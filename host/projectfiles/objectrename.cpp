#include "host/projectfiles/objectrename.h"

#include "platform/data/tagresolution.h"

#include <QDataStream>

namespace {

using Korvane::ScadaObjectType;

// Layouts of records by version, see docs/stored-records.md.
constexpr quint32 firstCodeVersion = 800;
constexpr quint32 lastCodeVersion = 911;
constexpr qint32 firstNamedVersion = 608; ///< of conditions: below it only a bound was stored
constexpr qint32 firstTargetBoundVersion = 817;

bool areOfOneFamily(ScadaObjectType a, ScadaObjectType b)
{
    return a == b || (Korvane::isPointObjectType(a) && Korvane::isPointObjectType(b));
}

/// Copies a record from one stream to another, with names changed on the way.
class RecordCopy
{
public:
    RecordCopy(const ObjectRename& rename, const QByteArray& record, quint32 version)
        : m_rename(rename), m_version(version), m_in(record), m_out(&m_copy, QIODevice::WriteOnly)
    {
        m_in.setVersion(QDataStream::Qt_4_6);
        m_out.setVersion(QDataStream::Qt_4_6);
    }

    template <typename Item>
    void copy()
    {
        Item item{};
        m_in >> item;
        m_out << item;
    }
    void copyTarget();
    /// The copy with whatever follows; nothing when it is the same, or the record was cut off.
    std::optional<QByteArray> result()
    {
        if (!m_isChanged || m_in.status() != QDataStream::Ok)
            return std::nullopt;
        return m_copy + m_in.device()->readAll();
    }

private:
    const ObjectRename& m_rename;
    quint32 m_version;
    QByteArray m_copy;
    QDataStream m_in;
    QDataStream m_out;
    bool m_isChanged = false;
};

void RecordCopy::copyTarget()
{
    qint32 kind = 0;
    qint32 id = 0;
    QString name;
    m_in >> kind >> id >> name;
    if (name == m_rename.before && areOfOneFamily(static_cast<ScadaObjectType>(kind), m_rename.type)) {
        name = m_rename.after;
        m_isChanged = true;
    }
    m_out << kind << id << name;
    if (m_version >= firstCodeVersion && m_version <= lastCodeVersion) {
        copy<quint16>();
        return;
    }
    QString tag;
    m_in >> tag;
    if (const auto renamed = m_rename.tag(tag)) {
        tag = *renamed;
        m_isChanged = true;
    }
    m_out << tag;
}

} // namespace

std::optional<QString> ObjectRename::tag(const QString& tag) const
{
    if (!tag.contains(before))
        return std::nullopt;
    Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, nullptr);
    if (link.name != before || !areOfOneFamily(link.type, type))
        return std::nullopt;
    link.name = after;
    return link.absoluteName();
}

std::optional<QByteArray> ObjectRename::targetRecord(const QByteArray& record, quint32 version) const
{
    RecordCopy copy(*this, record, version);
    copy.copyTarget();
    return copy.result();
}

std::optional<QByteArray> ObjectRename::conditionRecord(const QByteArray& record, quint32 version) const
{
    const auto layout = static_cast<qint32>(version);
    if (layout < firstNamedVersion)
        return std::nullopt;
    RecordCopy copy(*this, record, version);
    copy.copy<qint8>();
    copy.copy<qint8>();
    if (layout < firstTargetBoundVersion)
        copy.copy<double>(); // written as a float under a stream's usual precision
    else
        copy.copyTarget();
    copy.copyTarget();
    return copy.result();
}
