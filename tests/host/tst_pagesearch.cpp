#include "host/core/project.h"
#include "host/runtime/pagesearch.h"
#include "host/runtime/runtimedatabase.h"
#include "tests/support/testproject.h"

#include <QDir>
#include <QtTest>

using Korvane::ScadaObjectType;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A plant with points, a unit and a line of similar names, and a project without a page.
struct Plant
{
    Plant()
    {
        add({ScadaObjectType::AnalogPoint, 200001, text("P1")});
        add({ScadaObjectType::AnalogPoint, 200010, text("P10")});
        add({ScadaObjectType::AnalogPoint, 200011, text("P1:X")});
        add({ScadaObjectType::DigitalPoint, 100001, text("밸브")});
        add({ScadaObjectType::RtuObject, 1, text("P1")});
        add({ScadaObjectType::ChannelObject, 1, text("P1")});
        project.folder = folder.folder();
        project.startPage = text("middle");
        for (const char* page : {"pages/plant.pws", "pages/empty.pws"})
            QFile::remove(folder.path(page));
    }
    void add(const RuntimeDatabase::Object& object)
    {
        if (const auto added = database.add(object); !added)
            qFatal("%s", qPrintable(added.error()));
    }
    void write(const char* name, const QByteArray& bytes) const
    {
        folder.write(QByteArray("pages/" + QByteArray(name) + ".pws").constData(), TestProject::json(bytes));
    }
    /// A page with a shape that has that action.
    void writeAction(const char* name, const QByteArray& action) const
    {
        write(name, "{'format': 'korvane-page', 'version': 1, 'layers': [{'name': 'a', 'shapes': []},"
                    " {'name': 'b', 'shapes': [{'class': 'Label', 'place': [0, 0, 9, 9]},"
                    " {'class': 'Label', 'place': [0, 0, 9, 9], 'actions': [" +
                        action + "]}]}]}");
    }
    void writeTag(const char* name, const QByteArray& tag) const
    {
        writeAction(name, "{'type': 2, 'version': 911, 'targets': [{'tag': '" + tag + "'}]}");
    }
    QStringList search(ObjectKey object) { return pagesNaming(project, object, database); }

    TestProject folder;
    Project project;
    RuntimeDatabase database;
};

constexpr ObjectKey point{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey longer{ScadaObjectType::AnalogPoint, 200010};
constexpr ObjectKey withColon{ScadaObjectType::AnalogPoint, 200011};
constexpr ObjectKey valve{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey unit{ScadaObjectType::RtuObject, 1};
constexpr ObjectKey line{ScadaObjectType::ChannelObject, 1};

} // namespace

Q_DECLARE_METATYPE(ObjectKey)

class tst_PageSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theStartPageComesFirst()
    {
        Plant plant;
        for (const char* name : {"zone", "middle", "attic"})
            plant.writeTag(name, "P1");
        plant.writeTag("other", "P10");
        QCOMPARE(plant.search(point), (QStringList{text("middle"), text("attic"), text("zone")}));
        plant.project.startPage.clear();
        QCOMPARE(plant.search(point), (QStringList{text("attic"), text("middle"), text("zone")}));
        plant.project.startPage = text("other"); // one that does not name it
        QCOMPARE(plant.search(point), (QStringList{text("attic"), text("middle"), text("zone")}));
    }

    void tagsOfAnObject_data()
    {
        QTest::addColumn<QByteArray>("tag");
        QTest::addColumn<ObjectKey>("object");
        const auto row = [](const char* name, const char* tag, ObjectKey object) {
            QTest::newRow(name) << QByteArray(tag) << object;
        };
        row("a name", "P1", point);
        row("a name that another begins with", "P10", longer);
        row("a field", "P1:PointName", point);
        row("a colon without a field is part of the name", "P1:X", withColon);
        row("a field behind such a name", "P1:X:PointName", withColon);
        row("an id", "#200001", point);
        row("an id with a field", "#200010:PointName", longer);
        row("letters of another script", "밸브", valve);
        row("a unit of the same name", "@R::P1", unit);
        row("a unit's field", "@R::P1:PointName", unit);
        row("a unit's id", "@R::#1", unit);
        row("a line of the same name", "@C::P1", line);
        row("a property of the same name", "@::P1", {});
        row("a number", "1", {});
        row("nothing", "", {});
        row("a name that is not there", "P", {});
        row("a name in other letters", "p1", {});
    }
    void tagsOfAnObject()
    {
        QFETCH(const QByteArray, tag);
        QFETCH(const ObjectKey, object);
        Plant plant;
        plant.writeTag("page", tag);
        for (const ObjectKey each : {point, longer, withColon, valve, unit, line})
            QCOMPARE(plant.search(each), each == object ? QStringList{text("page")} : QStringList());
    }

    void tagsStandAtSeveralDepths_data()
    {
        QTest::addColumn<QByteArray>("action");
        QTest::addColumn<bool>("isFound");
        QTest::newRow("the second of two targets")
            << QByteArray("{'type': 8, 'targets': [{'tag': 'P10'}, {'tag': 'P1'}]}") << true;
        QTest::newRow("a rule's condition")
            << QByteArray("{'type': 4, 'rules': [{'when': [{'tag': 'P1', 'operator': '<', 'bound': '3'}]}]}") << true;
        QTest::newRow("the other side of a condition")
            << QByteArray("{'type': 4, 'rules': [{'when': [{'tag': 'P10', 'operator': '<', 'bound': 'P1'}]}]}") << true;
        QTest::newRow("what a later version adds")
            << QByteArray("{'type': 99, 'more': {'deep': [[{'tag': 'P1'}]]}}") << true;
        QTest::newRow("a text that is no tag")
            << QByteArray("{'type': 1, 'targets': [{'tag': 'P10'}], 'settings': {'Format': 'P1'}}") << false;
        QTest::newRow("a tag that is no text") << QByteArray("{'type': 2, 'targets': [{'tag': ['P1']}]}") << false;
    }
    void tagsStandAtSeveralDepths()
    {
        QFETCH(const QByteArray, action);
        QFETCH(const bool, isFound);
        Plant plant;
        plant.writeAction("page", action);
        QCOMPARE(plant.search(point), isFound ? QStringList{text("page")} : QStringList());
    }

    void pagesThatCantBeReadHaveNone()
    {
        Plant plant;
        plant.write("cut", "{'layers': [{'shapes': [{'actions': [{'targets': [{'tag': 'P1'}");
        plant.write("empty", "");
        plant.write("list", "[{'tag': 'P1'}]");
        plant.write("text", "'P1'");
        plant.write("garbage", QByteArray::fromHex("00ff7b22746167223a2250312280"));
        QVERIFY(QDir().mkpath(plant.folder.path("pages/folder.pws")));
        QVERIFY(QFile::link(plant.folder.path("nowhere"), plant.folder.path("pages/gone.pws")));
        plant.writeTag("good", "P1");
        QCOMPARE(plant.search(point), QStringList{text("good")});
    }

    void withoutPagesThereIsNone()
    {
        Plant plant;
        QCOMPARE(plant.search(point), QStringList());
        plant.project.folder = text("/nowhere");
        QCOMPARE(plant.search(point), QStringList());
        plant.project.folder = plant.folder.folder();
        plant.writeTag("page", "nowhere"); // resolves to nothing, which is no object
        QCOMPARE(plant.search({ScadaObjectType::Point, 0}), QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_PageSearch)
#include "tst_pagesearch.moc"
