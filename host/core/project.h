#pragma once

#include "host/accounts/accountsettings.h"
#include "host/alarms/alarmpresentation.h"
#include "host/hostexport.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

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
    QStringList pageOrder = {};    ///< pages that come before the others, whether there are such pages or not
    QStringList removedPages = {}; ///< pages that are none of the project's, though their files may be there
    QByteArray text = {};          ///< of its file
    AccountSettings accounts = {};

    /// The project in \p folder.
    /// \returns why it can't be opened, with the file's name and, where there is one, the line.
    static tl::expected<Project, QString> read(const QString& folder);
    /// The project in \p folder if its file held \p text.
    static tl::expected<Project, QString> parse(const QByteArray& text, const QString& folder);

    /// A member of the file; names of members of members are joined by dots ("alarms.repeatMs"). Invalid when there is
    /// none.
    QVariant setting(const QString& member) const;
    /// The project with that member set, or taken out by an invalid value. The rest of the text stays as it is, and
    /// nothing is written.
    /// \returns why there can be no such project.
    tl::expected<Project, QString> withSetting(const QString& member, const QVariant& value) const;
    /// Replaces the file as a whole by the text, or leaves the one before as it was.
    /// \returns why it could not.
    tl::expected<void, QString> write() const;

    QString settingsFile() const { return folder + QStringLiteral("/project.json"); }
    QString pointFile() const { return folder + QStringLiteral("/points.csv"); }
    QString pageFile(const QString& page) const
    {
        return pageFolder() + QLatin1Char('/') + page + QStringLiteral(".pws");
    }
    QString symbolFolder() const { return folder + QStringLiteral("/symbols"); }
    /// What operators did and changed, kept apart from the statistics.
    QString operatingFile() const { return folder + QStringLiteral("/operating.db"); }
    QString databaseFile() const { return folder + QStringLiteral("/runtime.db"); }
    /// \p fileName as seen from the project's folder.
    QString path(const QString& fileName) const;
    QString pageFolder() const { return folder + QStringLiteral("/pages"); }
    /// Names of the pages there are: first those of the project's own order, then the others in alphabetical order.
    QStringList pages() const;
};
