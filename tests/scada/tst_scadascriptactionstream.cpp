// The stored form of event actions: what is written, and what is read from whole and damaged records.

#include "platform/data/scadaeventactionstream.h"
#include "platform/utility/pythonstringconverter.h"
#include "tests/scada/scriptactions.h"
#include "tests/support/storedbytes.h"

#include <QtTest>

using Korvane::TriggerType;
using Values = QMap<QString, QVariant>;

namespace {

ScadaEventActionStream stored(int trigger, const QByteArray& data)
{
    ScadaEventActionStream stream;
    stream.setTrigger(TriggerType(trigger));
    stream.setType(1001);
    stream.setData(data);
    return stream;
}

/// "a = 1" as a QString of QDataStream: 10 bytes of big-endian UTF-16 behind their number.
QByteArray storedScript()
{
    return bytesOf("0000000a 0061 0020 003d 0020 0031");
}

} // namespace

class tst_ScadaScriptActionStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBaseWritesAndReadsTheTriggerAlone()
    {
        PlainAction plain;
        plain.setTriggerType(TriggerType(13));
        ScadaEventActionStream stream = stored(1, "abc");
        plain.toStream(stream);
        QCOMPARE(stream.trigger(), TriggerType(13));
        QCOMPARE(stream.type(), 1001);
        QCOMPARE(stream.data(), QByteArray("abc"));

        PlainAction read;
        read.fromStream(stream);
        QCOMPARE(read.triggetType(), TriggerType(13));
        PlainAction readWithValues;
        Values values{{QStringLiteral("other"), 1}, {QStringLiteral("triggerType"), QStringLiteral("old")}};
        readWithValues.fromStream(stream, values);
        QCOMPARE(readWithValues.triggetType(), TriggerType(13));
        QCOMPARE(values, (Values{{QStringLiteral("other"), 1}, {QStringLiteral("triggerType"), 13}}));
    }

    void theStoredFormIsTriggerTypeAndOneString()
    {
        const ScadaScriptAction script = action(QStringLiteral("a = 1"), 10);
        ScadaEventActionStream stream;
        script.toStream(stream);
        QCOMPARE(stream.trigger(), TriggerType(10));
        QCOMPARE(stream.type(), 1001);
        QCOMPARE(stream.data().toHex(), storedScript().toHex());
    }

    void whatIsStoredIsTheScriptInForce()
    {
        ScadaScriptAction script = action(QStringLiteral("a = 2"));
        QVERIFY(script.replaceText(QStringLiteral("2"), QStringLiteral("1")));
        ScadaEventActionStream stream = stored(0, QByteArray(100, 'x')); // replaced, not written over
        script.toStream(stream);
        QCOMPARE(stream.data().toHex(), storedScript().toHex());
    }

    void theTypeStoredIsThatOfTheSubclass()
    {
        struct Special : ScadaScriptAction
        {
            int type() const override { return 2002; }
        };
        ScadaEventActionStream stream;
        Special().toStream(stream);
        QCOMPARE(stream.type(), 2002);
    }

    void aStoredScriptIsLoaded()
    {
        ScadaScriptAction script = action(QStringLiteral("old"), 1);
        script.fromStream(stored(6, storedScript()));
        QCOMPARE(script.triggetType(), TriggerType(6));
        QCOMPARE(script.script(), QStringLiteral("a = 1"));
        QCOMPARE(loadedScript(script), QStringLiteral("a = 1"));
    }

    void readingReportsNamedValues()
    {
        const QString text = QStringLiteral("print('a')\nprint(\"b\")\n");
        ScadaEventActionStream stream;
        action(text, 8).toStream(stream);
        Values values{{QStringLiteral("other"), 3.5},
                      {QStringLiteral("script"), 1},
                      {QStringLiteral("triggerType"), QStringLiteral("x")}};
        ScadaScriptAction script = action(QStringLiteral("old"), 1);
        script.fromStream(stream, values);
        QCOMPARE(script.triggetType(), TriggerType(8));
        QCOMPARE(script.script(), text);
        QCOMPARE(loadedScript(script), text);
        QVERIFY(PythonStringConverter::convert(text) != text);
        QCOMPARE(values, (Values{{QStringLiteral("other"), 3.5},
                                 {QStringLiteral("script"), PythonStringConverter::convert(text)},
                                 {QStringLiteral("triggerType"), 8}}));
        QCOMPARE(values.value(QStringLiteral("triggerType")).userType(), int(QMetaType::Int));
        QCOMPARE(values.value(QStringLiteral("script")).userType(), int(QMetaType::QString));
    }

    void aRecordOfAnotherTypeIsReadAllTheSame()
    {
        ScadaEventActionStream stream = stored(2, storedScript());
        stream.setType(5);
        ScadaScriptAction script;
        script.fromStream(stream);
        QCOMPARE(script.script(), QStringLiteral("a = 1"));
    }

    void dataCutAnywhereLeaveTheScript()
    {
        const QByteArray whole = storedScript();
        for (int size = 0; size < whole.size(); ++size) {
            ScadaScriptAction script = action(QStringLiteral("old"), 1);
            QVERIFY(script.replaceText(QStringLiteral("old"), QStringLiteral("new")));
            ScadaScriptAction other(script);
            script.fromStream(stored(6, whole.left(size)));
            QCOMPARE(script.triggetType(), TriggerType(6));
            QCOMPARE(script.script(), QStringLiteral("new"));
            QCOMPARE(loadedScript(script), QStringLiteral("old"));

            Values values;
            other.fromStream(stored(6, whole.left(size)), values);
            QCOMPARE(other.script(), QStringLiteral("new"));
            QCOMPARE(values,
                     (Values{{QStringLiteral("triggerType"), 6}, {QStringLiteral("script"), QStringLiteral("new")}}));
        }
    }

    void damagedData_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("script");
        QTest::newRow("a null string is an empty script") << bytesOf("ffffffff") << "";
        QTest::newRow("an empty string is an empty script") << bytesOf("00000000") << "";
        QTest::newRow("what follows the string is not read") << storedScript() + bytesOf("c0ffee") << "a = 1";
        QTest::newRow("half a character leaves the script") << bytesOf("00000003 0061 00") << "old";
        QTest::newRow("an absurd length leaves the script") << bytesOf("fffffffe 0061") << "old";
        QTest::newRow("a length above two gigabytes leaves the script") << bytesOf("80000000 0061") << "old";
    }
    void damagedData()
    {
        QFETCH(QByteArray, data);
        ScadaScriptAction script = action(QStringLiteral("old"));
        script.fromStream(stored(1, data));
        QTEST(script.script(), "script");
        QTEST(loadedScript(script), "script");
    }

    void scriptsReadBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("Korean") << QStringLiteral("print('펌프 1')\n");
        QTest::newRow("outside the basic plane") << QString::fromUtf8("\xF0\x9F\x94\xA5");
        QTest::newRow("half of a surrogate pair") << QString(QChar(0xD83D));
        QTest::newRow("with a zero") << QString(QChar(0)) + QLatin1Char('x');
        QTest::newRow("a million letters") << QString(1000000, QLatin1Char('x'));
    }
    void scriptsReadBack()
    {
        QFETCH(QString, text);
        ScadaEventActionStream stream;
        action(text, 7).toStream(stream);
        ScadaScriptAction script = action(QStringLiteral("old"));
        script.fromStream(stream);
        QCOMPARE(script.script(), text);
        QCOMPARE(script.triggetType(), TriggerType(7));
    }
};

QTEST_MAIN(tst_ScadaScriptActionStream)
#include "tst_scadascriptactionstream.moc"
