#include "apps/designer/designeroptions.h"

#include <QCommandLineParser>

tl::expected<DesignerOptions, QString> DesignerOptions::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Edits the pages of a project."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("project"), QStringLiteral("Folder of the project."));
    const auto option = [&parser](const char* name, const char* text, const char* value) {
        parser.addOption({QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value)});
    };
    option("page", "Page to open instead of the project's start page.", "name");
    option("select", "Shape to select on it instead of the page itself.", "name");
    option("screenshot", "Writes a picture of the window and ends.", "file");
    parser.addOption({QStringLiteral("trust"),
                      QStringLiteral("Lets the project's scripts be tried, without asking whether it is trusted.")});
    if (!parser.parse(arguments))
        return tl::make_unexpected(parser.errorText());
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all")))
        parser.showHelp();
    if (parser.positionalArguments().size() != 1)
        return tl::make_unexpected(QStringLiteral("name one project folder; --help tells more"));
    DesignerOptions options;
    options.project = parser.positionalArguments().constFirst();
    options.page = parser.value(QStringLiteral("page"));
    options.object = parser.value(QStringLiteral("select"));
    options.screenshot = parser.value(QStringLiteral("screenshot"));
    options.areScriptsTrusted = parser.isSet(QStringLiteral("trust"));
    return options;
}
