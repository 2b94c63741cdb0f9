#include "platform/data/scadatagactionstream.h"
#include "scada/binding/scadacondition.h"
#include "tests/support/storedbytes.h"
#include "tests/support/tagtexts.h"

#include <QRandomGenerator>
#include <QtTest>

using Korvane::LogicType;
using Korvane::OpType;

namespace {

/// How a version stores the right value, and whether a left record follows.
enum class Bound { DoubleAlone, Float, Record };

struct Version
{
    quint32 number;
    Bound bound;
};

constexpr Version versions[] = {
    {0, Bound::DoubleAlone},
    {500, Bound::DoubleAlone},
    {607, Bound::DoubleAlone},
    {608, Bound::Float},
    {700, Bound::Float},
    {799, Bound::Float},
    {800, Bound::Float},
    {816, Bound::Float},
    {817, Bound::Record},
    {831, Bound::Record},
    {832, Bound::Record},
    {911, Bound::Record},
    {912, Bound::Record},
    {1000, Bound::Record},
    {0x7FFFFFFF, Bound::Record},
    {0x80000000, Bound::DoubleAlone}, // versions are compared as signed numbers
    {0xFFFFFFFF, Bound::DoubleAlone},
};

ScadaTagActionStream version(quint32 number)
{
    return ScadaTagActionStream(number);
}

ScadaCondition condition(const QString& left, int operation, const QString& right, int logic)
{
    return ConditionData{left, right, OpType(operation), LogicType(logic)};
}

QByteArray written(const ScadaCondition& of)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(12);
    ScadaTagActionStream context;
    of.toStream(stream, context);
    return bytes;
}

/// A left record "L", as every version's own layout has it behind type, id and name.
QByteArray leftRecord(quint32 number)
{
    const bool hasCode = number >= 800 && number <= 911;
    return bytesOf("00000006 00000000 00000002 004C") + (hasCode ? bytesOf("0000") : bytesOf("00000002 004C"));
}

QByteArray rightRecord(quint32 number)
{
    const bool hasCode = number >= 800 && number <= 911;
    return bytesOf("FFFFFFFF 00000000 00000002 0035") + (hasCode ? bytesOf("4E20") : bytesOf("00000002 0035"));
}

QByteArray stored(const Version& of)
{
    const QByteArray head = bytesOf("01 03"); // and, greater
    switch (of.bound) {
    case Bound::DoubleAlone:
        return head + bytesOf("4014000000000000");
    case Bound::Float: // as wide as the stream's default precision: a double
        return head + bytesOf("4014000000000000") + leftRecord(of.number);
    case Bound::Record:
        return head + rightRecord(of.number) + leftRecord(of.number);
    }
    return {};
}

} // namespace

