#include "apps/project/commandline.h"

#include "apps/support/program.h"

#include <QTextStream>

CommandLine::CommandLine(const char* command, const char* description)
{
    m_parser.setApplicationDescription(QString::fromLatin1(description));
    m_parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Tells what the command takes.")});
    m_parser.addPositionalArgument(QString::fromLatin1(command), QString(), QString::fromLatin1(command));
}

void CommandLine::addArgument(const char* name, const char* text)
{
    m_parser.addPositionalArgument(QString::fromLatin1(name), QString::fromLatin1(text));
    ++m_needed;
}

void CommandLine::addFolder()
{
    m_parser.addPositionalArgument(QStringLiteral("folder"),
                                   QStringLiteral("Folder of the project; the working folder unless it is given."),
                                   QStringLiteral("[folder]"));
    m_hasFolder = true;
}

void CommandLine::addFlag(const char* name, const char* text, bool replacesArguments)
{
    m_parser.addOption({QString::fromLatin1(name), QString::fromLatin1(text)});
    if (replacesArguments)
        m_replacement = QString::fromLatin1(name);
}

void CommandLine::addOption(const char* name, const char* text, const char* value)
{
    m_parser.addOption(
        {QString::fromLatin1(name).split(QLatin1Char(' ')), QString::fromLatin1(text), QString::fromLatin1(value)});
}

std::optional<int> CommandLine::parse(const QStringList& arguments)
{
    const auto refuse = [](const QString& text) {
        Program::complain(QStringLiteral("%1; --help tells more").arg(text));
        return ExitCode::wrongUsage;
    };
    if (!m_parser.parse(arguments))
        return refuse(m_parser.errorText());
    if (m_parser.isSet(QStringLiteral("help"))) {
        QTextStream(stdout) << m_parser.helpText();
        return ExitCode::fine;
    }
    if (!m_replacement.isEmpty() && m_parser.isSet(m_replacement))
        m_needed = 0;
    const int given = m_parser.positionalArguments().size() - 1;
    if (given < m_needed)
        return refuse(QStringLiteral("arguments are missing"));
    if (given > m_needed + (m_hasFolder ? 1 : 0))
        return refuse(QStringLiteral("there are too many arguments"));
    return std::nullopt;
}

QString CommandLine::folder() const
{
    const QStringList given = m_parser.positionalArguments();
    return given.size() > m_needed + 1 ? given.constLast() : QStringLiteral(".");
}
