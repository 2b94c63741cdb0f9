#include "host/actions/canvasactionmanagerfactory.h"
#include "host/canvas/pagereader.h"
#include "host/core/projectmanager.h"
#include "host/runtime/pointlist.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/testproject.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>

#include <functional>

namespace {

const QString plant = QStringLiteral("plant");
const QString empty = QStringLiteral("empty");
const QString other = QStringLiteral("other");

/// The project of TestProject, open.
class TestManager
{
public:
    TestManager()
    {
        if (!manager.openProject(project.folder()))
            qFatal("%s", qPrintable(manager.lastError()));
        for (auto signal :
             {&ProjectManager::projectClosed, &ProjectManager::projectCreated, &ProjectManager::projectOpened})
            QObject::connect(&manager, signal, &manager, [this, signal] {
                told.append(signal == &ProjectManager::projectClosed    ? QStringLiteral("closed ")
                            : signal == &ProjectManager::projectCreated ? QStringLiteral("created ")
                                                                        : QStringLiteral("opened "));
                told.append(manager.projectName());
            });
    }

    QByteArray stored() const { return project.read("project.json"); }
    Project read() const { return Project::read(project.folder()).value(); }
    bool hasFile(const char* name) const { return QFileInfo::exists(project.path(name)); }
    template <typename T>
    T* part(const char* name) const
    {
        return manager.findChild<T*>(QString::fromLatin1(name));
    }
    void click(const char* button) const { QTest::mouseClick(part<QPushButton>(button), Qt::LeftButton); }
    /// What the dialog that is open now asks is answered.
    template <typename Dialog, typename Answer>
    void answer(const Answer& answer) const
    {
        auto* dialog = manager.findChild<Dialog*>();
        QVERIFY(dialog);
        answer(dialog);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void answerName(const QString& name) const
    {
        answer<QInputDialog>([&](QInputDialog* dialog) {
            dialog->setTextValue(name);
            dialog->accept();
        });
    }

    TestProject project;
    ProjectManager manager;
    QStringList told;
};

QStringList pageList(const char* names)
{
    return QString::fromLatin1(names).split(QLatin1Char(' '));
}

} // namespace

using ManagerCall = std::function<bool(ProjectManager&)>;
Q_DECLARE_METATYPE(ManagerCall)

class tst_ProjectManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void withoutAProjectThereIsNothing()
    {
        ProjectManager manager;
        QVERIFY(!manager.isOpen());
        QVERIFY(!manager.isModified());
        QVERIFY(!manager.isSecurityEnabled());
        QCOMPARE(manager.projectName(), QString());
        QCOMPARE(manager.projectFolder(), QString());
        QCOMPARE(manager.lastError(), QString());
        QCOMPARE(manager.pages(), QStringList());
        QCOMPARE(manager.pageFile(plant), QString());
        QCOMPARE(manager.startPage(), QString());
        QVERIFY(!manager.setting(QStringLiteral("name")).isValid());
        QCOMPARE(manager.tick().count(), std::chrono::milliseconds::rep(0));
        QCOMPARE(manager.sources(), QStringList());
        QCOMPARE(manager.resourceFile(QStringLiteral("points.csv")), QString());
    }

    void withoutAProjectNothingCanBeDone_data()
    {
        QTest::addColumn<ManagerCall>("call");
        const auto row = [](const char* name, const ManagerCall& call) { QTest::newRow(name) << call; };
        row("close", [](ProjectManager& manager) { return manager.closeProject(); });
        row("save", [](ProjectManager& manager) { return manager.saveProject(); });
        row("security", [](ProjectManager& manager) { return manager.setSecurityEnabled(true); });
        row("start page", [](ProjectManager& manager) { return manager.setStartPage(plant); });
        row("add", [](ProjectManager& manager) { return manager.addPage(other); });
        row("remove", [](ProjectManager& manager) { return manager.removePage(plant); });
        row("rename", [](ProjectManager& manager) { return manager.renamePage(plant, other); });
        row("setting", [](ProjectManager& manager) { return manager.setSetting(QStringLiteral("name"), other); });
    }
    void withoutAProjectNothingCanBeDone()
    {
        QFETCH(ManagerCall, call);
        ProjectManager manager;
        QVERIFY(!call(manager));
        QCOMPARE(manager.lastError(), QStringLiteral("No project is open."));
    }

