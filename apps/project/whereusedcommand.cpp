#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/project/openedproject.h"
#include "apps/project/output.h"
#include "apps/support/program.h"
#include "host/projectfiles/taguses.h"
#include "platform/data/tagresolution.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QString textOf(const TagUse& use)
{
    const QString shape = use.shape.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(use.shape);
    return QStringLiteral("%1:%2:%3 %4: %5\n").arg(use.file).arg(use.line).arg(shape, use.what, use.tag);
}

QJsonObject jsonOf(const TagUse& use)
{
    return {{QStringLiteral("file"), use.file}, {QStringLiteral("line"), use.line},
            {QStringLiteral("page"), use.page}, {QStringLiteral("object"), use.shape},
            {QStringLiteral("what"), use.what}, {QStringLiteral("tag"), use.tag}};
}

} // namespace

int Commands::whereUsed(const QStringList& arguments)
{
    CommandLine line("where-used", "Tells every place of a project where an object is named, with any field.");
    line.addArgument("tag", "The object: NAME of a point, @R::NAME of a unit, @C::NAME of a line, or #ID.");
    line.addFolder();
    line.addFlag("json", "Prints the places as JSON.");
    if (const auto ended = line.parse(arguments))
        return *ended;
    const auto opened = OpenedProject::open(line.folder());
    if (!opened)
        return ExitCode::failed;
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(line.argument(0), &opened->database);
    const ObjectKey object{link.type, link.id};
    if (!opened->database.object(object)) {
        Program::complain(QStringLiteral("\"%1\" names no object of the project").arg(line.argument(0)));
        return ExitCode::failed;
    }
    const TagUse::Result found = TagUse::of(opened->project, opened->database, object);
    QJsonArray list;
    QString text;
    for (const TagUse& use : found.uses) {
        list.append(jsonOf(use));
        text += textOf(use);
    }
    if (line.isSet("json"))
        Output::print(QJsonObject{{QStringLiteral("uses"), list}});
    else
        Output::print(text + QStringLiteral("%1 places\n").arg(found.uses.size()));
    for (const QString& problem : found.problems)
        Program::complain(problem);
    return found.problems.isEmpty() ? ExitCode::fine : ExitCode::failed;
}
