#pragma once

#include "host/hostexport.h"

#include <QString>

#include <tl/expected.hpp>

class QJsonObject;

/// Where a project keeps its user accounts: an SQLite file, or a PostgreSQL database that several workplaces share.
struct KORVANE_HOST_EXPORT AccountSettings
{
    enum class Driver { Sqlite, PostgreSql };

    Driver driver = Driver::Sqlite;
    QString fileName = {}; ///< of SQLite: absolute
    QString host = {};     ///< from here on of PostgreSQL
    int port = 5432;
    QString database = {};
    QString user = {};
    /// File whose first line is the password of the connection; absolute, empty for none. The password itself never
    /// stands in a project.
    QString passwordFile = {};

    /// Reads the member "accounts" of a project file: {"driver": "QPSQL", "host": ..., "port": ..., "database": ...,
    /// "user": ..., "passwordFile": ...}, of which port and password file may be left out; an empty object, or the driver
    /// "QSQLITE", stands for the SQLite file "accounts.db" in \p folder. The password file is relative to that folder.
    /// \returns what is wrong, naming the member.
    static tl::expected<AccountSettings, QString> read(const QJsonObject& stored, const QString& folder);
};
