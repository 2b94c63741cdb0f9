#include "host/core/project.h"

#include "host/core/jsonmembers_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
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
    QStringList texts(const char* name)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        const QJsonArray array = value.toArray();
        QStringList list;
        for (const QJsonValue& each : array)
            list.append(each.toString());
        if ((!value.isUndefined() && !value.isArray()) || list.contains(QString()))
            refuse(name, QStringLiteral("a list of names"));
        return list;
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
    if (!QFileInfo(folder).isDir())
        return tl::make_unexpected(QStringLiteral("%1: there is no such project folder").arg(folder));
    if (!QFileInfo(fileName).isFile()) {
        return tl::make_unexpected(
            QStringLiteral("%1: there is no such file, so the folder is no project").arg(fileName));
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return tl::make_unexpected(QStringLiteral("%1: can't be read: %2").arg(fileName, file.errorString()));
    return parse(file.read(mostBytes + 1), folder);
}

tl::expected<Project, QString> Project::parse(const QByteArray& text, const QString& folder)
{
    const QString fileName = QDir(folder).filePath(QStringLiteral("project.json"));
    const auto refused = [&fileName](const QString& reason) {
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(fileName, reason));
    };
    if (text.size() > mostBytes)
        return refused(QStringLiteral("is larger than %1 bytes").arg(mostBytes));
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
    project.pageOrder = members.texts("pages");
    project.removedPages = members.texts("removedPages");
    project.text = text;
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

QVariant Project::setting(const QString& member) const
{
    QJsonValue value = QJsonDocument::fromJson(text).object();
    for (const QString& each : member.split(QLatin1Char('.')))
        value = value.toObject().value(each);
    return value.isUndefined() ? QVariant() : value.toVariant();
}

tl::expected<Project, QString> Project::withSetting(const QString& member, const QVariant& value) const
{
    const QStringList path = member.split(QLatin1Char('.'));
    if (path.contains(QString()))
        return tl::make_unexpected(QStringLiteral("\"%1\" is no name of a setting").arg(member));
    if (!value.isValid())
        return parse(JsonMembers::without(text, path), folder);
    const auto valueText = JsonMembers::textOf(value);
    if (!valueText) {
        return tl::make_unexpected(QStringLiteral("\"%1\": no project file can hold this value").arg(member));
    }
    const auto changed = JsonMembers::with(text, path, *valueText);
    if (!changed)
        return tl::make_unexpected(QStringLiteral("\"%1\" can't be set: %2").arg(member, changed.error()));
    return parse(*changed, folder);
}

tl::expected<void, QString> Project::write() const
{
    QSaveFile file(settingsFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        return tl::make_unexpected(QStringLiteral("%1: can't be written: %2").arg(file.fileName(), file.errorString()));
    return {};
}

QStringList Project::pages() const
{
    QStringList others;
    const QDir files(pageFolder());
    for (const QFileInfo& file : files.entryInfoList({QStringLiteral("*.pws")}, QDir::Files, QDir::Name)) {
        if (!removedPages.contains(file.completeBaseName()))
            others.append(file.completeBaseName());
    }
    QStringList ordered;
    for (const QString& page : pageOrder) {
        if (others.removeOne(page))
            ordered.append(page);
    }
    return ordered + others;
}
