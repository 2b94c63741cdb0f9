#include "host/runtime/pagesearch.h"

#include "host/core/project.h"
#include "platform/data/tagresolution.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

class Search
{
public:
    Search(ObjectKey object, ScadaRuntimeInterface& runtime) : m_object(object), m_runtime(runtime) {}

    /// Tags stand at several depths: of targets, of conditions and of what later versions add.
    bool finds(const QJsonValue& value) const
    {
        if (value.isArray()) {
            const QJsonArray array = value.toArray();
            return std::any_of(array.begin(), array.end(), [this](const QJsonValue& each) { return finds(each); });
        }
        const QJsonObject members = value.toObject();
        for (auto member = members.begin(); member != members.end(); ++member) {
            const bool isTag = member.key() == QLatin1String("tag") || member.key() == QLatin1String("bound");
            if (isTag ? isTagOfObject(member.value().toString()) : finds(member.value()))
                return true;
        }
        return false;
    }

private:
    bool isTagOfObject(const QString& tag) const
    {
        const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &m_runtime);
        const ObjectKey named{link.type, link.id};
        return named.isValid() && named == m_object;
    }

    ObjectKey m_object;
    ScadaRuntimeInterface& m_runtime;
};

} // namespace

QStringList pagesNaming(const Project& project, ObjectKey object, ScadaRuntimeInterface& runtime)
{
    const Search search(object, runtime);
    QStringList found;
    for (const QString& page : project.pages()) {
        QFile file(project.pageFile(page));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        if (!search.finds(QJsonDocument::fromJson(file.readAll()).object()))
            continue;
        if (page == project.startPage)
            found.prepend(page);
        else
            found.append(page);
    }
    return found;
}
