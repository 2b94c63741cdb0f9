#pragma once

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

/// What the command line asks of the designer.
struct DesignerOptions
{
    QString project;
    QString page = {};              ///< empty for the project's start page
    QString object = {};            ///< name of the shape to select; empty for the page itself
    QString screenshot = {};        ///< file for a picture of the window, after which the program ends; empty for none
    bool areScriptsTrusted = false; ///< lets scripts be tried, whatever the user said of the folder

    /// Ends the program for a command line that it answers itself (--help, --version).
    /// \returns what is wrong with the command line.
    static tl::expected<DesignerOptions, QString> parse(const QStringList& arguments);
};
