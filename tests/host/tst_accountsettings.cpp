#include "host/accounts/accountsettings.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

using Driver = AccountSettings::Driver;

/// Settings from JSON written with single quotes, for the eye.
tl::expected<AccountSettings, QString> read(QByteArray json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.replace('\'', '"'));
    Q_ASSERT(document.isObject());
    return AccountSettings::read(document.object(), QStringLiteral("/plant"));
}

} // namespace

class tst_AccountSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileUnlessAServerIsNamed()
    {
        for (const char* json : {"{}", "{'driver': 'QSQLITE'}"}) {
            const auto settings = read(json);
            QVERIFY(settings);
            QVERIFY(settings->driver == Driver::Sqlite);
            QCOMPARE(settings->fileName, QStringLiteral("/plant/accounts.db"));
        }
    }

    void aServer()
    {
        const auto settings = read("{'driver': 'QPSQL', 'host': 'db.plant', 'port': 5433, 'database': 'users',\n"
                                   " 'user': 'hmi', 'passwordFile': 'secret/db.txt'}");
        QVERIFY(settings);
        QVERIFY(settings->driver == Driver::PostgreSql);
        QCOMPARE(settings->host, QStringLiteral("db.plant"));
        QCOMPARE(settings->port, 5433);
        QCOMPARE(settings->database, QStringLiteral("users"));
        QCOMPARE(settings->user, QStringLiteral("hmi"));
        QCOMPARE(settings->passwordFile, QStringLiteral("/plant/secret/db.txt"));
        QCOMPARE(settings->fileName, QString());
    }

    void aServerWithoutPortAndPassword()
    {
        const auto settings = read("{'driver': 'QPSQL', 'host': 'h', 'database': 'd', 'user': 'u'}");
        QVERIFY(settings);
        QCOMPARE(settings->port, 5432);
        QCOMPARE(settings->passwordFile, QString());
        const auto elsewhere =
            read("{'driver': 'QPSQL', 'host': 'h', 'database': 'd', 'user': 'u', 'passwordFile': '/etc/db'}");
        QVERIFY(elsewhere);
        QCOMPARE(elsewhere->passwordFile, QStringLiteral("/etc/db"));
    }

    void badSettings_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const QByteArray& json, const char* reason) {
            QTest::newRow(name) << json << QStringLiteral("\"accounts\": ") + QString::fromLatin1(reason);
        };
        const QByteArray server = "{'driver': 'QPSQL', 'host': 'h', 'database': 'd', 'user': 'u', ";
        row("a driver that is not known", "{'driver': 'QMYSQL'}", "\"driver\" must be \"QSQLITE\" or \"QPSQL\"");
        row("a driver that is no text", "{'driver': 1}", "\"driver\" must be a text");
        row("no host", "{'driver': 'QPSQL', 'database': 'd', 'user': 'u'}", "\"host\" is missing");
        row("no database", "{'driver': 'QPSQL', 'host': 'h', 'user': 'u'}", "\"database\" is missing");
        row("an empty user", "{'driver': 'QPSQL', 'host': 'h', 'database': 'd', 'user': ''}", "\"user\" is missing");
        row("a host that is no text", "{'driver': 'QPSQL', 'host': 5, 'database': 'd', 'user': 'u'}",
            "\"host\" must be a text");
        row("a NUL", "{'driver': 'QPSQL', 'host': 'h\\u0000x', 'database': 'd', 'user': 'u'}",
            "\"host\" must be a text without NUL");
        row("a port that is none", server + "'port': 0}", "\"port\" must be a whole number from 1 to 65535");
        row("a port that is too high", server + "'port': 65536}", "\"port\" must be a whole number from 1 to 65535");
        row("a port that is a text", server + "'port': '5432'}", "\"port\" must be a whole number from 1 to 65535");
        row("a password file that is no text", server + "'passwordFile': []}", "\"passwordFile\" must be a text");
        row("a password", server + "'password': 'x'}",
            "\"password\" must not stand in a project: name a file by \"passwordFile\"");
        row("a server without its driver", "{'host': 'h'}", "\"host\" needs \"driver\": \"QPSQL\"");
        row("a server with the other driver", "{'driver': 'QSQLITE', 'port': 1}",
            "\"port\" needs \"driver\": \"QPSQL\"");
    }
    void badSettings()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, reason);
        const auto settings = read(json);
        QVERIFY(!settings);
        QCOMPARE(settings.error(), reason);
    }
};

QTEST_GUILESS_MAIN(tst_AccountSettings)
#include "tst_accountsettings.moc"