    void aProjectIsOpened()
    {
        TestProject project;
        project.write("project.json", TestProject::json("{'name': 'plant 1', 'startPage': 'plant', 'security': true,"
                                                        " 'source': 'simulation?seed=2', 'tickMs': 200}"));
        ProjectManager manager;
        QSignalSpy opened(&manager, &ProjectManager::projectOpened);
        QSignalSpy closed(&manager, &ProjectManager::projectClosed);
        QVERIFY(manager.openProject(project.folder()));
        QCOMPARE(opened.count(), 1);
        QCOMPARE(closed.count(), 0);
        QVERIFY(manager.isOpen());
        QVERIFY(!manager.isModified());
        QVERIFY(manager.isSecurityEnabled());
        QCOMPARE(manager.projectName(), QStringLiteral("plant 1"));
        QCOMPARE(manager.projectFolder(), QFileInfo(project.folder()).canonicalFilePath());
        QCOMPARE(manager.pages(), pageList("empty plant"));
        QCOMPARE(manager.startPage(), plant);
        QVERIFY(manager.tick() == std::chrono::milliseconds(200));
        QCOMPARE(manager.sources(), QStringList(QStringLiteral("simulation?seed=2")));
    }

    void theOneBeforeIsClosedFirst()
    {
        TestManager test;
        TestProject second;
        second.write("project.json", TestProject::json("{'name': 'second'}"));
        QVERIFY(test.manager.openProject(second.folder()));
        QCOMPARE(test.told, QStringList({QStringLiteral("closed "), QString(), QStringLiteral("opened "),
                                         QStringLiteral("second")}));
        QCOMPARE(test.manager.sources(), QStringList()); // none is named
    }

    void whatIsNoProjectLeavesTheOneBefore()
    {
        TestManager test;
        const QString nowhere = test.project.path("nowhere");
        QVERIFY(!test.manager.openProject(nowhere));
        QCOMPARE(test.manager.lastError(), nowhere + QStringLiteral(": there is no such project folder"));
        QCOMPARE(test.manager.projectName(), QStringLiteral("test plant"));
        QCOMPARE(test.told, QStringList());
        QVERIFY(test.manager.setStartPage(empty)); // the next operation that does not fail
        QCOMPARE(test.manager.lastError(), QString());
    }

    void aProjectThatWasReadIsTaken()
    {
        TestManager test;
        Project read = test.read();
        QVERIFY(QFile::remove(read.settingsFile())); // not read again
        test.manager.setProject(read);
        QCOMPARE(test.told, QStringList({QStringLiteral("closed "), QString(), QStringLiteral("opened "),
                                         QStringLiteral("test plant")}));
        QCOMPARE(test.manager.pages(), pageList("empty plant"));
        QVERIFY(!test.manager.isModified());
    }

    void aProjectIsMade()
    {
        TestManager test;
        const QString folder = test.project.path("new/deep");
        QVERIFY2(test.manager.createProject(folder, QStringLiteral("one")), qPrintable(test.manager.lastError()));
        QCOMPARE(test.told, QStringList({QStringLiteral("closed "), QString(), QStringLiteral("created "),
                                         QStringLiteral("one"), QStringLiteral("opened "), QStringLiteral("one")}));
        QCOMPARE(test.manager.projectFolder(), QFileInfo(folder).canonicalFilePath());
        QCOMPARE(test.manager.pages(), QStringList());
        QCOMPARE(test.manager.startPage(), QString());
        QVERIFY(!test.manager.isModified());
        const auto points = PointList::read(folder + QStringLiteral("/points.csv"));
        QVERIFY2(points, points ? "" : qPrintable(points.error()));
        QCOMPARE(points->problems, QStringList());
        QCOMPARE(points->objects.size(), std::size_t(0));
        QVERIFY(test.manager.addPage(plant));
    }

