#include "host/runtime/pagesearch.h"

#include "host/core/project.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

bool isTagOf(const QString& tag, const QString& object)
{
    return tag.startsWith(object) && (tag.size() == object.size() || tag.at(object.size()) == QLatin1Char(':'));
}

/// Tags stand at several depths: of targets, of conditions and of what later versions add.
bool names(const QJsonValue& value, const QString& object)
{
    if (value.isArray()) {
        const QJsonArray array = value.toArray();
        return std::any_of(array.begin(), array.end(),
                           [&object](const QJsonValue& each) { return names(each, object); });
    }
    const QJsonObject members = value.toObject();
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (member.key() == QLatin1String("tag") ? isTagOf(member.value().toString(), object)
                                                 : names(member.value(), object))
            return true;
    }
    return false;
}

} // namespace

QStringList pagesNaming(const Project& project, const QString& object)
{
    QStringList found;
    for (const QString& page : project.pages()) {
        QFile file(project.pageFile(page));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        if (!names(QJsonDocument::fromJson(file.readAll()).object(), object))
            continue;
        if (page == project.startPage)
            found.prepend(page);
        else
            found.append(page);
    }
    return found;
}
