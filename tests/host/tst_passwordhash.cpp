#include "host/accounts/passwordhash_p.h"

#include <QRegularExpression>
#include <QtTest>

#include <cerrno>

using PasswordHash::Length;

class tst_PasswordHash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aHashIsArgon2idWithTheStatedLimits()
    {
        const auto hash = PasswordHash::make(QStringLiteral("open sesame"));
        QVERIFY(hash);
        QVERIFY2(hash->startsWith("$argon2id$v=19$m=65536,t=2,p=1$"), hash->constData());
        QVERIFY(!hash->contains("sesame"));
    }

    void onlyThePasswordIsRight_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("other");
        QTest::newRow("another letter") << QStringLiteral("open sesame") << QStringLiteral("open sesamf");
        QTest::newRow("upper case") << QStringLiteral("open sesame") << QStringLiteral("Open sesame");
        QTest::newRow("one more") << QStringLiteral("open sesame") << QStringLiteral("open sesame ");
        QTest::newRow("one less") << QStringLiteral("open sesame") << QStringLiteral("open sesam");
        QTest::newRow("nothing") << QStringLiteral("open sesame") << QString();
        QTest::newRow("behind a NUL") << QStringLiteral("open sesame") + QChar(0) + QLatin1Char('a')
                                      << QStringLiteral("open sesame") + QChar(0) + QLatin1Char('b');
        QTest::newRow("the end of the longest")
            << QString(1023, QLatin1Char('x')) + QLatin1Char('a') << QString(1023, QLatin1Char('x')) + QLatin1Char('b');
        QTest::newRow("beyond the longest") << QString(1024, QLatin1Char('x')) << QString(1025, QLatin1Char('x'));
        QTest::newRow("10 MB") << QString(1024, QLatin1Char('x')) << QString(10000000, QLatin1Char('x'));
        QTest::newRow("letters that only look alike")
            << QStringLiteral("\uac00\uac01\uac02 \u0430bcde") << QStringLiteral("\uac00\uac01\uac02 abcde");
    }
    void onlyThePasswordIsRight()
    {
        QFETCH(QString, password);
        QFETCH(QString, other);
        const auto hash = PasswordHash::make(password);
        QVERIFY(hash);
        QCOMPARE(PasswordHash::verify(*hash, password).value(), true);
        QCOMPARE(PasswordHash::verify(*hash, other).value(), false);
    }

    void keyboardsComposeDifferently_data()
    {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::newRow("a letter with its mark") << QStringLiteral("K\u00e4sebrot") << QStringLiteral("Ka\u0308sebrot");
        QTest::newRow("a Korean syllable")
            << QStringLiteral("\ud55c\uae00 1234") << QStringLiteral("\u1112\u1161\u11ab\u1100\u1173\u11af 1234");
    }
    void keyboardsComposeDifferently()
    {
        QFETCH(QString, one);
        QFETCH(QString, other);
        QCOMPARE(PasswordHash::verify(PasswordHash::make(one).value(), other).value(), true);
        QCOMPARE(PasswordHash::verify(PasswordHash::make(other).value(), one).value(), true);
    }

    void saltsDiffer()
    {
        const QString password = QStringLiteral("open sesame");
        QVERIFY(PasswordHash::make(password).value() != PasswordHash::make(password).value());
    }

    void thePasswordOfTheCallerStays()
    {
        for (const QString& password : {QStringLiteral("open sesame"), QStringLiteral("Ka\u0308sebrot")}) {
            const QString before(password.constData(), password.size()); // shares nothing
            const auto hash = PasswordHash::make(password);
            QVERIFY(PasswordHash::verify(hash.value(), password).value());
            QCOMPARE(password, before);
        }
    }

    void lengthsCountInBytes_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<int>("length");
        QTest::newRow("nothing") << QString() << int(Length::TooShort);
        QTest::newRow("7 letters") << QStringLiteral("1234567") << int(Length::TooShort);
        QTest::newRow("8 letters") << QStringLiteral("12345678") << int(Length::Good);
        QTest::newRow("2 Korean syllables") << QStringLiteral("\ud55c\uae00") << int(Length::TooShort);
        QTest::newRow("3 Korean syllables") << QStringLiteral("\ud55c\uae00\ud55c") << int(Length::Good);
        QTest::newRow("7 bytes when composed") << QStringLiteral("12345e\u0301") << int(Length::TooShort);
        QTest::newRow("1024 letters") << QString(1024, QLatin1Char('x')) << int(Length::Good);
        QTest::newRow("1025 letters") << QString(1025, QLatin1Char('x')) << int(Length::TooLong);
        QTest::newRow("342 Korean syllables") << QString(342, QChar(0xd55c)) << int(Length::TooLong);
        QTest::newRow("341 Korean syllables in pieces")
            << QStringLiteral("\u1112\u1161\u11ab").repeated(341) << int(Length::Good);
        QTest::newRow("10 MB") << QString(10000000, QLatin1Char('x')) << int(Length::TooLong);
    }
    void lengthsCountInBytes()
    {
        QFETCH(QString, password);
        QFETCH(int, length);
        QCOMPARE(int(PasswordHash::lengthOf(password)), length);
    }

    void whatIsNoHashIsNobodys()
    {
        for (const QByteArray& hash : {QByteArray(), QByteArray("open sesame"),
                                       QByteArray("$argon2id$v=19$m=65536,t=2,p=1$"), QByteArray(100000, '$')})
            QCOMPARE(PasswordHash::verify(hash, QStringLiteral("open sesame")).value(), false);
    }

    void theHashOfNobodyCostsWhatOthersDo()
    {
        const QByteArray made = PasswordHash::make(QStringLiteral("open sesame")).value();
        const QByteArray nobody = PasswordHash::ofNobody();
        // Same parameters and same lengths of salt and hash: the same work.
        const QRegularExpression form(QStringLiteral("^(\\$argon2id\\$v=19\\$m=65536,t=2,p=1)\\$[A-Za-z0-9+/]{22}\\$"
                                                     "[A-Za-z0-9+/]{43}$"));
        QVERIFY2(form.match(QString::fromLatin1(made)).hasMatch(), made.constData());
        QVERIFY2(form.match(QString::fromLatin1(nobody)).hasMatch(), nobody.constData());
        // libsodium takes it for a hash, and computes one to compare with: it tells a mismatch from a text that is none.
        errno = 0;
        QCOMPARE(PasswordHash::verify(nobody, QStringLiteral("open sesame")).value(), false);
        QCOMPARE(errno, EINVAL);
        errno = 0;
        QCOMPARE(PasswordHash::verify("$argon2id$v=19$m=65536,t=2,p=1$", QString()).value(), false);
        QVERIFY(errno != EINVAL);
        QVERIFY(PasswordHash::ofNobody() != nobody);
    }
};

QTEST_GUILESS_MAIN(tst_PasswordHash)
#include "tst_passwordhash.moc"
