#include "host/core/propertymanager.h"

#include <QSignalSpy>
#include <QtTest>

class tst_PropertyManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPropertyThatIsNotThereHasNoValue()
    {
        PropertyManager properties;
        QVERIFY(!properties.getProperty(QStringLiteral("speed")).isValid());
        QCOMPARE(properties.names(), QStringList());
    }

    void whatIsSetIsThere_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a number") << QVariant(2.5);
        QTest::newRow("a text") << QVariant(QStringLiteral("early"));
        QTest::newRow("an empty text") << QVariant(QString());
        QTest::newRow("nought") << QVariant(0);
        QTest::newRow("off") << QVariant(false);
        QTest::newRow("a list") << QVariant(QStringList{QStringLiteral("a")});
    }
    void whatIsSetIsThere()
    {
        QFETCH(QVariant, value);
        PropertyManager properties;
        QSignalSpy changed(&properties, &PropertyManager::valueChanged);
        const QString name = QStringLiteral("shift");
        properties.setValue(name, value);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toString(), name);
        QCOMPARE(changed[0][1].value<QVariant>(), value);
        QVERIFY(properties.getProperty(name).isValid());
        QCOMPARE(properties.getProperty(name), value);
        QCOMPARE(properties.names(), QStringList(name));
        QVERIFY(!properties.getProperty(QStringLiteral("Shift")).isValid()); // the case counts
        properties.setValue(name, value);
        QCOMPARE(changed.count(), 1);
    }

    void anotherValueIsTold()
    {
        PropertyManager properties;
        QSignalSpy changed(&properties, &PropertyManager::valueChanged);
        const QString name = QStringLiteral("speed");
        properties.setValue(name, 1);
        properties.setValue(QStringLiteral("other"), 1);
        properties.setValue(name, 2);
        QCOMPARE(changed.count(), 3);
        QCOMPARE(properties.getProperty(name), QVariant(2));
        QCOMPARE(properties.getProperty(QStringLiteral("other")), QVariant(1));
    }

    void anInvalidValueTakesAPropertyAway()
    {
        PropertyManager properties;
        const QString name = QStringLiteral("speed");
        properties.setValue(name, 1);
        QSignalSpy changed(&properties, &PropertyManager::valueChanged);
        properties.setValue(name, {});
        QCOMPARE(changed.count(), 1);
        QVERIFY(!changed[0][1].value<QVariant>().isValid());
        QVERIFY(!properties.getProperty(name).isValid());
        QCOMPARE(properties.names(), QStringList());
        properties.setValue(name, {});
        QCOMPARE(changed.count(), 1);
    }

    void theNewValueIsThereWhenItIsTold()
    {
        PropertyManager properties;
        QVariant seen;
        connect(&properties, &PropertyManager::valueChanged, this,
                [&](const QString& name) { seen = properties.getProperty(name); });
        properties.setValue(QStringLiteral("speed"), 3);
        QCOMPARE(seen, QVariant(3));
    }
};

QTEST_GUILESS_MAIN(tst_PropertyManager)
#include "tst_propertymanager.moc"
