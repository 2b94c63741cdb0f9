#include "host/core/project.h"
#include "tests/support/temporaryfiles.h"

#include <QDir>
#include <QtTest>

namespace {

/// JSON written with single quotes, for the eye.
QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}

/// A folder "plant" with settings.
class TestFolder
{
public:
    explicit TestFolder(const QByteArray& settings = "{}")
    {
        const bool isMade = QDir().mkpath(path() + QStringLiteral("/pages"));
        Q_ASSERT(isMade);
        write("project.json", settings);
    }
    QString path() const { return m_files.path(QStringLiteral("plant")); }
    void write(const char* name, const QByteArray& bytes) const
    {
        m_files.write(QStringLiteral("plant/") + QString::fromLatin1(name), bytes);
    }

private:
    TemporaryFiles m_files;
};

} // namespace

class tst_Project : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingIsRead()
    {
        const TestFolder folder(json("{'version': 1, 'name': 'Water loop', 'startPage': 'overview',\n"
                                     " 'source': 'simulation?seed=2', 'timeZone': 'Asia/Seoul', 'tickMs': 200,\n"
                                     " 'security': true, 'scriptLimitMs': 500, 'colour': 'blue'}"));
        const auto project = Project::read(folder.path());
        QVERIFY2(project, project ? "" : qPrintable(project.error()));
        QCOMPARE(project->folder, folder.path());
        QCOMPARE(project->name, QStringLiteral("Water loop"));
        QCOMPARE(project->startPage, QStringLiteral("overview"));
        QCOMPARE(project->source, QStringLiteral("simulation?seed=2"));
        QCOMPARE(project->timeZone, QStringLiteral("Asia/Seoul"));
        QVERIFY(project->tick == std::chrono::milliseconds(200));
        QVERIFY(project->scriptLimit == std::chrono::milliseconds(500));
        QVERIFY(project->isSecured);
    }

    void accountsAreWhereTheProjectSays()
    {
        const TestFolder folder(json("{'accounts': {'driver': 'QPSQL', 'host': 'db.plant', 'database': 'users',\n"
                                     " 'user': 'hmi', 'passwordFile': 'db.txt'}}"));
        const auto project = Project::read(folder.path());
        QVERIFY2(project, project ? "" : qPrintable(project.error()));
        QVERIFY(project->accounts.driver == AccountSettings::Driver::PostgreSql);
        QCOMPARE(project->accounts.host, QStringLiteral("db.plant"));
        QCOMPARE(project->accounts.passwordFile, folder.path() + QStringLiteral("/db.txt"));
    }

    void noSettingIsNeeded()
    {
        const TestFolder folder;
        const auto project = Project::read(folder.path());
        QVERIFY2(project, project ? "" : qPrintable(project.error()));
        QCOMPARE(project->name, QStringLiteral("plant")); // the folder's
        QCOMPARE(project->startPage, QString());
        QCOMPARE(project->source, QString());
        QCOMPARE(project->timeZone, QString());
        QVERIFY(project->tick == std::chrono::milliseconds(50));
        QVERIFY(project->scriptLimit == std::chrono::seconds(2));
        QVERIFY(!project->isSecured);
        QVERIFY(project->accounts.driver == AccountSettings::Driver::Sqlite);
        QCOMPARE(project->accounts.fileName, folder.path() + QStringLiteral("/accounts.db"));
    }

    void aFolderMayEndWithASlash()
    {
        const TestFolder folder;
        const auto project = Project::read(folder.path() + QLatin1Char('/'));
        QVERIFY(project);
        QCOMPARE(project->name, QStringLiteral("plant"));
        QCOMPARE(project->folder, folder.path());
        QCOMPARE(project->pointFile(), folder.path() + QStringLiteral("/points.csv"));
    }

    void aFolderMayBeRelative()
    {
        const TestFolder folder;
        const QString before = QDir::currentPath();
        const auto back = qScopeGuard([&before] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(folder.path()));
        for (const char* relative : {".", "../plant", "pages/.."}) {
            const auto project = Project::read(QString::fromLatin1(relative));
            QVERIFY(project);
            QVERIFY(QDir::isAbsolutePath(project->folder));
            QCOMPARE(QDir(project->folder).canonicalPath(), QDir(folder.path()).canonicalPath());
            QCOMPARE(project->name, QStringLiteral("plant"));
        }
    }

    void goodSettings_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::newRow("the shortest tick") << QByteArray("{'tickMs': 10}");
        QTest::newRow("the longest tick") << QByteArray("{'tickMs': 1000}");
        QTest::newRow("the shortest limit of scripts") << QByteArray("{'scriptLimitMs': 10}");
        QTest::newRow("the longest limit of scripts") << QByteArray("{'scriptLimitMs': 60000}");
        QTest::newRow("a tick as a real number") << QByteArray("{'tickMs': 50.0}");
        QTest::newRow("an empty zone is the system's") << QByteArray("{'timeZone': ''}");
        QTest::newRow("a version before all") << QByteArray("{'version': 0}");
    }
    void goodSettings()
    {
        QFETCH(QByteArray, settings);
        const TestFolder folder(json(settings));
        const auto project = Project::read(folder.path());
        QVERIFY2(project, project ? "" : qPrintable(project.error()));
    }

    void badSettings_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* settings, const char* reason) {
            QTest::newRow(name) << json(settings) << QString::fromLatin1(reason);
        };
        row("nothing", "", "line 1: illegal value");
        row("an object without its end", "{\n'name': 'a'\n", "line 3: unterminated object");
        row("a comma too many", "{\n'name': 'a',\n}\n", "line 3: object is missing after a comma");
        row("text behind it", "{}\nmore", "line 2: garbage at the end of the document");
        row("a newer version", "{'version': 2}", "is of a newer version than this program knows (1)");
        row("a newer version tells nothing else", "{'version': 2, 'name': 5}",
            "is of a newer version than this program knows (1)");
        row("a version that is a text", "{'version': '1'}", "\"version\" must be a whole number from 0 to 1000000");
        row("a version between two", "{'version': 0.5}", "\"version\" must be a whole number from 0 to 1000000");
        row("a negative version", "{'version': -1}", "\"version\" must be a whole number from 0 to 1000000");
        row("a name that is a number", "{'name': 5}", "\"name\" must be a text");
        row("a name that is nothing", "{'name': null}", "\"name\" must be a text");
        row("a start page that is a list", "{'startPage': ['a']}", "\"startPage\" must be a text");
        row("a source that is an object", "{'source': {}}", "\"source\" must be a text");
        row("a zone that is a number", "{'timeZone': 9}", "\"timeZone\" must be a text");
        row("a zone that there is not", "{'timeZone': 'Mars/Olympus'}",
            "\"timeZone\" must be the name of a time zone, as \"Europe/Berlin\"");
        row("a tick that is too short", "{'tickMs': 9}", "\"tickMs\" must be a whole number from 10 to 1000");
        row("a tick that is too long", "{'tickMs': 1001}", "\"tickMs\" must be a whole number from 10 to 1000");
        row("a tick between two", "{'tickMs': 50.5}", "\"tickMs\" must be a whole number from 10 to 1000");
        row("a tick that is a text", "{'tickMs': '50'}", "\"tickMs\" must be a whole number from 10 to 1000");
        row("a tick beyond all whole numbers", "{'tickMs': 1e30}", "\"tickMs\" must be a whole number from 10 to 1000");
        row("a limit of scripts that is too short", "{'scriptLimitMs': 9}",
            "\"scriptLimitMs\" must be a whole number from 10 to 60000");
        row("a limit of scripts that is too long", "{'scriptLimitMs': 60001}",
            "\"scriptLimitMs\" must be a whole number from 10 to 60000");
        row("a limit of scripts that is none", "{'scriptLimitMs': null}",
            "\"scriptLimitMs\" must be a whole number from 10 to 60000");
        row("a limit of scripts between two", "{'scriptLimitMs': 10.5}",
            "\"scriptLimitMs\" must be a whole number from 10 to 60000");
        row("accounts that are a text", "{'accounts': 'accounts.db'}", "\"accounts\" must be an object");
        row("accounts without a host", "{'accounts': {'driver': 'QPSQL'}}", "\"accounts\": \"host\" is missing");
        row("security that is a number", "{'security': 1}", "\"security\" must be true or false");
        row("pages that are a text", "{'pages': 'a'}", "\"pages\" must be a list of names");
        row("a page that is a number", "{'pages': ['a', 5]}", "\"pages\" must be a list of names");
        row("a removed page without a name", "{'removedPages': ['']}", "\"removedPages\" must be a list of names");
        row("a file beyond all sense", QByteArray(1048577, ' ').constData(), "is larger than 1048576 bytes");
        row("the first of two", "{'tickMs': 5, 'name': 5}", "\"name\" must be a text");
    }
    void badSettings()
    {
        QFETCH(QByteArray, settings);
        QFETCH(QString, reason);
        const TestFolder folder(settings);
        const auto project = Project::read(folder.path());
        QVERIFY(!project);
        QCOMPARE(project.error(), QStringLiteral("%1/project.json: %2").arg(folder.path(), reason));
    }

    void settingsAreAnObject()
    {
        const TestFolder folder("[]");
        QVERIFY(!Project::read(folder.path()));
    }

    void whatIsNoProject()
    {
        const TestFolder folder;
        const QString nowhere = folder.path() + QStringLiteral("/nowhere");
        QCOMPARE(Project::read(nowhere).error(), nowhere + QStringLiteral(": there is no such project folder"));
        const QString file = folder.path() + QStringLiteral("/project.json");
        QCOMPARE(Project::read(file).error(), file + QStringLiteral(": there is no such project folder"));
        const QString pages = folder.path() + QStringLiteral("/pages");
        QCOMPARE(Project::read(pages).error(),
                 pages + QStringLiteral("/project.json: there is no such file, so the folder is no project"));
        QVERIFY(QDir().mkpath(pages + QStringLiteral("/project.json")));
        QCOMPARE(Project::read(pages).error(),
                 pages + QStringLiteral("/project.json: there is no such file, so the folder is no project"));
    }

    void whereItsPartsLie()
    {
        const TestFolder folder;
        const auto project = Project::read(folder.path());
        QVERIFY(project);
        QCOMPARE(project->pointFile(), folder.path() + QStringLiteral("/points.csv"));
        QCOMPARE(project->pageFile(QStringLiteral("a b")), folder.path() + QStringLiteral("/pages/a b.pws"));
        QCOMPARE(project->symbolFolder(), folder.path() + QStringLiteral("/symbols"));
        QCOMPARE(project->databaseFile(), folder.path() + QStringLiteral("/runtime.db"));
        QCOMPARE(project->path(QStringLiteral("rec/a.csv")), folder.path() + QStringLiteral("/rec/a.csv"));
        QCOMPARE(project->path(QStringLiteral("/rec/a.csv")), QStringLiteral("/rec/a.csv"));
    }

    void pagesAreListedByName()
    {
        const TestFolder folder;
        const auto project = Project::read(folder.path());
        QVERIFY(project);
        QCOMPARE(project->pages(), QStringList());
        for (const char* name : {"pages/b.pws", "pages/a.b.pws", "pages/c.txt", "pages/pws", "elsewhere.pws"})
            folder.write(name, "");
        QVERIFY(QDir().mkpath(folder.path() + QStringLiteral("/pages/folder.pws")));
        QCOMPARE(project->pages(), QStringList({QStringLiteral("a.b"), QStringLiteral("b")}));
        QVERIFY(QDir(folder.path() + QStringLiteral("/pages")).removeRecursively());
        QCOMPARE(project->pages(), QStringList());
    }

    void pagesHaveTheProjectsOrder_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QStringList>("pages");
        const auto row = [](const char* name, const char* settings, const char* pages) {
            QTest::newRow(name) << json(settings) << QString::fromLatin1(pages).split(QLatin1Char(' '));
        };
        row("pages that are not listed follow by their names", "{'pages': ['c', 'a']}", "c a b d");
        row("all are listed", "{'pages': ['d', 'c', 'b', 'a']}", "d c b a");
        row("none is listed", "{'pages': []}", "a b c d");
        row("listed ones that are missing are left out", "{'pages': ['x', 'b', 'y']}", "b a c d");
        row("what is listed twice is there once", "{'pages': ['b', 'a', 'b']}", "b a c d");
        row("removed ones are left out", "{'removedPages': ['b', 'x']}", "a c d");
        row("also where they are listed", "{'pages': ['d', 'b'], 'removedPages': ['b']}", "d a c");
    }
    void pagesHaveTheProjectsOrder()
    {
        QFETCH(QByteArray, settings);
        const TestFolder folder(settings);
        for (const char* name : {"pages/d.pws", "pages/b.pws", "pages/a.pws", "pages/c.pws"})
            folder.write(name, "");
        const auto project = Project::read(folder.path());
        QVERIFY2(project, project ? "" : qPrintable(project.error()));
        QTEST(project->pages(), "pages");
    }

    void aSettingIsFoundByItsName()
    {
        const TestFolder folder(json("{'name': 'a', 'alarms': {'repeatMs': 5, 'areas': ['x', 'y']}, 'none': null}"));
        const auto project = Project::read(folder.path());
        QVERIFY(project);
        QCOMPARE(project->setting(QStringLiteral("name")), QVariant(QStringLiteral("a")));
        QCOMPARE(project->setting(QStringLiteral("alarms.repeatMs")).toInt(), 5);
        QCOMPARE(project->setting(QStringLiteral("alarms.areas")).toStringList(),
                 QStringList({QStringLiteral("x"), QStringLiteral("y")}));
        QVERIFY(project->setting(QStringLiteral("none")).isValid());
        for (const char* name : {"", "Name", "alarms.", "alarms.remindMs", "name.length", "alarms.repeatMs.x"})
            QVERIFY2(!project->setting(QString::fromLatin1(name)).isValid(), name);
    }

    void aSettingIsSetInTheTextAlone()
    {
        const QByteArray before = json("{\n  'version': 1,   'odd' : [1,2],\n  'tickMs': 50\n}\n");
        const TestFolder folder(before);
        const auto project = Project::read(folder.path());
        QVERIFY(project);
        const auto changed = project->withSetting(QStringLiteral("tickMs"), 100);
        QVERIFY(changed);
        QVERIFY(changed->tick == std::chrono::milliseconds(100));
        QCOMPARE(changed->text, QByteArray(before).replace("50", "100"));
        QCOMPARE(changed->folder, project->folder);
        QVERIFY(Project::read(folder.path())->tick == std::chrono::milliseconds(50));
        QVERIFY(changed->write());
        QVERIFY(Project::read(folder.path())->tick == std::chrono::milliseconds(100));
    }

    void aSettingThatCanNotBe_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* text, const char* name, const QVariant& value, const char* reason) {
            QTest::newRow(text) << QString::fromLatin1(name) << value << QString::fromLatin1(reason);
        };
        row("a wrong value", "tickMs", 5, "\"tickMs\" must be a whole number from 10 to 1000");
        row("a wrong value further in", "alarms.repeatMs", -1, "\"repeatMs\" must be a whole number from 0 to 3600000");
        row("a newer version", "version", 2, "is of a newer version than this program knows (1)");
        row("no name", "", 5, "\"\" is no name of a setting");
        row("half a name", "alarms..x", 5, "\"alarms..x\" is no name of a setting");
        row("a member of a text", "name.x", 5, "\"name.x\" can't be set: \"name\" is no object");
        row("no JSON", "x", QDate(2026, 1, 1), "\"x\": no project file can hold this value");
    }
    void aSettingThatCanNotBe()
    {
        QFETCH(QString, name);
        QFETCH(QVariant, value);
        QFETCH(QString, reason);
        const TestFolder folder(json("{'name': 'a'}"));
        const auto project = Project::read(folder.path());
        QVERIFY(project);
        const auto changed = project->withSetting(name, value);
        QVERIFY(!changed);
        QVERIFY2(changed.error().endsWith(reason), qPrintable(changed.error()));
    }

    void whatCanNotBeWritten()
    {
        const TestFolder folder;
        const auto project = Project::read(folder.path());
        QVERIFY(project);
        QVERIFY(QDir(folder.path()).removeRecursively());
        const auto written = project->write();
        QVERIFY(!written);
        QVERIFY2(written.error().startsWith(project->settingsFile()), qPrintable(written.error()));
    }
};

QTEST_GUILESS_MAIN(tst_Project)
#include "tst_project.moc"
