#pragma once

#include <QString>

#include <tl/expected.hpp>

/// Asks at the terminal for a password, which does not show while it is typed. Where standard input is no terminal, its
/// next line is the password.
/// \returns why there is none: the input ended.
tl::expected<QString, QString> promptForPassword(const QString& question);
