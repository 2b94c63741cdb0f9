#pragma once

#include "host/accounts/accountsettings.h"
#include "host/alarms/alarmpresentation.h"
#include "host/hostexport.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <chrono>

/// A project's settings: its file project.json, and where its parts lie on disk.
struct KORVANE_HOST_EXPORT Project
{
    static constexpr int version = 1;
    static constexpr std::chrono::milliseconds shortestTick{10};
    static constexpr std::chrono::milliseconds longestTick{1000};
    static constexpr std::chrono::milliseconds shortestScriptLimit{10};
    static constexpr std::chrono::milliseconds longestScriptLimit{60000};

    QString folder; ///< absolute
    QString name;
    QString startPage;
    QString source = {};   ///< address of where values come from (SourceAddress), relative to the folder
    QString timeZone = {}; ///< IANA id of the zone whose hours and days the statistics follow; empty for the system's
    std::chrono::milliseconds tick{50};
    bool isSecured = false;
    /// How long a script may run before it is stopped.
    std::chrono::milliseconds scriptLimit{2000};
    AlarmPresentation alarms = {};
    AccountSettings accounts = {};

    /// The project in \p folder.
    /// \returns why it can't be opened, with the file's name and, where there is one, the line.
    static tl::expected<Project, QString> read(const QString& folder);

    QString pointFile() const { return folder + QStringLiteral("/points.csv"); }
    QString pageFile(const QString& page) const
    {
        return folder + QStringLiteral("/pages/") + page + QStringLiteral(".pws");
    }
    QString symbolFolder() const { return folder + QStringLiteral("/symbols"); }
    /// What operators did and changed, kept apart from the statistics.
    QString operatingFile() const { return folder + QStringLiteral("/operating.db"); }
    QString databaseFile() const { return folder + QStringLiteral("/runtime.db"); }
    /// \p fileName as seen from the project's folder.
    QString path(const QString& fileName) const;
    /// Names of the pages there are, in alphabetical order.
    QStringList pages() const;
};
