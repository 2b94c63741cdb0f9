#include "host/core/project.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

namespace {

constexpr qint64 mostBytes = 1 << 20;

/// Reads members of the project file and remembers the first that is wrong.
class Members
{
public:
    explicit Members(const QJsonObject& object) : m_object(object) {}

    QString text(const char* name)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        if (!value.isUndefined() && !value.isString())
            refuse(name, QStringLiteral("a text"));
        return value.toString();
    }
    bool flag(const char* name, bool otherwise)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        if (!value.isUndefined() && !value.isBool())
            refuse(name, QStringLiteral("true or false"));
        return value.toBool(otherwise);
    }
    int number(const char* name, int otherwise, int low, int high)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        const int number = value.toInt(value.isUndefined() ? otherwise : low - 1);
        if (number < low || number > high)
            refuse(name, QStringLiteral("a whole number from %1 to %2").arg(low).arg(high));
        return number;
    }
    using Milliseconds = std::chrono::milliseconds;
    Milliseconds duration(const char* name, Milliseconds otherwise, Milliseconds shortest, Milliseconds longest)
    {
        return Milliseconds(number(name, static_cast<int>(otherwise.count()), static_cast<int>(shortest.count()),
                                   static_cast<int>(longest.count())));
    }
    QJsonObject object(const char* name)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        if (!value.isUndefined() && !value.isObject())
            refuse(name, QStringLiteral("an object"));
        return value.toObject();
    }
    void refuse(const char* name, const QString& wanted)
    {
        if (m_problem.isEmpty())
            m_problem = QStringLiteral("\"%1\" must be %2").arg(QLatin1String(name), wanted);
    }
    QString problem() const { return m_problem; }

private:
    QJsonObject m_object;
    QString m_problem;
};

} // namespace

tl::expected<Project, QString> Project::read(const QString& folder)
{
    const QString fileName = QDir(folder).filePath(QStringLiteral("project.json"));
    const auto refused = [&fileName](const QString& reason) {
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(fileName, reason));
    };
    const QFileInfo info(fileName);
    if (!QFileInfo(folder).isDir())
        return tl::make_unexpected(QStringLiteral("%1: there is no such project folder").arg(folder));
    if (!info.isFile())
        return refused(QStringLiteral("there is no such file, so the folder is no project"));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return refused(QStringLiteral("can't be read: %1").arg(file.errorString()));
    const QByteArray text = file.read(mostBytes);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        return refused(
            QStringLiteral("line %1: %2").arg(text.left(error.offset).count('\n') + 1).arg(error.errorString()));
    }
    if (!document.isObject())
        return refused(QStringLiteral("is no JSON object"));
    Members members(document.object());
    if (members.number("version", 0, 0, 1000000) > version)
        return refused(QStringLiteral("is of a newer version than this program knows (%1)").arg(version));
    Project project;
    project.folder = QFileInfo(folder).canonicalFilePath(); // what is asked for trust is what is read
    project.name = members.text("name");
    project.startPage = members.text("startPage");
    project.source = members.text("source");
    project.timeZone = members.text("timeZone");
    project.tick = members.duration("tickMs", project.tick, shortestTick, longestTick);
    project.scriptLimit =
        members.duration("scriptLimitMs", project.scriptLimit, shortestScriptLimit, longestScriptLimit);
    project.isSecured = members.flag("security", false);
    if (!project.timeZone.isEmpty() && !QTimeZone(project.timeZone.toLatin1()).isValid())
        members.refuse("timeZone", QStringLiteral("the name of a time zone, as \"Europe/Berlin\""));
    const QJsonObject alarms = members.object("alarms");
    const QJsonObject accounts = members.object("accounts");
    if (!members.problem().isEmpty())
        return refused(members.problem());
    const auto presentation = AlarmPresentation::read(alarms, project.folder);
    if (!presentation)
        return refused(presentation.error());
    project.alarms = *presentation;
    const auto accountSettings = AccountSettings::read(accounts, project.folder);
    if (!accountSettings)
        return refused(accountSettings.error());
    project.accounts = *accountSettings;
    if (project.name.isEmpty())
        project.name = QFileInfo(project.folder).fileName();
    return project;
}

QString Project::path(const QString& fileName) const
{
    return QDir(folder).absoluteFilePath(fileName);
}

QStringList Project::pages() const
{
    QStringList names;
    const QDir pages(folder + QStringLiteral("/pages"));
    for (const QFileInfo& file : pages.entryInfoList({QStringLiteral("*.pws")}, QDir::Files, QDir::Name))
        names.append(file.completeBaseName());
    return names;
}
