#include "host/alarmview/alarmareas.h"

#include <QtTest>

class tst_AlarmAreas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statedNamesAreNumberedFromOne()
    {
        const AlarmAreas areas({QStringLiteral("South"), QStringLiteral("North")});
        QCOMPARE(areas.number(QStringLiteral("South")), 1);
        QCOMPARE(areas.number(QStringLiteral("North")), 2);
        QCOMPARE(areas.name(2), QStringLiteral("North"));
    }

    void othersFollowInOrderOfAppearance()
    {
        AlarmAreas areas({QStringLiteral("South")});
        QCOMPARE(areas.take(QStringLiteral("West")), 2);
        QCOMPARE(areas.take(QStringLiteral("East")), 3);
        QCOMPARE(areas.take(QStringLiteral("West")), 2);
        QCOMPARE(areas.take(QStringLiteral("South")), 1);
        QCOMPARE(areas.names(), QStringList({QStringLiteral("South"), QStringLiteral("West"), QStringLiteral("East")}));
    }

    void noNameIsNoArea()
    {
        AlarmAreas areas({QString(), QStringLiteral("South"), QStringLiteral("South"), QStringLiteral("North")});
        QCOMPARE(areas.take({}), 0);
        QCOMPARE(areas.number(QStringLiteral("South")), 1);
        QCOMPARE(areas.number(QStringLiteral("North")), 2);
    }

    void askingGivesNoNumber()
    {
        AlarmAreas areas;
        QCOMPARE(areas.number(QStringLiteral("South")), 0);
        QCOMPARE(areas.take(QStringLiteral("North")), 1);
        for (const int number : {-1, 0, 2})
            QCOMPARE(areas.name(number), QString());
    }
};

QTEST_APPLESS_MAIN(tst_AlarmAreas)
#include "tst_alarmareas.moc"
