#include "apps/support/passwordprompt.h"

#include <QTextStream>

#include <iostream>
#include <string>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace {

/// Switches the terminal's echo off while it lives; does nothing where standard input is no terminal.
class SilentInput
{
public:
#ifdef Q_OS_WIN
    SilentInput() : m_input(GetStdHandle(STD_INPUT_HANDLE)), m_isTerminal(GetConsoleMode(m_input, &m_before))
    {
        if (m_isTerminal)
            SetConsoleMode(m_input, m_before & ~DWORD(ENABLE_ECHO_INPUT));
    }
    ~SilentInput()
    {
        if (m_isTerminal)
            SetConsoleMode(m_input, m_before);
    }
#else
    SilentInput() : m_isTerminal(tcgetattr(STDIN_FILENO, &m_before) == 0)
    {
        if (!m_isTerminal)
            return;
        termios silent = m_before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        silent.c_lflag |= static_cast<tcflag_t>(ECHONL); // the line still ends for the eye
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~SilentInput()
    {
        if (m_isTerminal)
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }
#endif
    Q_DISABLE_COPY(SilentInput)

    bool isTerminal() const
    {
        return m_isTerminal;
    }

private:
#ifdef Q_OS_WIN
    HANDLE m_input;
    DWORD m_before = 0;
#else
    termios m_before = {};
#endif
    bool m_isTerminal;
};

} // namespace

tl::expected<QString, QString> promptForPassword(const QString& question)
{
    const SilentInput silent;
    if (silent.isTerminal())
        QTextStream(stderr) << question;
    std::string line;
    if (!std::getline(std::cin, line))
        return tl::make_unexpected(QStringLiteral("no password was given"));
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return silent.isTerminal() ? QString::fromLocal8Bit(line.c_str()) : QString::fromUtf8(line.c_str());
}
