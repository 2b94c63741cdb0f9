#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/project/output.h"
#include "apps/support/program.h"
#include "host/alarmview/csvwriter.h"
#include "host/control/auditlog.h"
#include "host/core/project.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

namespace {

constexpr int usualCount = 100;
constexpr int widestCell = 40;

/// What a terminal shows as it is, cut to a width: names are whatever somebody typed at a log-on.
QString shown(const QString& text, int widest = std::numeric_limits<int>::max())
{
    QVector<uint> letters = text.toUcs4();
    for (uint& each : letters) {
        if (!QChar::isPrint(each))
            each = QChar::ReplacementCharacter;
    }
    if (letters.size() <= widest)
        return QString::fromUcs4(letters.constData(), letters.size());
    return QString::fromUcs4(letters.constData(), widest - 3) + QStringLiteral("...");
}

QString noteOf(const AuditLine& line)
{
    QStringList parts{line.reason, line.text};
    parts.removeAll(QString());
    return parts.join(QStringLiteral("; "));
}

QString cellOf(const QString& text)
{
    return shown(text, widestCell);
}

QStringList rowOf(const AuditLine& line)
{
    const QString user =
        line.secondUser.isEmpty() ? line.user : QStringLiteral("%1 and %2").arg(line.user, line.secondUser);
    QString value = line.value.toString();
    if (const QString before = line.before.toString(); !before.isEmpty())
        value = QStringLiteral("%1 -> %2").arg(before, value);
    return {QString::number(line.number),
            line.time.toString(Qt::ISODateWithMs),
            cellOf(line.workplace),
            cellOf(user),
            cellOf(line.operation),
            cellOf(line.subject),
            cellOf(value),
            cellOf(line.outcome),
            shown(noteOf(line))};
}

/// Columns as wide as they need to be, but for the last, which ends where it does.
void printTable(const QList<AuditLine>& lines)
{
    std::vector<QStringList> rows{{QStringLiteral("LINE"), QStringLiteral("TIME"), QStringLiteral("WORKPLACE"),
                                   QStringLiteral("USER"), QStringLiteral("OPERATION"), QStringLiteral("SUBJECT"),
                                   QStringLiteral("VALUE"), QStringLiteral("OUTCOME"), QStringLiteral("NOTE")}};
    for (const AuditLine& line : lines)
        rows.push_back(rowOf(line));
    const int last = rows.front().size() - 1;
    for (int column = 0; column < last; ++column) {
        int width = 0;
        for (const QStringList& row : rows)
            width = std::max(width, row[column].size());
        for (QStringList& row : rows)
            row[column] = row[column].leftJustified(width);
    }
    for (const QStringList& row : rows)
        Output::print(row.join(QStringLiteral("  ")).trimmed() + QLatin1Char('\n'));
}

void printCsv(const QList<AuditLine>& lines)
{
    const auto print = [](const QVariantList& values) { Output::print(QString::fromUtf8(CsvWriter::line(values))); };
    print({QStringLiteral("line"), QStringLiteral("time"), QStringLiteral("workplace"), QStringLiteral("user"),
           QStringLiteral("second_user"), QStringLiteral("operation"), QStringLiteral("subject"),
           QStringLiteral("before"), QStringLiteral("value"), QStringLiteral("outcome"), QStringLiteral("reason"),
           QStringLiteral("text"), QStringLiteral("hash")});
    for (const AuditLine& line : lines) {
        print({line.number, line.time, line.workplace, line.user, line.secondUser, line.operation, line.subject,
               line.before, line.value, line.outcome, line.reason, line.text, line.hash});
    }
}

struct Findings
{
    tl::expected<qint64, QString> verified;
    tl::expected<QList<AuditLine>, QString> lines;
};

/// What is in the file, whoever writes to it meanwhile.
tl::expected<Findings, QString> inspect(const QString& fileName, int most)
{
    constexpr int attempts = 20;
    for (int i = 0; i < attempts; ++i) {
        AuditLog log;
        const auto opened = log.openReadOnly(fileName);
        Findings found{log.verify(), log.newest(most)};
        if (log.isOvertaken())
            continue;
        if (!opened)
            return tl::make_unexpected(opened.error());
        // What was written meanwhile is not part of the verdict.
        while (found.verified && found.lines && !found.lines->isEmpty() &&
               found.lines->first().number > *found.verified)
            found.lines->removeFirst();
        return found;
    }
    return tl::make_unexpected(QStringLiteral("%1: programs keep opening and closing it; try again").arg(fileName));
}

/// How many lines are to be printed; none where that is no number of lines.
std::optional<int> countOf(const CommandLine& line)
{
    if (!line.isSet("count"))
        return usualCount;
    bool isNumber = false;
    const int count = line.value("count").toInt(&isNumber);
    const bool isPrinted = line.isSet("list") || line.isSet("csv");
    return isNumber && count > 0 && isPrinted ? std::optional<int>(count) : std::nullopt;
}

} // namespace

int Commands::audit(const QStringList& arguments)
{
    CommandLine line("audit",
                     "Goes through the audit log of a project, all of it, and tells how many lines are as they "
                     "were written, or the first that is not. Nothing is changed, and the runtime may be at "
                     "work meanwhile.");
    line.addFolder();
    line.addFlag("list", "Prints the newest lines as well, the newest first.");
    line.addFlag("csv", "Prints them as comma-separated values, all columns, and nothing else.");
    line.addOption("count", "How many lines are printed, with --list or --csv; 100 unless it is given.", "count");
    if (const auto ended = line.parse(arguments))
        return *ended;
    const auto count = countOf(line);
    if (!count) {
        Program::complain(QStringLiteral("--count takes a number of lines, 1 or more, and goes with --list or --csv"));
        return ExitCode::wrongUsage;
    }
    const auto project = Project::read(line.folder());
    if (!project)
        return Output::failed(project.error());
    const auto found = inspect(project->operatingFile(), *count);
    if (!found)
        return Output::failed(found.error());
    if (!found->lines)
        return Output::failed(found->lines.error());
    if (line.isSet("csv"))
        printCsv(*found->lines);
    else if (line.isSet("list"))
        printTable(*found->lines);
    if (!found->verified)
        return Output::failed(found->verified.error());
    if (!line.isSet("csv"))
        Output::print(QStringLiteral("%1 lines, all as they were written\n").arg(*found->verified));
    return ExitCode::fine;
}
