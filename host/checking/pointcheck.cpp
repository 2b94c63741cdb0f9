#include "host/checking/pointcheck_p.h"

#include "host/checking/operationcheck.h"
#include "host/checking/tagcheck.h"
#include "host/control/interlock.h"
#include "host/core/project.h"
#include "host/projectfiles/csvtext.h"
#include "host/projectfiles/interlocktags.h"
#include "platform/data/datalinkinfo.h"

using Korvane::ScadaObjectType;
using Severity = Finding::Severity;

namespace {

QString prefixOf(const QString& kind)
{
    if (kind == QLatin1String("unit"))
        return Korvane::tagPrefix(ScadaObjectType::RtuObject);
    return kind == QLatin1String("line") ? Korvane::tagPrefix(ScadaObjectType::ChannelObject) : QString();
}

} // namespace

std::vector<Finding> PointCheck::run()
{
    for (const ScadaObjectType type :
         {ScadaObjectType::Point, ScadaObjectType::RtuObject, ScadaObjectType::ChannelObject}) {
        for (const ObjectKey key : m_database.objects(type))
            check(*m_database.object(key));
    }
    return std::move(m_findings);
}

void PointCheck::check(const RuntimeDatabase::Object& object)
{
    checkParent(object);
    if (!object.control.feedback.isEmpty())
        checkTag(object, "feedback", object.control.feedback);
    if (const auto interlock = Interlock::parse(object.control.interlock); !interlock)
        add(object, Severity::Error, "malformed-interlock", QStringLiteral("interlock: %1").arg(interlock.error()));
    for (const InterlockTag& tag : InterlockTag::of(object.control.interlock))
        checkTag(object, "interlock", tag.tag);
    if (OperationCheck::isUnguarded(object)) {
        add(object, Severity::Warning, "unguarded",
            QStringLiteral("any operator can send commands: neither a higher role, a confirmation nor an interlock "
                           "stands in the way"));
    }
}

void PointCheck::checkParent(const RuntimeDatabase::Object& object)
{
    if (object.parent.isEmpty())
        return;
    const bool isUnit = object.type == ScadaObjectType::RtuObject;
    const ScadaObjectType parents = isUnit ? ScadaObjectType::ChannelObject : ScadaObjectType::RtuObject;
    if (object.type == ScadaObjectType::ChannelObject) {
        add(object, Severity::Error, "unknown-reference", QStringLiteral("parent: a line belongs to nothing"));
    } else if (!m_database.findByName(parents, object.parent).isValid()) {
        add(object, Severity::Error, "unknown-reference",
            QStringLiteral("parent: there is no %1 \"%2\"")
                .arg(isUnit ? QStringLiteral("line") : QStringLiteral("unit"), object.parent));
    }
}

void PointCheck::checkTag(const RuntimeDatabase::Object& object, const char* column, const QString& tag)
{
    if (const auto found = TagCheck::run(tag, m_database))
        add(object, Severity::Error, "unknown-reference",
            QStringLiteral("%1: %2").arg(QLatin1String(column), found->text));
}

void PointCheck::add(const RuntimeDatabase::Object& object, Severity severity, const char* code, const QString& text)
{
    m_findings.push_back(
        {severity, QLatin1String(code), QStringLiteral("points.csv"), lineOf(object), object.name, text});
}

int PointCheck::lineOf(const RuntimeDatabase::Object& object)
{
    if (m_lines.isEmpty()) {
        const auto list = CsvText::read(m_project.pointFile());
        if (!list)
            return 0;
        for (const CsvText::Row& row : list->rows()) {
            const QString kind = CsvText::value(row, list->column("kind")).toLower();
            m_lines.insert(prefixOf(kind) + CsvText::value(row, list->column("name")), row.line);
        }
    }
    return m_lines.value(Korvane::tagPrefix(object.type) + object.name);
}
