#include "host/projectfiles/objectrenamer.h"

#include "host/core/project.h"
#include "host/projectfiles/filechanges.h"
#include "host/projectfiles/pagerename_p.h"
#include "host/projectfiles/pointlistrename_p.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/tagresolution.h"

#include <QFile>

namespace {

using Korvane::ScadaObjectType;
using ObjectRenamer::Result;
using Done = tl::expected<void, QString>;

tl::unexpected<QString> refused(const QString& text)
{
    return tl::make_unexpected(text);
}

Done stage(FileChanges* changes, const QString& file, const QByteArray& bytes)
{
    return changes ? changes->stage(file, bytes) : Done();
}

Done renameOnPage(const Project& project, const QString& page, const ObjectRename& rename, FileChanges* changes,
                  Result& result)
{
    const QString name = QStringLiteral("pages/%1.pws").arg(page);
    QFile file(project.pageFile(page));
    if (!file.open(QIODevice::ReadOnly))
        return refused(QStringLiteral("%1: can't be read: %2").arg(name, file.errorString()));
    const auto text = PageText::parse(file.readAll());
    if (!text)
        return refused(QStringLiteral("%1: %2").arg(name, text.error()));
    const TextEdits edits = PageRename(name, *text, rename, result).run();
    return edits.isEmpty() ? Done() : stage(changes, name, edits.applied(text->bytes()));
}

} // namespace

tl::expected<ObjectRename, QString> ObjectRenamer::ask(const RuntimeDatabase& database, const QString& oldTag,
                                                       const QString& newName)
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(oldTag, &database);
    const RuntimeDatabase::Object* object = database.object({link.type, link.id});
    if (!object)
        return refused(QStringLiteral("\"%1\" names no object of the project").arg(oldTag));
    if (!link.field.isEmpty())
        return refused(QStringLiteral("\"%1\" names a field; objects have names").arg(oldTag));
    const QString prefix = Korvane::tagPrefix(object->type);
    const bool hasPrefix = !prefix.isEmpty() && newName.startsWith(prefix);
    const ObjectRename rename{object->type, object->name, hasPrefix ? newName.mid(prefix.size()) : newName};
    if (!Korvane::isAddressableName(rename.after, object->type)) {
        return refused(QStringLiteral("no tag could reach the name \"%1\": it is empty, a number, \"#\" with an id, "
                                      "begins with \"@\" or ends in \":\" and a field")
                           .arg(rename.after));
    }
    if (database.findByName(object->type, rename.after).isValid())
        return refused(QStringLiteral("the name \"%1\" is taken").arg(rename.after));
    return rename;
}

tl::expected<Result, QString> ObjectRenamer::run(const Project& project, const ObjectRename& rename,
                                                 FileChanges* changes)
{
    Result result;
    PointListRename list(project, rename, result);
    const auto files = list.run();
    if (!files)
        return refused(files.error());
    for (const PointListRename::File& file : *files) {
        if (auto staged = stage(changes, file.name, file.bytes); !staged)
            return refused(staged.error());
    }
    for (const QString& page : project.pages()) {
        if (auto done = renameOnPage(project, page, rename, changes, result); !done)
            return refused(done.error());
    }
    return result;
}
