#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <csignal>
#include <unistd.h>
#endif

/// A PostgreSQL server of the test's own, on a free port of 127.0.0.1, with a user who needs a password. It ends with the
/// object.
class PostgresCluster
{
public:
    static bool isInstalled() { return QFileInfo::exists(program(QStringLiteral("initdb"))); }

    PostgresCluster()
    {
        QTcpServer port;
        if (!m_folder.isValid() || !port.listen(QHostAddress::LocalHost))
            qFatal("no folder or port for a database server");
        m_port = port.serverPort();
        port.close();
        QFile file(passwordFile());
        if (!file.open(QIODevice::WriteOnly) || file.write(password().toUtf8() + '\n') < 0)
            qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
        file.close();
#ifdef Q_OS_UNIX
        // The server refuses to run as root.
        if (isRoot() && QProcess::execute(QStringLiteral("chown"),
                                          {QStringLiteral("-R"), QStringLiteral("postgres"), m_folder.path()}) != 0)
            qFatal("there is no system user postgres");
#endif
        // The test kills processes, not the machine: nothing needs to reach the disk.
        if (!run(QStringLiteral("initdb"),
                 {QStringLiteral("-D"), data(), QStringLiteral("-U"), user(), QStringLiteral("--no-sync"),
                  QStringLiteral("--encoding=UTF8"), QStringLiteral("--locale=C.UTF-8"),
                  QStringLiteral("--auth=scram-sha-256"), QStringLiteral("--pwfile=") + passwordFile()}) ||
            !start())
            qFatal("the database server can't be started");
    }
    ~PostgresCluster()
    {
        stop();
    }
    Q_DISABLE_COPY(PostgresCluster)

    int port() const
    {
        return m_port;
    }
    static QString user()
    {
        return QStringLiteral("korvane");
    }
    static QString password()
    {
        return QStringLiteral("pass word's \\ \u00e4");
    }
    QString passwordFile() const
    {
        return m_folder.filePath(QStringLiteral("password"));
    }

    bool start() const
    {
        const QString options =
            QStringLiteral("-c port=%1 -c listen_addresses=127.0.0.1 -c unix_socket_directories='%2' "
                           "-c fsync=off -c shared_buffers=16MB")
                .arg(m_port)
                .arg(m_folder.path());
        return run(QStringLiteral("pg_ctl"),
                   {QStringLiteral("start"), QStringLiteral("-w"), QStringLiteral("-s"), QStringLiteral("-D"), data(),
                    QStringLiteral("-l"), m_folder.filePath(QStringLiteral("log")), QStringLiteral("-o"), options});
    }
    bool stop() const
    {
        return run(QStringLiteral("pg_ctl"),
                   {QStringLiteral("stop"), QStringLiteral("-w"), QStringLiteral("-s"), QStringLiteral("-m"),
                    QStringLiteral("immediate"), QStringLiteral("-D"), data()});
    }
#ifdef Q_OS_UNIX
    /// Ends the server as a crash does. Its children end by themselves, a little later: start() works only then.
    bool kill() const
    {
        QFile file(data() + QStringLiteral("/postmaster.pid"));
        return file.open(QIODevice::ReadOnly) && ::kill(file.readLine().trimmed().toInt(), SIGKILL) == 0;
    }
#endif
    /// Runs an SQL text by the server's own client, beside the code under test.
    /// \returns what it answers, without headings
    QString sql(const QString& database, const QString& text) const
    {
        QProcess client;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PGPASSWORD"), password());
        client.setProcessEnvironment(environment);
        client.start(program(QStringLiteral("psql")),
                     {QStringLiteral("-XAtq"), QStringLiteral("-h"), QStringLiteral("127.0.0.1"), QStringLiteral("-p"),
                      QString::number(m_port), QStringLiteral("-U"), user(), QStringLiteral("-d"), database,
                      QStringLiteral("-v"), QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-c"), text});
        if (!client.waitForFinished() || client.exitCode() != 0)
            qFatal("%s: %s", qPrintable(text), client.readAllStandardError().constData());
        return QString::fromUtf8(client.readAllStandardOutput()).trimmed();
    }
    /// A database that no test has used.
    QString newDatabase()
    {
        const QString name = QStringLiteral("plant%1").arg(++m_databases);
        sql(QStringLiteral("postgres"), QStringLiteral("CREATE DATABASE %1").arg(name));
        return name;
    }

private:
    static QString program(const QString& name)
    {
        return QStringLiteral("/usr/lib/postgresql/15/bin/") + name;
    }
    QString data() const
    {
        return m_folder.filePath(QStringLiteral("data"));
    }
#ifdef Q_OS_UNIX
    static bool isRoot()
    {
        return ::geteuid() == 0;
    }
#else
    static bool isRoot()
    {
        return false;
    }
#endif

    /// Starts a program as the user who owns the server.
    void launch(QProcess& process, QString started, QStringList arguments) const
    {
        if (isRoot()) {
            arguments = QStringList{QStringLiteral("-u"), QStringLiteral("postgres"), QStringLiteral("--"), started} +
                        arguments;
            started = QStringLiteral("runuser");
        }
        process.setWorkingDirectory(m_folder.path());
        process.setStandardOutputFile(QProcess::nullDevice()); // a server that stays would keep a pipe open
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(started, arguments);
    }
    bool run(const QString& name, const QStringList& arguments) const
    {
        QProcess process;
        launch(process, program(name), arguments);
        return process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }

    QTemporaryDir m_folder;
    int m_port = 0;
    int m_databases = 0;
    QProcess m_guard;
};
