#pragma once

#include <QStringList>

/// The tool's commands. Each takes the program's arguments, itself second, and returns the program's exit code (ExitCode).
namespace Commands {

int check(const QStringList& arguments);
int whereUsed(const QStringList& arguments);
int rename(const QStringList& arguments);
int render(const QStringList& arguments);
int importPoints(const QStringList& arguments);
int exportPoints(const QStringList& arguments);
int user(const QStringList& arguments);
int audit(const QStringList& arguments);

} // namespace Commands
