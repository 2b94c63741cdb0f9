#pragma once

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <chrono>
#include <optional>

/// What the command line asks of the runtime.
struct RuntimeOptions
{
    QString project;
    QString page = {};       ///< empty for the project's start page
    QString screenshot = {}; ///< file for a picture of the page; empty for none
    QString source = {};     ///< empty for the project's own
    QString record = {};     ///< file that the samples are recorded in; empty for none
    /// After this time the table of the points is printed and the program ends; none: when the user ends it.
    std::optional<std::chrono::milliseconds> after = {};
    double zoom = 1; ///< of the screenshot of a run without a window
    bool isStored = true;
    bool isSilent = false;          ///< alarms are shown, not heard
    bool areScriptsTrusted = false; ///< runs the project's scripts, whatever the user said of its folder
    bool isBenchmark = false;       ///< draws off screen as a window would, and prints what it costs

    /// Ends the program for a command line that it answers itself (--help, --version).
    /// \returns what is wrong with the command line.
    static tl::expected<RuntimeOptions, QString> parse(const QStringList& arguments);
};
