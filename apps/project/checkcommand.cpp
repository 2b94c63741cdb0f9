#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/project/openedproject.h"
#include "apps/project/output.h"
#include "host/checking/projectcheck.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

bool isError(const Finding& finding)
{
    return finding.severity == Finding::Severity::Error;
}

QString severityOf(const Finding& finding)
{
    return isError(finding) ? QStringLiteral("error") : QStringLiteral("warning");
}

QString textOf(const Finding& finding)
{
    const QString line = finding.line > 0 ? QStringLiteral(":%1").arg(finding.line) : QString();
    const QString object = finding.object.isEmpty() ? QString() : QStringLiteral("\"%1\": ").arg(finding.object);
    return QStringLiteral("%1%2: %3: %4%5 [%6]\n")
        .arg(finding.file, line, severityOf(finding), object, finding.text, finding.code);
}

QJsonObject jsonOf(const Finding& finding)
{
    QJsonObject object{{QStringLiteral("severity"), severityOf(finding)},
                       {QStringLiteral("code"), finding.code},
                       {QStringLiteral("file"), finding.file},
                       {QStringLiteral("object"), finding.object},
                       {QStringLiteral("text"), finding.text}};
    if (finding.line > 0)
        object.insert(QStringLiteral("line"), finding.line);
    return object;
}

} // namespace

int Commands::check(const QStringList& arguments)
{
    CommandLine line("check", "Finds what is wrong with a project. Nothing of it is run.");
    line.addFolder();
    line.addFlag("json", "Prints the findings as JSON.");
    if (const auto ended = line.parse(arguments))
        return *ended;
    if (!OpenedProject::recover(line.folder()))
        return ExitCode::failed;
    const std::vector<Finding> findings = ProjectCheck::run(line.folder());
    const auto errors = static_cast<int>(std::count_if(findings.begin(), findings.end(), &isError));
    const int warnings = static_cast<int>(findings.size()) - errors;
    if (line.isSet("json")) {
        QJsonArray list;
        for (const Finding& finding : findings)
            list.append(jsonOf(finding));
        Output::print(QJsonObject{{QStringLiteral("findings"), list},
                                  {QStringLiteral("errors"), errors},
                                  {QStringLiteral("warnings"), warnings}});
    } else {
        QString text;
        for (const Finding& finding : findings)
            text += textOf(finding);
        Output::print(text + QStringLiteral("%1 errors, %2 warnings\n").arg(errors).arg(warnings));
    }
    return errors > 0 ? ExitCode::failed : ExitCode::fine;
}