    void anEmptyFolderIsTaken()
    {
        TestManager test;
        QVERIFY(QDir().mkpath(test.project.path("bare")));
        QVERIFY(test.manager.createProject(test.project.path("bare"), QStringLiteral("one")));
    }

    void whereNoProjectCanBe_data()
    {
        QTest::addColumn<QByteArray>("folder");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        const QString one = QStringLiteral("one");
        QTest::newRow("a project") << QByteArray(".") << one << QStringLiteral("holds a project already");
        QTest::newRow("a folder with files") << QByteArray("pages") << one << QStringLiteral("is not empty");
        QTest::newRow("a folder with a hidden file") << QByteArray("hidden") << one << QStringLiteral("is not empty");
        QTest::newRow("a file") << QByteArray("points.csv") << one << QStringLiteral("is a file");
        QTest::newRow("below a file") << QByteArray("points.csv/x") << one << QStringLiteral("can't be made");
        QTest::newRow("no name") << QByteArray("x") << QString() << QStringLiteral("A name is needed");
        QTest::newRow("a bad name") << QByteArray("x") << QStringLiteral("a/b") << QStringLiteral("a character");
    }
    void whereNoProjectCanBe()
    {
        QFETCH(QByteArray, folder);
        QFETCH(QString, name);
        QFETCH(QString, reason);
        TestManager test;
        QVERIFY(QDir().mkpath(test.project.path("hidden")));
        test.project.write("hidden/.x", "");
        const QByteArray before = test.stored();
        QVERIFY(!test.manager.createProject(test.project.path(folder.constData()), name));
        QVERIFY2(test.manager.lastError().contains(reason), qPrintable(test.manager.lastError()));
        QCOMPARE(test.told, QStringList());
        QCOMPARE(test.stored(), before);
        QVERIFY(!test.hasFile("x"));
        QVERIFY(!test.hasFile("hidden/pages"));
        QVERIFY(!test.hasFile("pages/project.json"));
    }

    void aProjectThatCanNotBeMadeLeavesNothing()
    {
#ifndef Q_OS_LINUX
        QSKIP("needs the longest path of this system");
#endif
        TestManager test;
        // "pages" fits behind it, "points.csv" does not: the longest path has 4095 bytes.
        QString folder = test.project.path("deep");
        while (folder.toUtf8().size() < 4088)
            folder += QLatin1Char('/') + QString(qBound(1, 4087 - folder.toUtf8().size(), 200), QLatin1Char('d'));
        const QString above = QFileInfo(folder).path();
        QVERIFY(QDir().mkpath(above));
        QVERIFY(!test.manager.createProject(folder, QStringLiteral("one")));
        QVERIFY2(test.manager.lastError().contains(QLatin1String("points.csv")), qPrintable(test.manager.lastError()));
        QVERIFY(QDir(above).isEmpty());
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(!test.manager.createProject(folder, QStringLiteral("one")));
        QVERIFY(QFileInfo(folder).isDir());
        QVERIFY(QDir(folder).isEmpty());
    }

    void aProjectIsClosed()
    {
        TestManager test;
        QVERIFY(test.manager.setSecurityEnabled(true));
        QVERIFY(test.manager.closeProject());
        QCOMPARE(test.told, QStringList({QStringLiteral("closed "), QString()}));
        QVERIFY(!test.manager.isOpen());
        QVERIFY(!test.manager.isModified());
        QVERIFY(!test.read().isSecured); // not saved
        QVERIFY(!test.manager.closeProject());
        QCOMPARE(test.told.size(), 2);
    }

