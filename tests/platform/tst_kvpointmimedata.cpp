#include "platform/ui/kvpointmimedata.h"

#include <QtTest>

using Korvane::BrowerItemInfo;
using Korvane::ScadaObjectType;

class tst_KVPointMimeData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFormatIsFixed() { QCOMPARE(KVPointMimeData::format(), QStringLiteral("application/KVPoint_MimeData")); }

    void itCarriesTheWholeItem()
    {
        const BrowerItemInfo item{ScadaObjectType::AnalogPoint,
                                  200001,
                                  QStringLiteral("P1.FLOW"),
                                  QStringLiteral("FLOW"),
                                  QStringLiteral("Flow behind pump 1"),
                                  QStringLiteral("HighLimit")};
        const KVPointMimeData data(item);
        QCOMPARE(data.getData(), item);
        for (const auto change :
             {+[](BrowerItemInfo& other) { other.type = ScadaObjectType::DigitalPoint; },
              +[](BrowerItemInfo& other) { other.number = 200002; }, +[](BrowerItemInfo& other) { other.tag.clear(); },
              +[](BrowerItemInfo& other) { other.name.clear(); },
              +[](BrowerItemInfo& other) { other.description.clear(); },
              +[](BrowerItemInfo& other) { other.property.clear(); }}) {
            BrowerItemInfo other = item;
            change(other);
            QVERIFY(data.getData() != other);
        }
    }

    void itIsFoundByItsClassBehindMimeData()
    {
        const KVPointMimeData point({});
        const QMimeData plain;
        QVERIFY(qobject_cast<const KVPointMimeData*>(static_cast<const QMimeData*>(&point)));
        QVERIFY(!qobject_cast<const KVPointMimeData*>(&plain));
        QCOMPARE(KVPointMimeData::staticMetaObject.className(), "KVPointMimeData");
    }

    void theTagStandsInItsFormatAndAsText_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::newRow("a point") << QStringLiteral("P1.FLOW") << QString() << QStringLiteral("P1.FLOW");
        QTest::newRow("a point with a field")
            << QStringLiteral("P1.FLOW") << QStringLiteral("HighLimit") << QStringLiteral("P1.FLOW:HighLimit");
        QTest::newRow("a unit") << QStringLiteral("@R::RTU1") << QString() << QStringLiteral("@R::RTU1");
        QTest::newRow("a Korean name") << QStringLiteral("\uc720\ub7c9") << QStringLiteral("Value")
                                       << QStringLiteral("\uc720\ub7c9:Value");
        QTest::newRow("places of a template")
            << QStringLiteral("%2 %1") << QStringLiteral("Value") << QStringLiteral("%2 %1:Value");
        QTest::newRow("nothing") << QString() << QString() << QString();
    }
    void theTagStandsInItsFormatAndAsText()
    {
        QFETCH(QString, tag);
        QFETCH(QString, field);
        QFETCH(QString, text);
        const KVPointMimeData data({ScadaObjectType::Point, 0, tag, QString(), QString(), field});
        QVERIFY(data.hasFormat(QStringLiteral("application/KVPoint_MimeData")));
        QVERIFY(data.hasText());
        QCOMPARE(data.formats().size(), 2);
        QCOMPARE(data.data(KVPointMimeData::format()), text.toUtf8());
        QCOMPARE(data.text(), text);
    }
};

QTEST_GUILESS_MAIN(tst_KVPointMimeData)
#include "tst_kvpointmimedata.moc"
