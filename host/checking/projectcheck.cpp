#include "host/checking/projectcheck.h"

#include "host/actions/canvasactionmanagerfactory.h"
#include "host/checking/accountnumbers_p.h"
#include "host/checking/pagecheck_p.h"
#include "host/checking/pointcheck_p.h"
#include "host/core/project.h"
#include "host/runtime/pointlist.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace {

using Severity = Finding::Severity;

const QString projectFile = QStringLiteral("project.json");
const QString listFile = QStringLiteral("points.csv");

/// A text that begins with the name of its file, without that.
QString withoutFile(const QString& text, const QString& fileName)
{
    return text.startsWith(fileName) ? text.mid(fileName.size() + 2) : text;
}

// "FILE, line 12, column 3 (NAME), object "P1": TEXT", as lists of points tell.
Finding pointProblem(const QString& problem, const QString& fileName)
{
    static const QRegularExpression form(
        QStringLiteral("^line (\\d+)(?:, column \\d+ \\((.*?)\\))?(?:, object \"(.*?)\")?: (.*)$"),
        QRegularExpression::DotMatchesEverythingOption);
    Finding finding{Severity::Error, QStringLiteral("point-list"), listFile, 0, {}, withoutFile(problem, fileName)};
    const QRegularExpressionMatch match = form.match(finding.text);
    if (match.hasMatch()) {
        finding.line = match.captured(1).toInt();
        finding.object = match.captured(3);
        const QString column = match.captured(2);
        finding.text = column.isEmpty() ? match.captured(4) : QStringLiteral("%1: %2").arg(column, match.captured(4));
    }
    return finding;
}

void append(std::vector<Finding>& findings, std::vector<Finding>&& more)
{
    std::stable_sort(more.begin(), more.end(), [](const Finding& a, const Finding& b) { return a.line < b.line; });
    findings.insert(findings.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

} // namespace

std::vector<Finding> ProjectCheck::run(const QString& folder)
{
    const auto project = Project::read(folder);
    if (!project) {
        const QString text = withoutFile(project.error(), QDir(folder).filePath(projectFile));
        return {{Severity::Error, QStringLiteral("unreadable-project"), projectFile, 0, {}, text}};
    }
    RuntimeDatabase database;
    const auto problems = PointList::load(project->pointFile(), database);
    std::vector<Finding> findings;
    if (!problems) {
        const QString text = withoutFile(problems.error(), project->pointFile());
        findings.push_back({Severity::Error, QStringLiteral("unreadable-points"), listFile, 0, {}, text});
    } else {
        for (const QString& problem : *problems)
            findings.push_back(pointProblem(problem, project->pointFile()));
    }
    std::vector<Finding> others = run(*project, database);
    findings.insert(findings.end(), std::make_move_iterator(others.begin()), std::make_move_iterator(others.end()));
    return findings;
}

std::vector<Finding> ProjectCheck::run(const Project& project, const RuntimeDatabase& database)
{
    std::vector<Finding> findings;
    const QStringList pages = project.pages();
    if (!pages.contains(project.startPage)) {
        findings.push_back({Severity::Error,
                            QStringLiteral("unknown-page"),
                            projectFile,
                            0,
                            {},
                            QStringLiteral("the start page \"%1\" is no page of the project").arg(project.startPage)});
    }
    append(findings, PointCheck(project, database).run());
    CanvasActionManagerFactory managers(nullptr);
    PageCheck check(project, database, managers);
    if (const auto accounts = AccountNumbers::read(project.path(QStringLiteral("accounts.db"))))
        check.setAccounts(*accounts);
    for (const QString& page : pages)
        append(findings, check.run(page));
    return findings;
}