    void securityIsThatOfTheStart()
    {
        TestManager test;
        QVERIFY(test.manager.setSecurityEnabled(true));
        QVERIFY(!test.manager.isSecurityEnabled());
        QVERIFY(test.manager.isModified());
        QVERIFY(test.manager.saveProject());
        QVERIFY(!test.manager.isSecurityEnabled());
        QVERIFY(test.manager.openProject(test.project.folder()));
        QVERIFY(test.manager.isSecurityEnabled());
        QVERIFY(test.manager.closeProject());
        QVERIFY(!test.manager.isSecurityEnabled());
    }

    void whatIsSavedIsThere()
    {
        TestManager test;
        const QByteArray before = test.stored();
        QVERIFY(test.manager.setStartPage(empty));
        QVERIFY(test.manager.isModified());
        QCOMPARE(test.stored(), before);
        QVERIFY(test.manager.saveProject());
        QVERIFY(!test.manager.isModified());
        QCOMPARE(test.stored(), QByteArray(before).replace("\"startPage\": \"plant\"", "\"startPage\": \"empty\""));
        QVERIFY(test.manager.setStartPage(plant));
        QVERIFY(test.manager.isModified());
        QVERIFY(test.manager.setStartPage(empty)); // as it is in the file
        QVERIFY(!test.manager.isModified());
    }

    void whatAnotherProgramWroteStays()
    {
        TestManager test;
        QVERIFY(test.manager.setStartPage(empty));
        const QByteArray theirs = TestProject::json("{'name': 'theirs', 'pages': ['plant'], 'startPage': 'plant'}");
        test.project.write("project.json", theirs);
        QVERIFY(!test.manager.saveProject());
        QVERIFY2(test.manager.lastError().contains(QLatin1String("changed by another program")),
                 qPrintable(test.manager.lastError()));
        QVERIFY(!test.manager.renamePage(plant, other));
        QVERIFY(!test.manager.addPage(other));
        QCOMPARE(test.stored(), theirs);
        QVERIFY(test.hasFile("pages/plant.pws")); // named as before
        QVERIFY(!test.hasFile("pages/other.pws"));
        QVERIFY(test.manager.isModified());
    }

    void aFileThatIsGoneIsWrittenAnew()
    {
        TestManager test;
        const QByteArray before = test.stored();
        QVERIFY(QFile::remove(test.project.path("project.json")));
        QVERIFY(test.manager.saveProject());
        QCOMPARE(test.stored(), before);
    }

    void aFileThatCanNotBeWritten()
    {
        TestManager test;
        QVERIFY(test.manager.setStartPage(empty));
        QVERIFY(QFile::remove(test.project.path("project.json")));
        QVERIFY(QDir().mkpath(test.project.path("project.json/in the way")));
        QVERIFY(!test.manager.saveProject());
        QVERIFY2(test.manager.lastError().contains(QLatin1String("project.json: can't be written")),
                 qPrintable(test.manager.lastError()));
        QVERIFY(test.manager.isModified());
    }

    void pagesHaveFiles()
    {
        TestManager test;
        QCOMPARE(test.manager.pageFile(plant), test.manager.projectFolder() + QStringLiteral("/pages/plant.pws"));
        QCOMPARE(test.manager.pageFile(other), QString());
        QCOMPARE(test.manager.pageFile(QStringLiteral("../pages/plant")), QString());
    }

    void theStartPageIsOneThatThereIs()
    {
        TestManager test;
        QCOMPARE(test.manager.startPage(), plant);
        QVERIFY(!test.manager.setStartPage(other));
        QCOMPARE(test.manager.lastError(), QStringLiteral("The project has no page \"other\"."));
        QVERIFY(!test.manager.setStartPage(QString()));
        QCOMPARE(test.manager.startPage(), plant);
        QVERIFY(test.manager.setStartPage(empty));
        QCOMPARE(test.manager.startPage(), empty);
    }

