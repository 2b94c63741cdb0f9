#include "host/projectfiles/objectrename.h"
#include "platform/data/scadatagactionstream.h"
#include "scada/binding/scadacondition.h"

#include <QDataStream>
#include <QtTest>

using Korvane::ScadaObjectType;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A tag record as a version lays it out behind the name.
template <typename Tail>
QByteArray record(qint32 kind, qint32 id, const char* name, const Tail& tail)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_4_6);
    out << kind << id << text(name) << tail;
    return bytes;
}

} // namespace

class tst_ObjectRename : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tagsAreRenamedByWholeNames_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("renamed");
        const int point = int(ScadaObjectType::AnalogPoint);
        const int unit = int(ScadaObjectType::RtuObject);
        QTest::newRow("a point") << point << text("P1") << text("Q");
        QTest::newRow("a point's field") << point << text("P1:HighLimit") << text("Q:HighLimit");
        QTest::newRow("a longer name is another point") << point << text("P10") << QString();
        QTest::newRow("a name that ends alike is another point") << point << text("XP1") << QString();
        QTest::newRow("what is no field belongs to the name") << point << text("P1:Nothing") << QString();
        QTest::newRow("a unit of the same name is another object") << point << text("@R::P1") << QString();
        QTest::newRow("a unit with its prefix") << unit << text("@R::P1:ScanState") << text("@R::Q:ScanState");
        QTest::newRow("a line is no unit") << unit << text("@C::P1") << QString();
        QTest::newRow("an id stays") << point << text("#200001") << QString();
        QTest::newRow("a constant") << point << text("1") << QString();
        QTest::newRow("no tag") << point << QString() << QString();
    }
    void tagsAreRenamedByWholeNames()
    {
        QFETCH(const int, type);
        QFETCH(const QString, tag);
        QFETCH(const QString, renamed);
        const ObjectRename rename{static_cast<ScadaObjectType>(type), text("P1"), text("Q")};
        QCOMPARE(rename.tag(tag).value_or(QString()), renamed);
    }

    void recordsKeepAllButTheName_data()
    {
        QTest::addColumn<uint>("version");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char* name, uint version, const QByteArray& before, const QByteArray& after) {
            QTest::newRow(name) << version << before << after;
        };
        row("with a field code", 911, record(1, 200001, "P1", quint16(0x1234)),
            record(1, 200001, "Q", quint16(0x1234)));
        row("with an unused code", 800, record(1, 0, "P1", quint16(7)), record(1, 0, "Q", quint16(7)));
        row("with a second text", 912, record(6, 5, "P1", text("P1:HighLimit")),
            record(6, 5, "Q", text("Q:HighLimit")));
        row("of an old version", 700, record(0, 5, "P1", text("P10")), record(0, 5, "Q", text("P10")));
        row("with bytes behind it", 911, record(1, 1, "P1", quint16(0)) + "more",
            record(1, 1, "Q", quint16(0)) + "more");
        row("of another point", 911, record(1, 1, "P10", quint16(0)), {});
        row("of a unit", 911, record(2, 1, "P1", quint16(0)), {});
        row("of a constant", 911, record(-1, 0, "P1", quint16(20000)), {});
        row("that is cut off", 911, record(1, 1, "P1", quint16(0)).left(14), {});
    }
    void recordsKeepAllButTheName()
    {
        QFETCH(const uint, version);
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, after);
        const ObjectRename rename{ScadaObjectType::Point, text("P1"), text("Q")};
        QCOMPARE(rename.targetRecord(before, version).value_or(QByteArray()).toHex(), after.toHex());
    }

    void bothSidesOfConditionsAreRenamed()
    {
        const ObjectRename rename{ScadaObjectType::Point, text("P1"), text("Q")};
        const auto condition = [](const char* left, const char* right) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(QDataStream::Qt_4_6);
            ScadaTagActionStream stream;
            ScadaCondition({text(left), text(right), Korvane::OpType::Less, Korvane::LogicType::And})
                .toStream(out, stream);
            return bytes;
        };
        QCOMPARE(rename.conditionRecord(condition("P1:HighLimit", "P1"), 911).value().toHex(),
                 condition("Q:HighLimit", "Q").toHex());
        QCOMPARE(rename.conditionRecord(condition("X", "P1"), 911).value().toHex(), condition("X", "Q").toHex());
        QVERIFY(!rename.conditionRecord(condition("P10", "5"), 911));
    }

    void conditionsOfOldVersionsHaveABoundOfAnotherForm()
    {
        const ObjectRename rename{ScadaObjectType::Point, text("P1"), text("Q")};
        const auto condition = [](const char* name) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(QDataStream::Qt_4_6);
            out << qint8(1) << qint8(2) << 1.5F;
            return bytes + record(1, 1, name, quint16(0));
        };
        QCOMPARE(rename.conditionRecord(condition("P1"), 816).value().toHex(), condition("Q").toHex());
        QVERIFY(!rename.conditionRecord(condition("P1"), 607));
    }
};

QTEST_GUILESS_MAIN(tst_ObjectRename)
#include "tst_objectrename.moc"
