#include "host/shapes/placeholder.h"
#include "tests/support/designdesk.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

namespace {

using Korvane::TriggerType;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

using Desk = DesignDesk;

} // namespace

class tst_DesignDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPageIsAsItWasRead()
    {
        const Desk desk;
        QVERIFY(!desk.document->isModified());
        QVERIFY(!desk.document->isFileChanged());
        QCOMPARE(desk.scripts(nullptr), text("6: print(1)\n"));
        QCOMPARE(desk.scripts(desk.shape("text")), text("8: print(trigger)"));
        QCOMPARE(desk.scripts(desk.shape("box")), QString());
    }

    void whatWasNotChangedIsSavedByteForByte()
    {
        const Desk desk;
        QVERIFY(desk.document->save());
        QCOMPARE(desk.file(), TestProject::plantPage());
        QVERIFY(!desk.document->isFileChanged());
    }

    void scriptsAreSavedAndReadAgain()
    {
        Desk desk;
        desk.set(desk.shape("box"), TriggerType::MouseHover, "if 1:\n\tpass\n");
        desk.set(nullptr, TriggerType::CanvasUnload, "x = '\xc3\xa4'");
        QVERIFY(desk.document->save());
        QVERIFY(!desk.document->isFileChanged()); // by anybody else
        desk.reopen();
        QCOMPARE(desk.document->page().problems.size(), 1); // what could not be loaded before
        QCOMPARE(desk.scripts(desk.shape("box")), text("3: if 1:\n\tpass\n"));
        QCOMPARE(desk.scripts(nullptr), text("7: x = '\xc3\xa4'"));
        QCOMPARE(desk.scripts(desk.shape("text")), text("8: print(trigger)"));
        desk.set(desk.shape("box"), TriggerType::MouseHover, "");
        desk.set(nullptr, TriggerType::CanvasLoad, "print(1)\n");
        QVERIFY(desk.document->save());
        QCOMPARE(desk.file(), TestProject::plantPage()); // all is as before
    }

    void whatIsNotKnownIsKept()
    {
        const Desk desk;
        desk.set(desk.shape("text"), TriggerType::MousePress, "pass");
        QVERIFY(desk.document->save());
        const QByteArray saved = desk.file();
        for (const char* kept : {"\"author\": \"someone\"", "\"group\": 7", "\"by\": \"hand\"", "\"type\": 99"})
            QVERIFY2(saved.contains(kept), kept);
        QVERIFY(saved.contains("\"pass\"") && !saved.contains("print(trigger)"));
    }

    void changesAreTold()
    {
        const Desk desk;
        QSignalSpy modified(desk.document.get(), &DesignDocument::modifiedChanged);
        QList<const Shape*> changed;
        connect(desk.document.get(), &DesignDocument::scriptsChanged, this,
                [&changed](const Shape* shape) { changed.append(shape); });
        desk.set(desk.shape("box"), TriggerType::MousePress, "1");
        QCOMPARE(modified, QList<QVariantList>({{true}}));
        QCOMPARE(changed, QList<const Shape*>({desk.shape("box")}));
        QVERIFY(desk.document->isModified());
        desk.set(nullptr, TriggerType::MousePress, "2");
        QCOMPARE(modified.size(), 1);
        QCOMPARE(changed, QList<const Shape*>({desk.shape("box"), nullptr}));
        QVERIFY(desk.document->save());
        QCOMPARE(modified.size(), 2);
        QCOMPARE(modified[1][0].toBool(), false);
        QVERIFY(!desk.document->isModified());
        desk.set(nullptr, TriggerType::MousePress, "3");
        QCOMPARE(modified.size(), 3);
    }

    void theSameScriptsChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("events"); // of the shape "box"
        QTest::newRow("none") << QByteArray("[]");
        QTest::newRow("an empty one") << QByteArray("[{\"trigger\":8,\"type\":1001,\"script\":[\"\"]}]");
        QTest::newRow("one") << QByteArray("[{\"trigger\":8,\"type\":1001,\"script\":[\"a\"]}]");
        QTest::newRow("two, not by their numbers")
            << QByteArray("[{\"trigger\":8,\"type\":1001,\"script\":[\"a\"]},"
                          "{\"trigger\":1,\"type\":1001,\"script\":[\"b\",\"\"]}]");
        QTest::newRow("two of one trigger") << QByteArray("[{\"trigger\":8,\"type\":1001,\"script\":[\"a\"]},"
                                                          "{\"trigger\":8,\"type\":1001,\"script\":[\"b\"]}]");
        QTest::newRow("one that can't be loaded") << QByteArray("[{\"trigger\":8,\"type\":99}]");
    }
    void theSameScriptsChangeNothing()
    {
        QFETCH(QByteArray, events);
        const Desk desk(TestProject::plantPage().replace("\"group\": 7", "\"events\": " + events));
        QVERIFY(desk.document->save()); // as this program writes it
        const QByteArray before = desk.file();
        int changes = 0;
        connect(desk.document.get(), &DesignDocument::scriptsChanged, this, [&changes] { ++changes; });
        const Shape* box = desk.shape("box");
        QList<ScadaScriptAction> scripts = desk.document->scripts(box);
        desk.document->setScripts(box, scripts);
        ScadaScriptAction empty; // as an editor gives for an event that has none
        empty.setTriggerType(TriggerType::KeyPress);
        scripts.prepend(empty);
        desk.document->setScripts(box, scripts);
        QCOMPARE(changes, 0);
        QVERIFY(!desk.document->isModified());
        QVERIFY(desk.document->save());
        QCOMPARE(desk.file(), before);
    }

    void anotherTriggerIsAChange()
    {
        const Desk desk;
        desk.set(desk.shape("text"), TriggerType::MouseRelease, "print(trigger)");
        QVERIFY(desk.document->isModified());
        QCOMPARE(desk.scripts(desk.shape("text")), text("1: print(trigger)"));
    }

    void whatATriedScriptDoesIsNotSaved()
    {
        const Desk desk;
        Canvas& trial = desk.document->trialCanvas();
        QVERIFY(&trial != &desk.document->canvas());
        QCOMPARE(trial.canvasName(), text("plant"));
        QCOMPARE(trial.shapeNames(), desk.document->canvas().shapeNames());
        desk.system->scripts().runForCanvas(&trial,
                                            text("canvas['text']['Text'] = 'tried'\ncanvas['box']['Position'] = "
                                                 "(0, 0)\ncanvas['box']['Visible'] = False"));
        QCOMPARE(desk.system->scripts().lastError(), QString());
        QCOMPARE(trial.findShape(text("text"))->namedProperty(text("Text")), QVariant(text("tried")));
        QCOMPARE(desk.shape("text")->namedProperty(text("Text")), QVariant(text("off")));
        QVERIFY(desk.shape("box")->isVisible());
        QVERIFY(!desk.document->isModified());
        QVERIFY(desk.document->save());
        QCOMPARE(desk.file(), TestProject::plantPage());
    }

    void itsEndEndsWhatWasTried()
    {
        Desk desk;
        desk.system->scripts().runForCanvas(&desk.document->trialCanvas(), text("korvane.kept = canvas"));
        desk.document.reset();
        QString out;
        connect(&desk.system->scripts(), &ScriptEngine::stdOut, this, [&out](const QString& text) { out += text; });
        desk.system->scripts().run(text("print(korvane.kept)\ndel korvane.kept"));
        QCOMPARE(out, text("<page that is closed>\n"));
    }

    void whatSomeoneElseDidToTheFileIsNoticed()
    {
        const Desk desk;
        desk.project.write("pages/plant.pws", desk.file());
        QVERIFY(!desk.document->isFileChanged()); // written anew, but the same
        desk.project.write("pages/plant.pws", desk.file() + '\n');
        QVERIFY(desk.document->isFileChanged());
        QVERIFY(QFile::remove(desk.project.path("pages/plant.pws")));
        QVERIFY(desk.document->isFileChanged());
        QVERIFY(desk.document->save()); // over that, as whoever asks for it was told
        QVERIFY(!desk.document->isFileChanged());
        QCOMPARE(desk.file(), TestProject::plantPage());
    }

    void aFileThatCantBeWrittenStaysAsItWas()
    {
        const Desk desk;
        desk.set(nullptr, TriggerType::CanvasLoad, "changed");
        const QString fileName = desk.project.path("pages/plant.pws");
        QVERIFY(QFile::remove(fileName) && QDir().mkpath(fileName)); // a folder in its place
        const auto saved = desk.document->save();
        QVERIFY(!saved);
        QVERIFY2(saved.error().startsWith(fileName + text(": can't be written: ")), qPrintable(saved.error()));
        QVERIFY(desk.document->isModified());
        QVERIFY(QDir(fileName).exists());
        QVERIFY(QDir().rmdir(fileName));
        QVERIFY(desk.document->save());
        QVERIFY(!desk.document->isModified());
        QVERIFY(desk.file().contains("\"changed\""));
    }

    void aFolderThatCantBeWrittenLeavesTheFile()
    {
        const Desk desk;
        desk.set(nullptr, TriggerType::CanvasLoad, "changed");
        const QString folder = desk.project.path("pages");
        const auto writable = QFile::permissions(folder);
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        const auto restore = qScopeGuard([&] { QFile::setPermissions(folder, writable); });
        if (QFileInfo(folder).isWritable())
            QSKIP("this user may write everywhere");
        QVERIFY(!desk.document->save());
        QVERIFY(desk.document->isModified());
        QCOMPARE(desk.file(), TestProject::plantPage());
    }

    void anObjectThatCouldNotBeLoadedHasNoScripts()
    {
        const Desk desk(TestProject::plantPage().replace("\"Label\"", "\"Hologram\""));
        const Shape* placeholder = desk.shape("text");
        QVERIFY(dynamic_cast<const Placeholder*>(placeholder));
        QVERIFY(!DesignDocument::canHaveScripts(placeholder));
        QVERIFY(DesignDocument::canHaveScripts(desk.shape("box")));
        QVERIFY(DesignDocument::canHaveScripts(nullptr));
        desk.set(placeholder, TriggerType::MousePress, "would be lost");
        QVERIFY(!desk.document->isModified());
        QVERIFY(desk.document->save());
        QCOMPARE(QJsonDocument::fromJson(desk.file()), // with those it has
                 QJsonDocument::fromJson(TestProject::plantPage().replace("\"Label\"", "\"Hologram\"")));
    }
};

QTEST_MAIN(tst_DesignDocument)
#include "tst_designdocument.moc"