    void aPageIsAddedBehindTheOthers()
    {
        TestManager test;
        const QString early = QStringLiteral("a 1");
        QVERIFY2(test.manager.addPage(early), qPrintable(test.manager.lastError()));
        QCOMPARE(test.manager.pages(), QStringList({empty, plant, early}));
        QCOMPARE(test.read().pages(), QStringList({empty, plant, early})); // without being saved
        QVERIFY(!test.manager.isModified());
        CanvasActionManagerFactory managers(nullptr);
        const auto page = PageReader(managers).readFile(test.manager.pageFile(early));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList());
        QCOMPARE(page->canvas->shapeCount(), std::size_t(0));
    }

    void whatIsNotSavedStaysSoWhenAPageIsAdded()
    {
        TestManager test;
        QVERIFY(test.manager.setStartPage(empty));
        QVERIFY(test.manager.addPage(other));
        QVERIFY(test.manager.isModified());
        QCOMPARE(test.read().startPage, plant);
        QCOMPARE(test.manager.startPage(), empty);
        QVERIFY(test.manager.saveProject());
        QCOMPARE(test.read().startPage, empty);
        QCOMPARE(test.read().pages(), pageList("empty plant other"));
    }

    void namesThatNoPageCanHave_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isGood");
        const auto row = [](const char* text, const QString& name, bool isGood = false) {
            QTest::newRow(text) << name << isGood;
        };
        row("none", QString());
        row("a slash", QStringLiteral("a/b"));
        row("a backslash", QStringLiteral("a\\b"));
        row("a way out", QStringLiteral("../a"));
        row("a colon", QStringLiteral("a:b"));
        row("a quote", QStringLiteral("a\"b"));
        row("a line feed", QStringLiteral("a\nb"));
        row("a null", QString(QChar()) + other);
        row("a delete", QStringLiteral("a\x7f"));
        row("a dot", QStringLiteral("."));
        row("two dots", QStringLiteral(".."));
        row("hidden", QStringLiteral(".a"));
        row("a blank before", QStringLiteral(" a"));
        row("a blank behind", QStringLiteral("a "));
        row("a device", QStringLiteral("NUL"));
        row("a device in front of a dot", QStringLiteral("com1.x"));
        row("too long", QString(241, QLatin1Char('a')));
        row("too long in UTF-8", QString(121, QChar(0xe4)));
        row("taken", plant);
        row("taken where case does not count", QStringLiteral("Plant"));
        row("taken by a removed page", empty);
        row("just short enough", QString(240, QLatin1Char('a')), true);
        row("like a device", QStringLiteral("console"), true);
        row("blanks and dots inside", QStringLiteral("a b.c."), true);
        row("of another alphabet", QStringLiteral("\u53f0 \U0001f4a7"), true);
    }
    void namesThatNoPageCanHave()
    {
        QFETCH(QString, name);
        QFETCH(bool, isGood);
        TestManager test;
        QVERIFY(test.manager.removePage(empty));
        const auto files = [&test] {
            return QDir(test.project.path("pages")).entryList(QDir::AllEntries | QDir::Hidden);
        };
        const QStringList before = files();
        QVERIFY(test.manager.addPage(name) == isGood);
        QCOMPARE(test.manager.lastError().isEmpty(), isGood);
        QCOMPARE(files() == before, !isGood);
        QCOMPARE(test.manager.pages().contains(name), isGood || name == plant);
        QVERIFY(!isGood || QFile::remove(test.manager.pageFile(name)));
        const bool isOwn = name.compare(plant, Qt::CaseInsensitive) == 0;
        QVERIFY(test.manager.renamePage(plant, name) == (isGood || isOwn));
        QVERIFY(test.manager.pages().contains(isGood || isOwn ? name : plant));
    }

    void aPageThatCanNotBeMade()
    {
        TestManager test;
        QVERIFY(QDir(test.project.path("pages")).removeRecursively());
        test.project.write("pages", "in the way");
        QVERIFY(!test.manager.addPage(other));
        QVERIFY2(test.manager.lastError().contains(QLatin1String("can't be made")),
                 qPrintable(test.manager.lastError()));
        QCOMPARE(test.manager.pages(), QStringList());
        QVERIFY(QFile::remove(test.project.path("pages")));
        QVERIFY(test.manager.addPage(other)); // the folder is made
    }

    void aRemovedPageKeepsItsFile()
    {
        TestManager test;
        QVERIFY(test.manager.removePage(plant));
        QCOMPARE(test.manager.pages(), QStringList(empty));
        QCOMPARE(test.manager.startPage(), QString()); // it was the one
        QCOMPARE(test.manager.pageFile(plant), QString());
        QCOMPARE(test.project.read("pages/plant.pws"), TestProject::plantPage());
        QVERIFY(test.manager.isModified());
        QCOMPARE(test.read().pages(), pageList("empty plant")); // not saved
        QVERIFY(test.manager.saveProject());
        QCOMPARE(test.read().pages(), QStringList(empty));
        QVERIFY(!test.manager.removePage(plant));
        QCOMPARE(test.manager.lastError(), QStringLiteral("The project has no page \"plant\"."));
    }

    void aRemovedPagesNameIsFreeWithoutItsFile()
    {
        TestManager test;
        QVERIFY(test.manager.removePage(plant));
        QVERIFY(test.manager.saveProject());
        QVERIFY(!test.manager.addPage(plant));
        QVERIFY2(test.manager.lastError().contains(QLatin1String("its file is still there")),
                 qPrintable(test.manager.lastError()));
        QVERIFY(QFile::remove(test.project.path("pages/plant.pws")));
        QVERIFY(test.manager.addPage(plant));
        QCOMPARE(test.manager.pages(), pageList("empty plant"));
        QCOMPARE(test.read().removedPages, QStringList());
        QVERIFY(test.manager.removePage(plant));
        QVERIFY(QFile::remove(test.project.path("pages/plant.pws")));
        QVERIFY(test.manager.renamePage(empty, plant));
        QCOMPARE(test.manager.pages(), QStringList(plant));
    }

    void aPageIsRenamedWithItsFile()
    {
        TestManager test;
        QVERIFY(test.manager.setSetting(QStringLiteral("pages"), pageList("plant empty")));
        QVERIFY(test.manager.saveProject());
        QVERIFY2(test.manager.renamePage(plant, other), qPrintable(test.manager.lastError()));
        QCOMPARE(test.manager.pages(), pageList("other empty"));
        QCOMPARE(test.manager.startPage(), other);
        QVERIFY(!test.manager.isModified());
        QCOMPARE(test.read().startPage, other); // without being saved
        QCOMPARE(test.read().pages(), pageList("other empty"));
        QVERIFY(!test.hasFile("pages/plant.pws"));
        QCOMPARE(test.project.read("pages/other.pws"), TestProject::plantPage());
        QVERIFY(test.manager.renamePage(empty, QStringLiteral("Empty"))); // only the case
        QCOMPARE(test.manager.pages(), pageList("other Empty"));
        QCOMPARE(test.manager.startPage(), other);
    }

    void pagesThatCanNotBeRenamed()
    {
        TestManager test;
        QVERIFY(!test.manager.renamePage(other, QStringLiteral("x")));
        QCOMPARE(test.manager.lastError(), QStringLiteral("The project has no page \"other\"."));
        QVERIFY(!test.manager.renamePage(plant, empty));
        QCOMPARE(test.manager.lastError(), QStringLiteral("The name \"empty\" is taken."));
        QVERIFY(test.manager.renamePage(plant, plant));
        QVERIFY(QDir().mkpath(test.project.path("pages/other.pws"))); // a folder in the way
        QVERIFY(!test.manager.renamePage(plant, other));
        QCOMPARE(test.manager.pages(), pageList("empty plant"));
        QCOMPARE(test.manager.startPage(), plant);
    }

    void settingsAreSetAndTakenOut()
    {
        TestManager test;
        const QString repeat = QStringLiteral("alarms.repeatMs");
        QCOMPARE(test.manager.setting(QStringLiteral("scriptLimitMs")).toInt(), 1500);
        QVERIFY(!test.manager.setting(repeat).isValid());
        QVERIFY(test.manager.setSetting(repeat, 500));
        QCOMPARE(test.manager.setting(repeat).toInt(), 500);
        QVERIFY(test.manager.isModified());
        QVERIFY(test.manager.saveProject());
        QCOMPARE(test.read().alarms.repeatAfter.count(), std::chrono::milliseconds::rep(500));
        QVERIFY(test.manager.setSetting(repeat, {}));
        QVERIFY(!test.manager.setting(repeat).isValid());
        QVERIFY(test.manager.setSetting(QStringLiteral("tickMs"), 100));
        QVERIFY(test.manager.tick() == std::chrono::milliseconds(100));
        QVERIFY(test.manager.setSetting(QStringLiteral("source"), QStringLiteral("recording:a.csv")));
        QCOMPARE(test.manager.sources(), QStringList(QStringLiteral("recording:a.csv")));
    }

    void aWrongSettingIsRefused()
    {
        TestManager test;
        QVERIFY(!test.manager.setSetting(QStringLiteral("tickMs"), 5));
        QVERIFY2(test.manager.lastError().endsWith(QLatin1String("\"tickMs\" must be a whole number from 10 to 1000")),
                 qPrintable(test.manager.lastError()));
        QVERIFY(!test.manager.isModified());
        QVERIFY(test.manager.tick() == std::chrono::milliseconds(50));
    }

    void filesOfTheProject()
    {
        TestManager test;
        QCOMPARE(test.manager.resourceFile(QStringLiteral("pages/plant.pws")), test.manager.pageFile(plant));
        QCOMPARE(test.manager.resourceFile(QStringLiteral("pages/../points.csv")),
                 test.manager.projectFolder() + QStringLiteral("/points.csv"));
        QCOMPARE(test.manager.resourceFile(QStringLiteral("sounds/high.wav")), QString());
        QCOMPARE(test.manager.resourceFile(QStringLiteral("pages")), QString()); // a folder
        QCOMPARE(test.manager.resourceFile(QString()), QString());
        QCOMPARE(test.manager.resourceFile(test.manager.pageFile(plant)), QString());
        QFile outside(test.project.path("../outside.wav"));
        QVERIFY(outside.open(QIODevice::WriteOnly));
        QCOMPARE(test.manager.resourceFile(QStringLiteral("../outside.wav")), QString());
    }

    // The window

    void theWindowIsOneOfItsOwn()
    {
        QWidget parent;
        const ProjectManager manager(&parent);
        QVERIFY(manager.isWindow());
        QCOMPARE(manager.parentWidget(), &parent);
    }

    void theWindowShowsTheProject()
    {
        TestManager test;
        test.manager.show();
        QCOMPARE(test.part<QLineEdit>("nameEdit")->text(), QStringLiteral("test plant"));
        QCOMPARE(test.part<QLineEdit>("folderEdit")->text(), QDir::toNativeSeparators(test.manager.projectFolder()));
        QCOMPARE(test.part<QLineEdit>("tickEdit")->text(), QStringLiteral("50 ms"));
        const auto* tree = test.part<QTreeWidget>("pageTree");
        QCOMPARE(tree->topLevelItemCount(), 2);
        QCOMPARE(tree->topLevelItem(0)->text(0), empty);
        QCOMPARE(tree->topLevelItem(0)->text(1), QString());
        QCOMPARE(tree->topLevelItem(1)->text(0), plant);
        QCOMPARE(tree->topLevelItem(1)->text(1), QStringLiteral("start page"));
        QVERIFY(!test.part<QPushButton>("saveButton")->isEnabled());
        QVERIFY(!test.part<QPushButton>("renameButton")->isEnabled()); // nothing is selected
        QVERIFY(!test.manager.openProject(test.project.path("nowhere")));
        QCOMPARE(test.part<QLabel>("errorLabel")->text(), test.manager.lastError());
        QVERIFY(test.manager.closeProject());
        QCOMPARE(test.part<QLabel>("errorLabel")->text(), QString());
        QCOMPARE(tree->topLevelItemCount(), 0);
        QVERIFY(!test.part<QPushButton>("addButton")->isEnabled());
    }

    void theButtonsChangePages()
    {
        TestManager test;
        test.manager.show();
        test.click("addButton");
        test.answerName(other);
        QCOMPARE(test.manager.pages(), pageList("empty plant other"));
        test.click("startButton"); // the new page is selected
        QCOMPARE(test.manager.startPage(), other);
        QVERIFY(!test.part<QPushButton>("startButton")->isEnabled());
        QVERIFY(test.manager.isWindowModified());
        test.click("renameButton");
        test.answerName(QStringLiteral("new"));
        QCOMPARE(test.manager.pages(), pageList("empty plant new"));
        test.click("removeButton");
        QCOMPARE(test.manager.pages(), pageList("empty plant"));
        test.click("addButton");
        test.answerName(QStringLiteral("a/b"));
        QVERIFY(!test.part<QLabel>("errorLabel")->text().isEmpty());
        test.click("saveButton");
        QVERIFY(!test.manager.isWindowModified());
        QCOMPARE(test.read().pages(), pageList("empty plant"));
    }

    void theBoxChangesSecurity()
    {
        TestManager test;
        test.manager.show();
        auto* box = test.part<QCheckBox>("securityBox");
        QVERIFY(!box->isChecked());
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
        QVERIFY(test.manager.setting(QStringLiteral("security")).toBool());
        QVERIFY(!test.part<QLabel>("restartLabel")->text().isEmpty());
        QVERIFY(test.manager.saveProject());
        QVERIFY(test.manager.openProject(test.project.folder()));
        QVERIFY(box->isChecked());
        QVERIFY(test.part<QLabel>("restartLabel")->text().isEmpty());
    }

    void anotherProjectIsOpenedOnceChangesAreSettled_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("isOpened");
        QTest::addColumn<bool>("isSaved");
        QTest::newRow("saved") << int(QMessageBox::Save) << true << true;
        QTest::newRow("dropped") << int(QMessageBox::Discard) << true << false;
        QTest::newRow("left as it is") << int(QMessageBox::Cancel) << false << false;
    }
    void anotherProjectIsOpenedOnceChangesAreSettled()
    {
        QFETCH(int, answer);
        QFETCH(bool, isOpened);
        QFETCH(bool, isSaved);
        TestManager test;
        TestProject second;
        second.write("project.json", TestProject::json("{'name': 'second'}"));
        test.manager.show();
        QVERIFY(test.manager.setStartPage(empty));
        test.click("openButton");
        test.answer<QMessageBox>([answer](QMessageBox* box) {
            QTest::mouseClick(box->button(static_cast<QMessageBox::StandardButton>(answer)), Qt::LeftButton);
        });
        QCOMPARE(test.manager.findChild<QFileDialog*>() != nullptr, isOpened);
        if (isOpened)
            test.answer<QFileDialog>([&](QFileDialog* dialog) { Q_EMIT dialog->fileSelected(second.folder()); });
        QCOMPARE(test.manager.projectName() == QLatin1String("second"), isOpened);
        QCOMPARE(test.read().startPage == empty, isSaved);
    }

    void aProjectIsMadeByHand()
    {
        TestManager test;
        test.manager.show();
        QVERIFY(QDir().mkpath(test.project.path("fresh")));
        test.click("newButton");
        test.answer<QFileDialog>([&](QFileDialog* dialog) { Q_EMIT dialog->fileSelected(test.project.path("fresh")); });
        QCOMPARE(test.manager.findChild<QInputDialog*>()->textValue(), QStringLiteral("fresh"));
        test.answerName(QStringLiteral("Fresh water"));
        QCOMPARE(test.manager.projectName(), QStringLiteral("Fresh water"));
        QVERIFY(test.hasFile("fresh/project.json"));
    }
};

QTEST_MAIN(tst_ProjectManager)
#include "tst_projectmanager.moc"
