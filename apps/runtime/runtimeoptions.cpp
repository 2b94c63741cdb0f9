#include "apps/runtime/runtimeoptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

/// "10s", "500ms", "2min", "1h" or a number of seconds.
std::optional<std::chrono::milliseconds> parseDuration(const QString& text)
{
    struct Unit
    {
        const char* name;
        double ms;
    };
    constexpr Unit units[] = {{"ms", 1}, {"min", 60000}, {"s", 1000}, {"h", 3600000}, {"", 1000}};
    for (const Unit& unit : units) {
        const QLatin1String name(unit.name);
        if (!text.endsWith(name))
            continue;
        bool isNumber = false;
        const double count = text.leftRef(text.size() - name.size()).toDouble(&isNumber);
        if (isNumber && count >= 0 && count * unit.ms < 1e12)
            return std::chrono::milliseconds(static_cast<qint64>(count * unit.ms));
        return {};
    }
    return {};
}

} // namespace

tl::expected<RuntimeOptions, QString> RuntimeOptions::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows the pages of a project with live values."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("project"), QStringLiteral("Folder of the project."));
    const auto option = [&parser](const char* name, const char* text, const char* value) {
        parser.addOption({QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value)});
    };
    option("page", "Page to open instead of the project's start page.", "name");
    option("screenshot", "Writes a picture of the page, once it shows values or when --after has passed.", "file");
    option("after", "Prints the table of the points after this time and ends: 10s, 500ms, 2min.", "duration");
    option("source",
           "Where values come from: recording:FILE[?speed=N&loop=1&map=FILE], recording:- (standard input) or "
           "simulation[?seed=N].",
           "address");
    option("record",
           "Records what the source delivers in the time of --after, as fast as it can, in a file that can be played, "
           "and ends.",
           "file");
    option("zoom", "Size of the picture of a run without a window, 1 for the page's own.", "factor");
    parser.addOption(
        {QStringLiteral("no-store"), QStringLiteral("Keeps no statistics beyond the end of the program.")});
    parser.addOption({QStringLiteral("silent"), QStringLiteral("Shows alarms without sound and speech.")});
    parser.addOption({QStringLiteral("trust"),
                      QStringLiteral("Runs the project's scripts this time, without asking whether it is trusted.")});
    parser.addOption(
        {QStringLiteral("benchmark"),
         QStringLiteral("Draws every change off screen for the time of --after, and prints what it cost.")});
    if (!parser.parse(arguments))
        return tl::make_unexpected(parser.errorText());
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all")))
        parser.showHelp();

    RuntimeOptions options;
    if (parser.positionalArguments().size() != 1)
        return tl::make_unexpected(QStringLiteral("name one project folder; --help tells more"));
    options.project = parser.positionalArguments().constFirst();
    options.page = parser.value(QStringLiteral("page"));
    options.screenshot = parser.value(QStringLiteral("screenshot"));
    options.source = parser.value(QStringLiteral("source"));
    options.record = parser.value(QStringLiteral("record"));
    options.isBenchmark = parser.isSet(QStringLiteral("benchmark"));
    options.areScriptsTrusted = parser.isSet(QStringLiteral("trust"));
    options.isSilent = parser.isSet(QStringLiteral("silent"));
    options.isStored = !parser.isSet(QStringLiteral("no-store"));
    if (parser.isSet(QStringLiteral("after"))) {
        options.after = parseDuration(parser.value(QStringLiteral("after")));
        if (!options.after)
            return tl::make_unexpected(QStringLiteral("--after %1: no duration, as 10s, 500ms or 2min")
                                           .arg(parser.value(QStringLiteral("after"))));
    }
    if (!options.record.isEmpty() && !options.after)
        return tl::make_unexpected(QStringLiteral("--record needs --after: how much to record"));
    if (parser.isSet(QStringLiteral("zoom"))) {
        bool isNumber = false;
        options.zoom = parser.value(QStringLiteral("zoom")).toDouble(&isNumber);
        if (!isNumber || !(options.zoom >= 0.1 && options.zoom <= 8))
            return tl::make_unexpected(QStringLiteral("--zoom: a factor from 0.1 to 8"));
    }
    return options;
}
