#include "host/projectfiles/interlocktags.h"

#include <QStringList>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class tst_InterlockTags : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tagsAreTold_data()
    {
        QTest::addColumn<QString>("interlock");
        QTest::addColumn<QStringList>("tags");
        QTest::newRow("nothing") << QString() << QStringList();
        QTest::newRow("a tag and a number") << text("P1 > 5") << QStringList{text("P1")};
        QTest::newRow("without blanks") << text("P1>=-5.5") << QStringList{text("P1")};
        QTest::newRow("two tags") << text("P1:HighLimit != @R::U") << QStringList{text("P1:HighLimit"), text("@R::U")};
        QTest::newRow("several") << text("A == 1 and B < C or D > 1e3")
                                 << QStringList{text("A"), text("B"), text("C"), text("D")};
        QTest::newRow("in quotes") << text("\"A and B\" > \"C<D\"") << QStringList{text("A and B"), text("C<D")};
        QTest::newRow("a number in quotes is a name") << text("\"12\" > 1") << QStringList{text("12")};
        QTest::newRow("an open quote") << text("A > \"B") << QStringList{text("A")};
    }
    void tagsAreTold()
    {
        QFETCH(const QString, interlock);
        QFETCH(const QStringList, tags);
        QStringList found;
        for (const InterlockTag& tag : InterlockTag::of(interlock)) {
            found.append(tag.tag);
            QVERIFY(interlock.mid(tag.begin, tag.end - tag.begin).contains(tag.tag));
        }
        QCOMPARE(found, tags);
    }

    void tagsAreQuotedWhereTheyNeedIt()
    {
        QCOMPARE(InterlockTag::written(text("P1:HighLimit")).value(), text("P1:HighLimit"));
        QCOMPARE(InterlockTag::written(text("P 1")).value(), text("\"P 1\""));
        QCOMPARE(InterlockTag::written(text("a<b")).value(), text("\"a<b\""));
        QCOMPARE(InterlockTag::written(text("and")).value(), text("\"and\""));
        QVERIFY(!InterlockTag::written(text("a\"b")));
    }
};

QTEST_GUILESS_MAIN(tst_InterlockTags)
#include "tst_interlocktags.moc"
