#include "host/actions/canvasactionmanagerfactory.h"
#include "host/canvas/canvasmanager.h"
#include "host/runtime/runtimedatabase.h"
#include "tests/support/temporaryfiles.h"
#include "tests/support/testhub.h"

#include <QDir>
#include <QtTest>

namespace {

QByteArray pageOf(const char* tag)
{
    QByteArray text = "{'format': 'korvane-page', 'version': 1, 'layers': [{'name': 'values', 'shapes': [\n"
                      "  {'class': 'ReadOut', 'name': 'flow', 'place': [0, 0, 90, 24],\n"
                      "   'actions': [{'type': 2, 'version': 911, 'targets': [{'tag': 'TAG'}]}]}]}]}\n";
    return text.replace('\'', '"').replace("TAG", tag);
}

/// A project with the pages a, b and damaged.
struct TestPages
{
    TestPages()
    {
        const bool isMade = QDir().mkpath(files.path(QStringLiteral("pages")));
        Q_ASSERT(isMade);
        files.write(QStringLiteral("pages/a.pws"), pageOf("FLOW"));
        files.write(QStringLiteral("pages/b.pws"), pageOf("NOWHERE"));
        files.write(QStringLiteral("pages/damaged.pws"), "[]");
        files.write(QStringLiteral("outside.pws"), pageOf("FLOW"));
        const auto added = database.add({Korvane::ScadaObjectType::AnalogPoint, 200001, QStringLiteral("FLOW")});
        Q_ASSERT(added);
        project.folder = files.path(QStringLiteral("pages")).chopped(6);
        hub.setScadaRuntime(&database);
        hub.setCanvasActionManagerFactory(&factory);
        QObject::connect(&manager, &CanvasManager::opened, &manager,
                         [this](Page* page) { told.append(QStringLiteral("opened ") + page->canvas->canvasName()); });
        QObject::connect(&manager, &CanvasManager::aboutToClose, &manager, [this](Page* page) {
            told.append(QStringLiteral("about to close %1, %2, %3")
                            .arg(page->canvas->canvasName(), QString::number(page->canvas->shapeCount()),
                                 QString::number(page->actions->actions().size())));
        });
    }

    /// Has the page say who may open it.
    void writeProtected(const char* name, QByteArray access) const
    {
        QByteArray text = pageOf("FLOW");
        text.replace("\"layers\"", "\"access\": " + access.replace('\'', '"') + ", \"layers\"");
        files.write(QStringLiteral("pages/%1.pws").arg(QString::fromLatin1(name)), text);
    }
    Page* open(const char* name)
    {
        const auto page = manager.open(QString::fromLatin1(name));
        if (!page)
            qWarning("%s", qPrintable(page.error()));
        return page ? *page : nullptr;
    }
    QString current() const
    {
        const KVCanvasInterface* canvas = manager.currentCanvas();
        return canvas ? canvas->canvasName() : QStringLiteral("none");
    }
    QString canvases() const
    {
        QStringList names;
        for (const KVCanvasInterface* canvas : manager.canvases())
            names.append(canvas->canvasName());
        return names.join(QLatin1Char(' '));
    }

    TemporaryFiles files;
    RuntimeDatabase database;
    TestHub hub;
    CanvasActionManagerFactory factory{&hub};
    Project project;
    QStringList told;
    CanvasManager manager{project, hub};
};

} // namespace

