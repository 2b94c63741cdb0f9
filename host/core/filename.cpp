#include "host/core/filename_p.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("FileName", text);
}

bool isForbidden(QChar c)
{
    return c.category() == QChar::Other_Control || QStringLiteral("/\\:*?\"<>|").contains(c);
}

// Names of devices on one of the systems, also in front of a dot.
bool isReserved(const QString& name)
{
    static const QRegularExpression devices(QStringLiteral("^(con|prn|aux|nul|(com|lpt)[1-9])($|\\.)"),
                                            QRegularExpression::CaseInsensitiveOption);
    return devices.match(name).hasMatch();
}

} // namespace

QString FileName::problem(const QString& name)
{
    if (name.isEmpty())
        return translated(QT_TRANSLATE_NOOP("FileName", "A name is needed."));
    if (name != name.trimmed())
        return translated(QT_TRANSLATE_NOOP("FileName", "\"%1\" begins or ends with a blank.")).arg(name);
    if (std::any_of(name.begin(), name.end(), isForbidden))
        return translated(QT_TRANSLATE_NOOP("FileName", "\"%1\" has a character that a file's name can't have."))
            .arg(name);
    if (name.startsWith(QLatin1Char('.')))
        return translated(QT_TRANSLATE_NOOP("FileName", "\"%1\" begins with a dot: the file would be hidden."))
            .arg(name);
    if (isReserved(name))
        return translated(QT_TRANSLATE_NOOP("FileName", "\"%1\" is a name that some systems keep for themselves."))
            .arg(name);
    if (name.toUtf8().size() > longest)
        return translated(QT_TRANSLATE_NOOP("FileName", "The name is longer than %1 bytes.")).arg(longest);
    return {};
}