class tst_ScadaConditionStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesLinkOperatorRightLeft()
    {
        QCOMPARE(
            written(condition(QStringLiteral("AB:HighLimit"), 3, QStringLiteral("5"), 2)).toHex(' '),
            bytesOf("02 03 FFFFFFFF 00000000 00000002 0035 4E20 00000006 00000000 00000004 00410042 7532").toHex(' '));
    }

    void operatorAndLinkAreSignedBytes()
    {
        const QByteArray bytes = written(condition(QStringLiteral("L"), -1, QStringLiteral("5"), -128));
        QCOMPARE(bytes.left(2).toHex(), QByteArray("80ff"));
        StoredBytes stream(bytes);
        ScadaCondition read;
        read.fromStream(stream, version(911));
        QCOMPARE(static_cast<int>(read.opType()), -1);
        QCOMPARE(static_cast<int>(read.logicType()), -128);
        QVERIFY(!read.checkCondition());
    }

    void everyVersionReadsItsLayout_data()
    {
        QTest::addColumn<quint32>("number");
        QTest::addColumn<int>("bound");
        for (const Version& row : versions)
            QTest::addRow("version %u", row.number) << row.number << static_cast<int>(row.bound);
    }
    void everyVersionReadsItsLayout()
    {
        QFETCH(quint32, number);
        QFETCH(int, bound);
        StoredBytes stream(stored({number, Bound(bound)}) + bytesOf("C0FFEE00"));
        ScadaCondition read = condition(QStringLiteral("LEFT"), 0, QStringLiteral("RIGHT"), 0);
        read.fromStream(stream, version(number));
        QCOMPARE(stream.status(), QDataStream::Ok);
        quint32 rest = 0;
        stream >> rest;
        QCOMPARE(rest, 0xC0FFEE00U);

        QCOMPARE(read.logicType(), LogicType::And);
        QCOMPARE(read.opType(), OpType::Greater);
        switch (Bound(bound)) {
        case Bound::DoubleAlone:
            QCOMPARE(read.rValue()->value(), QVariant(5.0));
            QCOMPARE(read.rValue()->value().userType(), int(QMetaType::Double));
            QVERIFY(read.rValue()->getTagString().isEmpty());
            QCOMPARE(read.lValue()->getTagString(), QStringLiteral("LEFT")); // no left record is read
            return;
        case Bound::Float:
            QCOMPARE(read.rValue()->value(), QVariant(5.0f));
            QCOMPARE(read.rValue()->value().userType(), int(QMetaType::Float));
            break;
        case Bound::Record: {
            const bool isConstant = number >= 832 && number <= 911;
            QCOMPARE(read.rValue()->value(), isConstant ? QVariant(5.0) : QVariant());
            break;
        }
        }
        QCOMPARE(read.rValue()->getTagString(), QStringLiteral("5"));
        QCOMPARE(read.lValue()->getTagString(), QStringLiteral("L"));
    }

    void aFloatBoundShowsSixDigits_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("3.14159, a float widened") << bytesOf("400921FA00000000") << "3.14159";
        QTest::newRow("0.1") << bytesOf("3FB999999999999A") << "0.1";
        QTest::newRow("a million") << bytesOf("412E848000000000") << "1e+06";
        QTest::newRow("NaN") << bytesOf("7FF8000000000000") << "nan";
    }
    void aFloatBoundShowsSixDigits()
    {
        QFETCH(QByteArray, bytes);
        StoredBytes stream(bytesOf("00 00") + bytes + leftRecord(700));
        ScadaCondition read;
        read.fromStream(stream, version(700));
        QCOMPARE(stream.status(), QDataStream::Ok);
        QTEST(read.rValue()->getTagString(), "text");
        QCOMPARE(read.lValue()->getTagString(), QStringLiteral("L"));
    }

    void aFloatBoundIsAsWideAsTheStreamSays()
    {
        StoredBytes stream(bytesOf("00 00 40490FD0") + leftRecord(700));
        stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
        ScadaCondition read;
        read.fromStream(stream, version(700));
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(read.rValue()->getTagString(), QStringLiteral("3.14159"));
        QCOMPARE(read.lValue()->getTagString(), QStringLiteral("L"));
    }

    void aFloatBoundLeavesTheStoredTagString()
    {
        StoredBytes stream(stored({700, Bound::Float}));
        ScadaCondition read;
        read.fromStream(stream, version(700));
        QVERIFY(!read.rValue()->replacePointName(nullptr, {{QStringLiteral("5"), QStringLiteral("6")}}));
    }

    void whatIsWrittenReadsBack()
    {
        QVERIFY(rc::check("tag strings, operator and link survive", [] {
            const QString left =
                *rc::gen::element(QStringLiteral("PUMP:HighLimit"), QStringLiteral("@R::RTU1:CommState"),
                                  QStringLiteral("@::theme"), QStringLiteral("#200001"), QString());
            const QString right = *rc::gen::element(QStringLiteral("12.5"), QStringLiteral("-1e300"),
                                                    QStringLiteral("nan"), QStringLiteral("VALVE"), QString());
            const ScadaCondition made =
                condition(left, *rc::gen::inRange(-128, 128), right, *rc::gen::inRange(-128, 128));
            StoredBytes stream(written(made));
            ScadaCondition read;
            read.fromStream(stream, version(*rc::gen::inRange(832U, 912U)));
            RC_ASSERT(stream.status() == QDataStream::Ok);
            RC_ASSERT(stream.atEnd());
            RC_ASSERT(read.isEqual(made));
        }));
    }

    void aReadConstantIsReadyToCompare()
    {
        StoredBytes stream(written(condition(QStringLiteral("PUMP"), 3, QStringLiteral("5"), 0)));
        ScadaCondition read;
        read.fromStream(stream, version(911));
        read.lValue()->setValue(6);
        QVERIFY(read.checkCondition());
        read.lValue()->setValue(5);
        QVERIFY(!read.checkCondition());
    }

    void cutOffAtEveryByte_data() { everyVersionReadsItsLayout_data(); }
    void cutOffAtEveryByte()
    {
        QFETCH(quint32, number);
        QFETCH(int, bound);
        const QByteArray whole = stored({number, Bound(bound)});
        // Where the bound, and where the left value's name, have come in whole.
        const int boundEnd = 2 + (Bound(bound) == Bound::Record ? rightRecord(number).size() : 8);
        const bool isTextLayout = number < 800 || number > 911;
        const int leftTagEnd = Bound(bound) == Bound::DoubleAlone ? whole.size()
                               : isTextLayout                     ? boundEnd + leftRecord(number).size()
                                                                  : boundEnd + 14;
        for (int length = 0; length < whole.size(); ++length) {
            StoredBytes stream(whole.left(length));
            ScadaCondition read;
            read.fromStream(stream, version(number));
            QVERIFY(stream.status() != QDataStream::Ok);
            QCOMPARE(static_cast<int>(read.logicType()), length < 1 ? 0 : 1);
            QCOMPARE(static_cast<int>(read.opType()), length < 2 ? 0 : 3);
            if (length >= boundEnd) {
                QCOMPARE(read.rValue()->getTagString(),
                         Bound(bound) == Bound::DoubleAlone ? QString() : QStringLiteral("5"));
            } else if (Bound(bound) != Bound::Record) {
                QCOMPARE(read.rValue()->value().toDouble(), 0.0);
            }
            QCOMPARE(read.lValue()->getTagString(), length >= leftTagEnd ? QStringLiteral("L") : QString());
            QVERIFY(!read.lValue()->value().isValid());
        }
    }

    void randomBytesUnderEveryVersion()
    {
        QRandomGenerator random(20261120);
        for (quint32 number = 0; number <= 1000; ++number) {
            QByteArray bytes(int(random.bounded(96)), Qt::Uninitialized);
            for (char& byte : bytes)
                byte = static_cast<char>(random.bounded(4) == 0 ? random.bounded(256) : 0);
            StoredBytes stream(bytes);
            ScadaCondition read;
            read.fromStream(stream, version(number));
            // Read again, the same bytes give the same.
            StoredBytes secondStream(bytes);
            ScadaCondition again;
            again.fromStream(secondStream, version(number));
            QVERIFY(again.isEqual(read));
            QCOMPARE(secondStream.status(), stream.status());
        }
    }
};

QTEST_GUILESS_MAIN(tst_ScadaConditionStream)
#include "tst_scadaconditionstream.moc"