class tst_CanvasManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void atFirstNoPageIsOpen()
    {
        TestPages test;
        QVERIFY(test.manager.pages().empty());
        QVERIFY(test.manager.canvases().isEmpty());
        QVERIFY(!test.manager.currentCanvas());
        QVERIFY(!test.manager.findCanvas(QStringLiteral("a")));
        QVERIFY(!test.manager.close(QStringLiteral("a")));
        QCOMPARE(test.told, QStringList());
    }

    void anOpenPageIsResolvedAndOutOfSight()
    {
        TestPages test;
        Page* page = test.open("a");
        QVERIFY(page);
        QCOMPARE(page->canvas->canvasName(), QStringLiteral("a"));
        QCOMPARE(page->problems, QStringList());
        QVERIFY(page->actions->isOpen());
        QVERIFY(!page->actions->isShown());
        QCOMPARE(page->actions->boundObjects(), QList<ObjectKey>({{Korvane::ScadaObjectType::AnalogPoint, 200001}}));
        QCOMPARE(test.current(), QStringLiteral("a"));
        QCOMPARE(test.told, QStringList(QStringLiteral("opened a")));
        QCOMPARE(test.manager.findCanvas(QStringLiteral("a")), page->canvas.get());
    }

    void aPageWithProblemsIsOpenedAllTheSame()
    {
        TestPages test;
        const Page* page = test.open("b");
        QVERIFY(page);
        QCOMPARE(page->problems.size(), 1);
        QVERIFY(page->problems.constFirst().contains(QStringLiteral("tag \"NOWHERE\" names no known object")));
    }

    void anOpenPageIsHandedOutAgain()
    {
        TestPages test;
        Page* a = test.open("a");
        Page* b = test.open("b");
        QCOMPARE(test.current(), QStringLiteral("b"));
        a->actions->setShown(true);
        QCOMPARE(test.open("a"), a);
        QVERIFY(a->actions->isShown()); // it stays as it is
        QCOMPARE(test.current(), QStringLiteral("a"));
        QCOMPARE(test.canvases(), QStringLiteral("a b"));
        QCOMPARE(test.told, QStringList({QStringLiteral("opened a"), QStringLiteral("opened b")}));
        test.manager.setCurrent(b);
        QCOMPARE(test.current(), QStringLiteral("b"));
        test.manager.setCurrent(nullptr);
        QCOMPARE(test.current(), QStringLiteral("none"));
        QCOMPARE(test.canvases(), QStringLiteral("a b"));
    }

    void aPageIsWholeUntilItGoes()
    {
        TestPages test;
        test.open("a");
        test.open("b");
        test.told.clear();
        QVERIFY(test.manager.close(QStringLiteral("a")));
        QCOMPARE(test.told, QStringList(QStringLiteral("about to close a, 1, 1")));
        QCOMPARE(test.canvases(), QStringLiteral("b"));
        QCOMPARE(test.current(), QStringLiteral("b")); // another one was closed
        QVERIFY(!test.manager.close(QStringLiteral("a")));
        QCOMPARE(test.told.size(), 1);
        QVERIFY(test.manager.close(QStringLiteral("b")));
        QCOMPARE(test.current(), QStringLiteral("none"));
        QVERIFY(test.manager.pages().empty());
        QVERIFY(test.open("a")); // anew
        QCOMPARE(test.current(), QStringLiteral("a"));
    }

    void whatIsNoPageIsRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason"); // %1 stands for the project's folder
        const auto row = [](const char* text, const char* name, const char* reason) {
            QTest::newRow(text) << QString::fromLatin1(name) << QString::fromLatin1(reason);
        };
        row("no name", "", "\"\" is no name of a page");
        row("a way out of the project", "../outside", "\"../outside\" is no name of a page");
        row("a way out of the project, with other slashes", "..\\outside", "\"..\\outside\" is no name of a page");
        row("a place on the machine", "/outside", "\"/outside\" is no name of a page");
        row("a page that there is not", "c", "%1/pages/c.pws: there is no such page");
        row("a page in another case", "A", "%1/pages/A.pws: there is no such page");
        row("dots are a name as any other", "..", "%1/pages/...pws: there is no such page");
    }
    void whatIsNoPageIsRefused()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        TestPages test;
        const auto page = test.manager.open(name);
        QVERIFY(!page);
        QCOMPARE(page.error(), reason.replace(QStringLiteral("%1"), test.project.folder));
        QVERIFY(test.manager.pages().empty());
        QCOMPARE(test.told, QStringList());
    }

    void accessIsAskedBeforeAnythingOfAPageIsMade()
    {
        TestPages test;
        test.writeProtected("a", "{'protected': true, 'users': [3]}");
        int asked = 0;
        int pagesThen = -1;
        int user = 4;
        test.manager.setAccessCheck([&](const PageAccess& access) -> tl::expected<void, QString> {
            ++asked;
            pagesThen = int(test.manager.pages().size());
            if (access.mayOpen(user))
                return {};
            return tl::make_unexpected(QStringLiteral("not you"));
        });
        const auto refused = test.manager.open(QStringLiteral("a"));
        QVERIFY(!refused);
        QCOMPARE(refused.error(), test.project.pageFile(QStringLiteral("a")) + QStringLiteral(": not you"));
        QCOMPARE(asked, 1);
        QVERIFY(test.manager.pages().empty());
        QCOMPARE(test.told, QStringList());
        QVERIFY(!test.manager.findCanvas(QStringLiteral("a")));
        user = 3;
        QVERIFY(test.open("a"));
        QCOMPARE(pagesThen, 0);
        QVERIFY(test.open("b")); // protects nobody
        QCOMPARE(test.current(), QStringLiteral("b"));
        user = 4;                                         // somebody else sits down
        QVERIFY(!test.manager.open(QStringLiteral("a"))); // although it is open
        QCOMPARE(test.current(), QStringLiteral("b"));
        QVERIFY(test.open("b"));
        user = 3;
        QVERIFY(test.open("a"));
        QCOMPARE(test.current(), QStringLiteral("a"));
    }

    void aPageThatClaimsWhatNoPageCanSayLetsNobodyIn_data()
    {
        QTest::addColumn<QByteArray>("access");
        QTest::newRow("a role of its own") << QByteArray("{'protected': false, 'role': 'administrator'}");
        QTest::newRow("no protection in words") << QByteArray("{'protected': 'no'}");
        QTest::newRow("nothing about protection") << QByteArray("{'users': [3]}");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("a user by name") << QByteArray("{'protected': true, 'users': ['ann']}");
        QTest::newRow("every user") << QByteArray("{'protected': true, 'users': '*'}");
        QTest::newRow("user 0, who is nobody") << QByteArray("{'protected': true, 'users': [0, 3]}");
    }
    void aPageThatClaimsWhatNoPageCanSayLetsNobodyIn()
    {
        QFETCH(QByteArray, access);
        TestPages test;
        test.writeProtected("a", access);
        for (const int user : {0, 1, 3}) {
            test.manager.setAccessCheck([user](const PageAccess& asked) -> tl::expected<void, QString> {
                if (asked.mayOpen(user))
                    return {};
                return tl::make_unexpected(QStringLiteral("not you"));
            });
            QVERIFY(!test.manager.open(QStringLiteral("a")));
        }
        QVERIFY(test.manager.pages().empty());
        test.manager.setAccessCheck({}); // without security it opens, and says what is wrong
        const Page* page = test.open("a");
        QVERIFY(page);
        QVERIFY2(page->problems.join(QLatin1Char('\n')).contains(QStringLiteral("nobody may open it")),
                 qPrintable(page->problems.join(QLatin1Char('\n'))));
    }

    void aPageThatCantBeOpenedLeavesTheOneInFront()
    {
        TestPages test;
        test.open("a");
        const auto damaged = test.manager.open(QStringLiteral("damaged"));
        QVERIFY(!damaged);
        QVERIFY2(damaged.error().startsWith(test.project.pageFile(QStringLiteral("damaged"))),
                 qPrintable(damaged.error()));
        QCOMPARE(test.current(), QStringLiteral("a"));
        QCOMPARE(test.canvases(), QStringLiteral("a"));
    }
};

QTEST_MAIN(tst_CanvasManager)
#include "tst_canvasmanager.moc"
