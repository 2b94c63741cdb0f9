#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/project/output.h"
#include "apps/support/program.h"

#include <QApplication>
#include <QTranslator>

#include <algorithm>
#include <array>

namespace {

struct Command
{
    const char* name;
    const char* arguments;
    const char* summary;
    int (*run)(const QStringList& arguments);
};

constexpr std::array<Command, 8> commands = {{
    {"check", "[folder] [--json]", "finds what is wrong with a project", &Commands::check},
    {"where-used", "TAG [folder] [--json]", "tells every place where an object is named", &Commands::whereUsed},
    {"rename", "OLD NEW [folder] [--dry-run]", "gives an object another name everywhere; --undo takes it back",
     &Commands::rename},
    {"render", "PAGE [folder] -o FILE", "draws a page into a picture, PDF or SVG", &Commands::render},
    {"import", "FILE [folder] [--dry-run]", "merges a list of points into the project's", &Commands::importPoints},
    {"export", "[folder] -o FILE", "writes the list of points with all columns", &Commands::exportPoints},
    {"user", "add|change|... NAME [folder]", "manages the user accounts; --list tells them", &Commands::user},
    {"audit", "[folder] [--list] [--csv]", "proves that the audit log is as it was written", &Commands::audit},
}};

QString helpText()
{
    QString text =
        QStringLiteral("Usage: korvane-project COMMAND ...\nWorks on the files of a project, without a window.\n\n");
    for (const Command& command : commands) {
        text +=
            QStringLiteral("  %1 %2\n")
                .arg(QStringLiteral("%1 %2").arg(QLatin1String(command.name), QLatin1String(command.arguments)), -40)
                .arg(QLatin1String(command.summary));
    }
    return text +
           QStringLiteral("\nCOMMAND --help tells more. Exit codes: 0 fine, 1 problems or failed, 2 wrong usage.\n");
}

int run(const QStringList& arguments)
{
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        Output::print(helpText());
        return ExitCode::fine;
    }
    if (name == QLatin1String("--version") || name == QLatin1String("-v")) {
        Output::print(
            QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion()));
        return ExitCode::fine;
    }
    const auto command = std::find_if(commands.begin(), commands.end(),
                                      [&name](const Command& each) { return name == QLatin1String(each.name); });
    if (command != commands.end())
        return command->run(arguments);
    Program::complain(name.isEmpty() ? QStringLiteral("name a command; --help tells more")
                                     : QStringLiteral("there is no command \"%1\"; --help tells more").arg(name));
    return ExitCode::wrongUsage;
}

} // namespace

int main(int argc, char** argv)
{
    Program::prepare(true); // whatever is drawn goes into files
    QApplication app(argc, argv);
    Program::name(QStringLiteral("korvane-project"), QStringLiteral(KORVANE_VERSION));
    QTranslator translator;
    Program::loadTranslation(translator);
    return run(QCoreApplication::arguments());
}
