#include "scada/binding/objecttarget.h"

#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/logdatainfo.h"
#include "platform/data/samevalue.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/tagresolution.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QDataStream>
#include <QStringBuilder>

namespace {

using DataCode::DataField;
using Korvane::DataLinkInfo;
using Korvane::ScadaObjectType;

constexpr int byteStreamVersion = QDataStream::Qt_4_6;
static_assert(byteStreamVersion == 12, "kept: stored pages depend on it");

// Layouts of the record by version; every other version stores a second text in place of the code.
constexpr quint32 firstUnusedCodeVersion = 800;
constexpr quint32 firstFieldCodeVersion = 832;
constexpr quint32 lastFieldCodeVersion = 911;

bool isConstant(const DataLinkInfo& link)
{
    if (link.type != ScadaObjectType::NoObject || !link.field.isEmpty())
        return false;
    bool isNumber = false;
    link.name.toDouble(&isNumber);
    return isNumber;
}

quint16 fieldCode(const DataLinkInfo& link)
{
    if (isConstant(link))
        return DataCode::constantMark;
    const DataField field = Korvane::dtStringToCode(link.field);
    // Kept at 16 bits: stored pages depend on it. Codes above, such as those of past values, don't survive.
    return field == DataField::Unknown ? quint16(0) : static_cast<quint16>(field);
}

QString withPrefix(ScadaObjectType kind, const QString& tag)
{
    const QString prefix = Korvane::tagPrefix(kind);
    // Kept: only a property's prefix is looked for, since stored names of the other kinds never carry theirs.
    if (kind == ScadaObjectType::ApplicationProperty && tag.startsWith(prefix))
        return tag;
    return prefix + tag;
}

} // namespace

ObjectTarget::ObjectTarget() = default;

// Kept: the copy shares the logging description, so no destructor may delete it.
ObjectTarget::ObjectTarget(const ObjectTarget& other) = default;

const ObjectTarget& ObjectTarget::operator=(const ObjectTarget& other)
{
    if (this == &other)
        return *this;
    m_tagString = other.m_tagString;
    m_storedTagString = other.m_storedTagString;
    ObjectTagValue::operator=(other);
    // Kept: the logging description is not copied; an assigned-to target goes on with its own.
    return *this;
}

ObjectTarget::~ObjectTarget() = default;

ObjectTarget ObjectTarget::fromTagString(const QString& tag)
{
    ObjectTarget target;
    target.setTagString(tag);
    return target;
}

void ObjectTarget::setTagString(const QString& tag)
{
    m_tagString = tag;
    m_storedTagString = tag;
}

void ObjectTarget::resolve(ScadaRuntimeInterface* runtime)
{
    const DataLinkInfo link = Korvane::resolveFromString(m_tagString, runtime);
    setLinkData(link);
    m_tagString = link.name;
}

bool ObjectTarget::replaceText(const QString& before, const QString& after)
{
    if (!m_tagString.contains(before))
        return false;
    m_tagString.replace(before, after);
    return true;
}

bool ObjectTarget::replacePointName(KorvaneScadaCoreInterface* hub, const QList<QPair<QString, QString>>& renames)
{
    QString renamed = m_storedTagString;
    bool changed = false;
    for (const auto& [before, after] : renames) {
        // Kept: the stored text decides which pairs apply, however the pairs before have changed the working copy.
        // Stored pages were renamed so.
        if (!m_storedTagString.contains(before))
            continue;
        renamed.replace(before, after);
        changed = true;
    }
    if (!changed)
        return false;

    m_tagString = renamed;
    const DataLinkInfo link = Korvane::resolveFromString(m_tagString, hub ? hub->scadaRuntime() : nullptr);
    setLinkData(link);
    if (m_logDataInfo)
        m_logDataInfo->pointName = link.name;
    return true;
}

bool ObjectTarget::needUpdate(double value)
{
    const QVariant next(value);
    if (isSameValue(next, m_value))
        return false;
    m_value = next;
    return true;
}

void ObjectTarget::setLogDataInfo(const LogDataInfo& info)
{
    if (!m_logDataInfo) {
        m_logDataInfo = new LogDataInfo;
        countBindingChange(); // from now on it is fed in another way
    }
    *m_logDataInfo = info;
}

void ObjectTarget::toStream(QDataStream& stream) const
{
    const DataLinkInfo link = Korvane::resolveFromString(m_tagString, nullptr);
    stream << static_cast<qint32>(link.type) << (link.id != 0 ? link.id : m_pid) << link.name << fieldCode(link);
}

void ObjectTarget::fromStream(QDataStream& stream, const ScadaTagActionStream& actionStream)
{
    const quint32 version = actionStream.version();
    qint32 kind = 0;
    stream >> kind >> m_pid >> m_tagString;
    countBindingChange();
    m_kind = static_cast<ScadaObjectType>(kind);
    m_storedTagString = m_tagString;

    if (version < firstUnusedCodeVersion || version > lastFieldCodeVersion) {
        stream >> m_tagString; // kept: the stored tag string remains the bare name
        return;
    }
    quint16 code = 0;
    stream >> code;
    if (version < firstFieldCodeVersion)
        return;

    if (code == DataCode::constantMark)
        m_value = m_tagString.toDouble();
    else if (code != 0)
        m_tagString = m_tagString % QLatin1Char(':') % Korvane::dtFieldToString(static_cast<DataField>(code));
    m_tagString = withPrefix(m_kind, m_tagString);
    m_storedTagString = m_tagString;
}

void ObjectTarget::fromStream(QDataStream& stream, const ScadaTagActionStream& actionStream,
                              QMap<QString, QVariant>& out)
{
    ObjectTarget target;
    target.fromStream(stream, actionStream);
    const DataLinkInfo link = Korvane::quickResolveFromString(target.m_tagString);
    out.insert(QStringLiteral("pname"), link.name);
    out.insert(QStringLiteral("dtfield"), static_cast<int>(Korvane::dtStringToCode(link.field)));
}

QByteArray ObjectTarget::makeByteStream() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(byteStreamVersion);
    toStream(stream);
    return bytes;
}

ObjectTarget ObjectTarget::makeFromByteStream(const QByteArray& bytes, const ScadaTagActionStream& actionStream)
{
    QDataStream stream(bytes);
    stream.setVersion(byteStreamVersion);
    ObjectTarget target;
    target.fromStream(stream, actionStream);
    return target;
}
