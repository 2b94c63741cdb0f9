#include "apps/project/openedproject.h"

#include "apps/support/program.h"
#include "host/projectfiles/filechanges.h"
#include "host/runtime/pointlist.h"

bool OpenedProject::recover(const QString& folder)
{
    const auto recovered = FileChanges::recover(folder);
    const QString text = recovered ? *recovered : recovered.error();
    if (!text.isEmpty())
        Program::complain(text);
    return recovered.has_value();
}

std::unique_ptr<OpenedProject> OpenedProject::open(const QString& folder)
{
    if (!recover(folder))
        return nullptr;
    const auto project = Project::read(folder);
    if (!project) {
        Program::complain(project.error());
        return nullptr;
    }
    auto opened = std::make_unique<OpenedProject>();
    opened->project = *project;
    const auto problems = PointList::load(project->pointFile(), opened->database);
    if (!problems) {
        Program::complain(problems.error());
        return nullptr;
    }
    for (const QString& problem : *problems)
        Program::complain(problem);
    return opened;
}
