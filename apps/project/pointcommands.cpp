#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/project/openedproject.h"
#include "apps/project/output.h"
#include "apps/support/program.h"
#include "host/projectfiles/pointcells.h"
#include "host/projectfiles/pointimport.h"
#include "host/runtime/pointlist.h"

#include <QSaveFile>

namespace {

bool writeFile(const QString& name, const QByteArray& bytes)
{
    QSaveFile file(name);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    Program::complain(QStringLiteral("%1: can't be written: %2").arg(name, file.errorString()));
    return false;
}

} // namespace

int Commands::importPoints(const QStringList& arguments)
{
    CommandLine line("import",
                     "Merges a list of points into the project's: lines with an id and name that it has change "
                     "that point, others are added.");
    line.addArgument("file", "The list, with a header as points.csv has it.");
    line.addFolder();
    line.addFlag("dry-run", "Only tells what would be changed.");
    if (const auto ended = line.parse(arguments))
        return *ended;
    if (!OpenedProject::recover(line.folder()))
        return ExitCode::failed;
    const auto project = Project::read(line.folder());
    if (!project)
        return Output::failed(project.error());
    const auto merged = PointImport::merge(project->pointFile(), line.argument(0));
    if (!merged)
        return Output::failed(merged.error());
    for (const QString& note : merged->notes)
        Program::complain(note);
    QString text;
    for (const QString& added : merged->added)
        text += QStringLiteral("added: %1\n").arg(added);
    for (const QString& changed : merged->changed)
        text += QStringLiteral("changed: %1\n").arg(changed);
    text += QStringLiteral("%1 added, %2 changed, %3 unchanged\n")
                .arg(merged->added.size())
                .arg(merged->changed.size())
                .arg(merged->unchanged);
    const bool isNews = !merged->added.isEmpty() || !merged->changed.isEmpty();
    if (isNews && !line.isSet("dry-run") && !writeFile(project->pointFile(), merged->text))
        return ExitCode::failed;
    Output::print(text);
    return ExitCode::fine;
}

int Commands::exportPoints(const QStringList& arguments)
{
    CommandLine line("export", "Writes the project's list of points with all columns that there are.");
    line.addFolder();
    line.addOption("o output", "The file. Needed.", "file");
    if (const auto ended = line.parse(arguments))
        return *ended;
    if (line.value("output").isEmpty()) {
        Program::complain(QStringLiteral("-o FILE says where the list goes; --help tells more"));
        return ExitCode::wrongUsage;
    }
    const auto project = Project::read(line.folder());
    if (!project)
        return Output::failed(project.error());
    const auto list = PointList::read(project->pointFile());
    if (!list)
        return Output::failed(list.error());
    for (const QString& problem : list->problems)
        Program::complain(problem);
    if (!writeFile(line.value("output"), PointCells::list(list->objects)))
        return ExitCode::failed;
    Output::print(QStringLiteral("%1 objects\n").arg(list->objects.size()));
    return list->problems.isEmpty() ? ExitCode::fine : ExitCode::failed;
}
