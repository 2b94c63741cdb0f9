#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/project/openedproject.h"
#include "apps/project/output.h"
#include "apps/support/program.h"
#include "host/projectfiles/filechanges.h"
#include "host/projectfiles/objectrenamer.h"
#include "platform/data/datalinkinfo.h"

#include <QSet>

namespace {

int undo(const QString& folder)
{
    if (!OpenedProject::recover(folder))
        return ExitCode::failed;
    const auto undone = FileChanges::undo(folder);
    if (!undone)
        return Output::failed(undone.error());
    Output::print(QStringLiteral("taken back: %1\n").arg(*undone));
    return ExitCode::fine;
}

// As a list of differences, two lines a place.
void print(const ObjectRenamer::Result& result)
{
    QString text;
    for (const ObjectRenamer::Change& change : result.changes) {
        const QString object = change.object.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(change.object);
        text += QStringLiteral("%1:%2:%3 %4\n- %5\n+ %6\n")
                    .arg(change.file)
                    .arg(change.line)
                    .arg(object, change.what, change.before, change.after);
    }
    for (const QString& note : result.notes)
        text += QStringLiteral("note: %1\n").arg(note);
    Output::print(text);
}

QString countText(const ObjectRenamer::Result& result)
{
    QSet<QString> files;
    for (const ObjectRenamer::Change& change : result.changes)
        files.insert(change.file);
    return QStringLiteral("%1 places in %2 files").arg(result.changes.size()).arg(files.size());
}

int preview(const OpenedProject& opened, const ObjectRename& rename)
{
    const auto result = ObjectRenamer::run(opened.project, rename, nullptr);
    if (!result)
        return Output::failed(result.error());
    print(*result);
    Output::print(QStringLiteral("%1 would be renamed; nothing was changed\n").arg(countText(*result)));
    return ExitCode::fine;
}

int perform(const OpenedProject& opened, const ObjectRename& rename)
{
    const auto changes = FileChanges::begin(opened.project.folder);
    if (!changes)
        return Output::failed(changes.error());
    const auto result = ObjectRenamer::run(opened.project, rename, changes->get());
    if (!result)
        return Output::failed(QStringLiteral("nothing was changed: %1").arg(result.error()));
    const QString prefix = Korvane::tagPrefix(rename.type);
    const QString title =
        QStringLiteral("rename of \"%1\" to \"%2\"").arg(prefix + rename.before, prefix + rename.after);
    if (const auto done = (*changes)->commit(title); !done)
        return Output::failed(done.error());
    for (const QString& note : result->notes)
        Output::print(QStringLiteral("note: %1\n").arg(note));
    Output::print(QStringLiteral("%1: %2\n").arg(title, countText(*result)));
    return ExitCode::fine;
}

} // namespace

int Commands::rename(const QStringList& arguments)
{
    CommandLine line("rename", "Gives an object another name wherever a project names it, all at once or not at all.");
    line.addArgument("old", "The object: NAME of a point, @R::NAME of a unit, @C::NAME of a line.");
    line.addArgument("new", "Its new name.");
    line.addFolder();
    line.addFlag("dry-run", "Only tells what would be changed.");
    line.addFlag("undo", "Takes the last rename back; no names are given then.", true);
    if (const auto ended = line.parse(arguments))
        return *ended;
    if (line.isSet("undo"))
        return undo(line.folder());
    const auto opened = OpenedProject::open(line.folder());
    if (!opened)
        return ExitCode::failed;
    const auto rename = ObjectRenamer::ask(opened->database, line.argument(0), line.argument(1));
    if (!rename)
        return Output::failed(rename.error());
    return line.isSet("dry-run") ? preview(*opened, *rename) : perform(*opened, *rename);
}
