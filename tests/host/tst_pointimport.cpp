// Lists of points written in full, and merged into others.

#include "host/projectfiles/pointcells.h"
#include "host/projectfiles/pointimport.h"
#include "host/runtime/pointlist.h"
#include "tests/support/temporaryfiles.h"

#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class tst_PointImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWrittenListReadsAsTheSame()
    {
        const QByteArray columns =
            "id,name,kind,unit,description,display_name,station,low_low,low,high,high_high,hysteresis,decimals,scale_"
            "low,"
            "scale_high,states,abnormal_state,stale_after,address,area,low_low_severity,low_severity,high_severity,"
            "high_high_severity,state_severity,rate_severity,quality_severity,communication_severity,rate_limit,on_"
            "delay,"
            "off_delay,latching,alarm_message";
        const QByteArray rows =
            "200001,\"A, \"\"B\"\"\",analog,°C,\"two\nlines\",D,S,0.1,1,1e9,1e+22,0.5,3,-1,1,,,0.25,col "
            "1,North,1,2,3,4,,6,7,8,"
            "0.333,10,2.5,1,hot\n"
            "100001,D,digital,,,,,,,,,,,,,Closed|Open|Moving,2,,,,,,,,5,,,,,,,,\n"
            "1,U,unit,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,\n1,L,line,,,,,,,,,,,,,,,,,,,,,,,,,,,,,,\n";
        const TemporaryFiles files;
        const auto read = PointList::read(files.write(text("a.csv"), columns + '\n' + rows));
        QVERIFY2(read && read->problems.isEmpty(), read ? qPrintable(read->problems.join(u' ')) : "");
        QCOMPARE(int(read->objects.size()), 4);
        const QByteArray written = PointCells::list(read->objects);
        QVERIFY2(written.startsWith(columns + ","), written.constData());
        const auto again = PointList::read(files.write(text("b.csv"), written));
        QVERIFY(again);
        QCOMPARE(again->objects.size(), read->objects.size());
        QCOMPARE(PointCells::list(again->objects), written);
        // The numbers by themselves: the two lists could be wrong in the same way.
        const RuntimeDatabase::Object& analog = again->objects[0];
        QCOMPARE(analog.name, text("A, \"B\""));
        QCOMPARE(analog.description, text("two\nlines"));
        QCOMPARE(analog.lowLow, 0.1);
        QCOMPARE(analog.highHigh, 1e22);
        QCOMPARE(analog.staleAfter, std::chrono::milliseconds(250));
        QCOMPARE(analog.alarm.rateLimit, 0.333);
        QCOMPARE(analog.alarm.offDelay, std::chrono::milliseconds(2500));
        QVERIFY(analog.alarm.isLatching);
        QCOMPARE(analog.alarm.severity(ScadaAlarm::Cause::Communication), 8);
        QVERIFY(qIsNaN(again->objects[1].high));
        QCOMPARE(again->objects[1].states, QStringList({text("Closed"), text("Open"), text("Moving")}));
    }

    void commandsAreWritten()
    {
        RuntimeDatabase::Object object{Korvane::ScadaObjectType::AnalogPoint, 200001, text("P")};
        for (const QString& column : PointCells::columns().mid(3))
            QVERIFY2(PointCells::text(object, column).isEmpty(), qPrintable(column));
        object.parent = text("RTU");
        object.control = {ControlSetting::Kind::SelectFirst,
                          AccountRole::Supervisor,
                          ControlSetting::Confirmation::Second,
                          true,
                          -1.5,
                          20,
                          0.5,
                          text("F"),
                          0.1,
                          std::chrono::milliseconds(1500),
                          text("A > 1")};
        const QStringList columns = {text("parent"),           text("control"),
                                     text("control_role"),     text("control_confirm"),
                                     text("control_reason"),   text("control_low"),
                                     text("control_high"),     text("control_step"),
                                     text("feedback"),         text("feedback_tolerance"),
                                     text("feedback_timeout"), text("interlock")};
        const QStringList texts = {text("RTU"), text("select"), text("supervisor"), text("second"),
                                   text("1"),   text("-1.5"),   text("20"),         text("0.5"),
                                   text("F"),   text("0.1"),    text("1.5"),        text("A > 1")};
        QCOMPARE(PointCells::columns().mid(33), columns);
        for (int place = 0; place < columns.size(); ++place)
            QCOMPARE(PointCells::text(object, columns.at(place)), texts.at(place));
    }

    void linesAreMergedByIdAndName()
    {
        const TemporaryFiles files;
        const QString list =
            files.write(text("points.csv"), "# list\nname;id;kind;high;mine\nA; 200001 ;analog;1,50;x\n"
                                            "# B next\nB;200002;analog;7;\n1;U;nonsense;;\nU;1;unit;;\n");
        const QString file = files.write(text("more.csv"), "id,name,kind,high,low,area\n200002,B,analog,8.5,,North\n"
                                                           "200001,A,analog,1.5,,\n200003,C,analog,9,2,\n1,U,unit,,,\n"
                                                           "2,A,unit,,,\n");
        const auto merged = PointImport::merge(list, file);
        QVERIFY2(merged, merged ? "" : qPrintable(merged.error()));
        QCOMPARE(merged->added, QStringList({text("C"), text("A")}));
        QCOMPARE(merged->changed, QStringList{text("B: high \"7\" -> \"8.5\", area \"\" -> \"North\"")});
        QCOMPARE(merged->unchanged, 2);
        QCOMPARE(merged->text, QByteArray("# list\nname;id;kind;high;mine;area;low\nA; 200001 ;analog;1,50;x;;\n"
                                          "# B next\nB;200002;analog;8.5;;North;\n1;U;nonsense;;;;\nU;1;unit;;;;\n"
                                          "C;200003;analog;9;;;2\nA;2;unit;;;;\n"));
    }

    void anEmptyFieldTakesTheValueAway()
    {
        const TemporaryFiles files;
        const QString list = files.write(text("points.csv"), "id,name,kind,high,low\n200001,A,analog,5,1");
        const QString file = files.write(text("more.csv"), "id,name,kind,high\n200001,A,analog,\n200002,B,analog,\n");
        const auto merged = PointImport::merge(list, file);
        QVERIFY(merged);
        QCOMPARE(merged->text, QByteArray("id,name,kind,high,low\n200001,A,analog,,1\n200002,B,analog,,\n"));
    }

    void whatNoListMayHaveIsRefused_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* file, const char* reason) {
            QTest::newRow(name) << QByteArray(file) << text(reason);
        };
        row("an id of another object", "id,name,kind\n200001,Z,analog\n", "the id 200001 belongs to \"A\"");
        row("a name of another object", "id,name,kind\n200009,A,analog\n", "it has the id 200001 already");
        row("both of others", "id,name,kind\n200001,B,analog\n", "the id 200001 belongs to \"A\"");
        row("a malformed line", "id,name,kind,high\n200009,Z,analog,much\n", "is no number");
        row("an object twice", "id,name,kind\n200009,Z,analog\n200009,Z,analog\n", "has this id already");
        row("limits that cross with those of the list", "id,name,kind,high\n200001,A,analog,0.5\n", "must be below");
        row("no needed column", "id,name\n200001,A\n", "needed are id, name and kind");
        row("nothing", "", "has no header line");
    }
    void whatNoListMayHaveIsRefused()
    {
        QFETCH(const QByteArray, file);
        QFETCH(const QString, reason);
        const TemporaryFiles files;
        const QString list =
            files.write(text("points.csv"), "id,name,kind,low,high\n200001,A,analog,1,2\n200002,B,analog,,\n");
        const auto merged = PointImport::merge(list, files.write(text("more.csv"), file));
        QVERIFY(!merged);
        QVERIFY2(merged.error().contains(reason), qPrintable(merged.error()));
    }

    void columnsThatMeanNothingAreTold()
    {
        const TemporaryFiles files;
        const QString list = files.write(text("points.csv"), "id,name,kind\n200001,A,analog\n");
        const auto merged =
            PointImport::merge(list, files.write(text("more.csv"), "id,name,kind,hihg\n200001,A,analog,5\n"));
        QVERIFY(merged);
        QCOMPARE(merged->unchanged, 1);
        QCOMPARE(int(merged->notes.size()), 1);
        QVERIFY(merged->notes.constFirst().contains(text("hihg")));
    }
};

QTEST_GUILESS_MAIN(tst_PointImport)
#include "tst_pointimport.moc"
