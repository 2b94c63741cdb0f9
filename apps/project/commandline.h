#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

/// How every command of the tool ends.
namespace ExitCode {

constexpr int fine = 0;
constexpr int failed = 1; ///< also: there are problems
constexpr int wrongUsage = 2;

} // namespace ExitCode

/// The arguments of one command, "korvane-project COMMAND ...".
class CommandLine
{
public:
    CommandLine(const char* command, const char* description);

    void addArgument(const char* name, const char* text);
    /// The folder, the last argument; may be left out for the working folder.
    void addFolder();
    /// \param replacesArguments with it the command takes no arguments but the folder
    void addFlag(const char* name, const char* text, bool replacesArguments = false);
    void addOption(const char* name, const char* text, const char* value);

    /// \param arguments with the program and the command in front
    /// \returns the exit code of a command that has been dealt with: its help was asked for, or its usage is wrong and was
    /// complained about.
    std::optional<int> parse(const QStringList& arguments);

    /// By its place; the command has all of those that were added, but for the folder.
    QString argument(int place) const { return m_parser.positionalArguments().at(place + 1); }
    QString folder() const;
    bool isSet(const char* option) const { return m_parser.isSet(QLatin1String(option)); }
    QString value(const char* option) const { return m_parser.value(QLatin1String(option)); }

private:
    QCommandLineParser m_parser;
    int m_needed = 0;
    QString m_replacement; ///< the flag that replaces the arguments
    bool m_hasFolder = false;
};
