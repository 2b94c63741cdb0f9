#include "scada/records/inputinfoparam.h"
#include "tests/support/storedjson.h"

#include <QtTest>

#include <cstddef>
#include <type_traits>

static_assert(!std::is_polymorphic_v<InputInfoParam>);
static_assert(std::is_same_v<decltype(InputInfoParam::numberInputParam), std::shared_ptr<NumberInputParam>>);
static_assert(std::is_same_v<decltype(InputInfoParam::enumInputParam), std::shared_ptr<EnumInputParam>>);
static_assert(offsetof(InputInfoParam, numberInputParam) < offsetof(InputInfoParam, enumInputParam));

Q_DECLARE_METATYPE(InputInfoParam)

namespace {

NumberInputParam percent()
{
    NumberInputParam param;
    param.maxValue = 100;
    param.scale = 1;
    param.singleStep = 0.5;
    param.decimals = 2;
    param.useScale = true;
    return param;
}

NumberInputParam upTo(double maximum)
{
    NumberInputParam param;
    param.maxValue = maximum;
    return param;
}

EnumInputParam positions()
{
    EnumInputParam param;
    param.enumValues = {{QStringLiteral("Open"), 1}, {QStringLiteral("Close"), 0}};
    return param;
}

InputInfoParam with(const NumberInputParam& number)
{
    InputInfoParam info;
    info.setNumberInputParam(number);
    return info;
}

InputInfoParam with(const EnumInputParam& choice)
{
    InputInfoParam info;
    info.setEnumInputParam(choice);
    return info;
}

InputInfoParam with(const NumberInputParam& number, const EnumInputParam& choice)
{
    InputInfoParam info = with(number);
    info.setEnumInputParam(choice);
    return info;
}

InputInfoParam readBy(InputInfoParam info, const QString& text)
{
    info.fromStream(text);
    return info;
}

/// Whether the records are null alike and hold the same, number records included.
bool holdTheSame(const InputInfoParam& a, const InputInfoParam& b)
{
    const auto areAlike = [](const auto& x, const auto& y) { return x && y ? x->isEqual(*y) : !x && !y; };
    return areAlike(a.numberInputParam, b.numberInputParam) && areAlike(a.enumInputParam, b.enumInputParam);
}

} // namespace

class tst_InputInfoParam : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefaultRecord()
    {
        const InputInfoParam info;
        QVERIFY(!info.numberInputParam && !info.enumInputParam);
        QVERIFY(info.isEmpty());
        QCOMPARE(info.toStream(), QStringLiteral("{}"));
    }

    void aNumberRecordAsWritten()
    {
        QCOMPARE(with(percent()).toStream(), json("{'NumberInputParam':{'MinValue':0,'MaxValue':100,'Decimals':2,"
                                                  "'Scale':1,'SingleStep':0.5,'UseScale':1}}"));
    }

    void anEnumRecordAsWritten()
    {
        QCOMPARE(with(positions()).toStream(), json("{'EnumInputParam':{'EnumValues':{'Open':1,'Close':0}}}"));
        QCOMPARE(with(EnumInputParam()).toStream(), json("{'EnumInputParam':{'EnumValues':{}}}"));
    }

    void anEnumRecordIsWrittenInPlaceOfANumberRecord() // kept
    {
        QCOMPARE(with(percent(), positions()).toStream(), with(positions()).toStream());
    }

    void namesThatLookLikePlacesOfATemplateStay()
    {
        EnumInputParam choice;
        choice.enumValues = {{QStringLiteral("%1"), 1}, {QStringLiteral("\"%2\""), 2}};
        QCOMPARE(with(choice).toStream(), json("{'EnumInputParam':{'EnumValues':{'%1':1,'\\'%2\\'':2}}}"));
        QVERIFY(holdTheSame(readBy(InputInfoParam(), with(choice).toStream()), with(choice)));
    }

    void settingPutsAFreshCopyInPlace()
    {
        NumberInputParam number = upTo(1);
        EnumInputParam choice = positions();
        InputInfoParam info = with(number, choice);
        number.maxValue = 2;
        choice.enumValues.clear();
        QVERIFY(holdTheSame(info, with(upTo(1), positions())));

        const std::weak_ptr<NumberInputParam> former = info.numberInputParam;
        const std::weak_ptr<EnumInputParam> formerChoice = info.enumInputParam;
        info.setNumberInputParam(number);
        QVERIFY(former.expired());
        QVERIFY(!formerChoice.expired());
        QVERIFY(holdTheSame(info, with(upTo(2), positions())));
        info.setEnumInputParam(choice);
        QVERIFY(formerChoice.expired());
        QVERIFY(holdTheSame(info, with(upTo(2), EnumInputParam())));
    }

    void aRecordCanBeSetToItself()
    {
        InputInfoParam info = with(percent(), positions());
        info.setNumberInputParam(*info.numberInputParam);
        info.setEnumInputParam(*info.enumInputParam);
        QVERIFY(holdTheSame(info, with(percent(), positions())));
    }

    void copiesShareTheInnerRecordsUntilOneIsSet()
    {
        InputInfoParam info = with(percent(), positions());
        const InputInfoParam copy(info);
        InputInfoParam assigned;
        assigned = info;
        for (const InputInfoParam& made : {copy, assigned}) {
            QCOMPARE(made.numberInputParam, info.numberInputParam);
            QCOMPARE(made.enumInputParam, info.enumInputParam);
        }
        info.setNumberInputParam(upTo(5));
        info.setEnumInputParam(EnumInputParam());
        QVERIFY(holdTheSame(copy, with(percent(), positions())));
        QCOMPARE(copy.numberInputParam, assigned.numberInputParam);
    }

    void readingChangesNoSharedRecord()
    {
        const InputInfoParam info = with(percent(), positions());
        InputInfoParam copy = info;
        copy.fromStream(json("{'NumberInputParam':{'MaxValue':5},'EnumInputParam':{'EnumValues':{'a':1}}}"));
        QVERIFY(holdTheSame(info, with(percent(), positions())));
        QVERIFY(copy.numberInputParam != info.numberInputParam && copy.enumInputParam != info.enumInputParam);
    }

    void whatIsSetIsNotEmptyWhateverItHolds()
    {
        QVERIFY(!with(NumberInputParam()).isEmpty());
        QVERIFY(!with(EnumInputParam()).isEmpty());
        QVERIFY(!with(percent(), positions()).isEmpty());
        InputInfoParam info = with(percent(), positions());
        info.numberInputParam.reset();
        QVERIFY(!info.isEmpty());
        info.enumInputParam.reset();
        QVERIFY(info.isEmpty());
    }

    void equality_data() // kept: number records count for nothing, a missing enum record only on the right side
    {
        QTest::addColumn<InputInfoParam>("left");
        QTest::addColumn<InputInfoParam>("right");
        QTest::addColumn<bool>("isEqual");
        const auto row = [](const char* name, const InputInfoParam& left, const InputInfoParam& right, bool isEqual) {
            QTest::newRow(name) << left << right << isEqual;
        };
        const EnumInputParam none;
        row("two default records", {}, {}, false);
        row("equal numbers, no enums", with(percent()), with(percent()), false);
        row("different numbers, no enums", with(upTo(1)), with(upTo(2)), false);
        row("an enum on the left alone", with(positions()), {}, false);
        row("an enum on the left and a number on the right", with(positions()), with(percent()), false);
        row("an enum on the right alone", {}, with(positions()), true);
        row("an empty enum on the right alone", {}, with(none), true);
        row("a number on the left and an enum on the right", with(percent()), with(positions()), true);
        row("equal enums", with(positions()), with(positions()), true);
        row("equal enums, different numbers", with(upTo(1), positions()), with(upTo(2), positions()), true);
        row("equal enums, one number", with(upTo(1), positions()), with(positions()), true);
        row("different enums", with(positions()), with(none), false);
        row("different enums, equal numbers", with(percent(), none), with(percent(), positions()), false);
    }
    void equality()
    {
        QFETCH(InputInfoParam, left);
        QFETCH(InputInfoParam, right);
        QFETCH(bool, isEqual);
        QCOMPARE(left.isEqual(right), isEqual);
    }

    void whatIsWrittenReadsBack()
    {
        for (const InputInfoParam& info :
             {InputInfoParam(), with(percent()), with(NumberInputParam()), with(positions()), with(EnumInputParam())})
            QVERIFY(holdTheSame(readBy(InputInfoParam(), info.toStream()), info));
    }

    void aRecordWhoseMemberIsMissingStays()
    {
        QVERIFY(holdTheSame(readBy(with(percent(), positions()), json("{}")), with(percent(), positions())));
        QVERIFY(
            holdTheSame(readBy(with(percent(), positions()), with(upTo(5)).toStream()), with(upTo(5), positions())));
        const QString both = with(upTo(5), EnumInputParam()).toStream();
        QVERIFY(holdTheSame(readBy(with(percent(), positions()), both), with(percent(), EnumInputParam())));
    }

    void aRecordThatIsReadBeginsAnew()
    {
        QVERIFY(holdTheSame(readBy(with(percent()), json("{'NumberInputParam':{'MaxValue':5}}")), with(upTo(5))));
        const QString text = with(positions()).toStream();
        QVERIFY(holdTheSame(readBy(readBy(InputInfoParam(), text), text), with(positions())));
    }

    void bothMembersAreRead()
    {
        const QString text =
            json("{'EnumInputParam':{'EnumValues':{'Open':1,'Close':0}},'NumberInputParam':{'MaxValue':5},'Other':1}");
        QVERIFY(holdTheSame(readBy(InputInfoParam(), text), with(upTo(5), positions())));
    }

    void ofTwoMembersTheFirst()
    {
        const QString text = json("{'NumberInputParam':{'MaxValue':5},'NumberInputParam':{'MaxValue':6},"
                                  "'EnumInputParam':{},'EnumInputParam':{'EnumValues':{'a':1}}}");
        QVERIFY(holdTheSame(readBy(InputInfoParam(), text), with(upTo(5), EnumInputParam())));
    }

    void nothingChanges_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("an empty text") << QString();
        QTest::newRow("no JSON") << QStringLiteral("NumberInputParam");
        QTest::newRow("an array of records") << json("[{'NumberInputParam':{'MaxValue':5}}]");
        QTest::newRow("a text") << json("'NumberInputParam'");
        QTest::newRow("null") << json("null");
        QTest::newRow("two roots") << json("{'NumberInputParam':{'MaxValue':5}}{}");
        QTest::newRow("a comma too many") << json("{'NumberInputParam':{'MaxValue':5},}");
        QTest::newRow("a comma too many inside") << json("{'NumberInputParam':{'MaxValue':5,}}");
        QTest::newRow("an escape of half a pair") << json("{'NumberInputParam':{'\\ud83d':5}}");
        QTest::newRow("a NUL inside a text") << json("{'NumberInputParam':{'") + QChar(0) + json("':5}}");
        QTest::newRow("other names") << json("{'numberInputParam':{'MaxValue':5},'ENUMINPUTPARAM':{}}");
        QTest::newRow("names with a NUL behind") << json("{'NumberInputParam\\u0000':{},'EnumInputParam\\u0000':{}}");
        QTest::newRow("the inner records alone") << json("{'MaxValue':5,'EnumValues':{'a':1}}");
        QTest::newRow("arrays, 100,000 deep") << nestedArrays(100000);
        QTest::newRow("objects, 100,000 deep") << nestedObjects(100000);
        QTest::newRow("an object never closed, 100,000 deep") << json("{'NumberInputParam':").repeated(100000);
    }
    void nothingChanges()
    {
        QFETCH(QString, text);
        const InputInfoParam info = with(percent(), positions());
        const InputInfoParam read = readBy(info, text);
        QCOMPARE(read.numberInputParam, info.numberInputParam);
        QCOMPARE(read.enumInputParam, info.enumInputParam);
    }

    void membersThatAreNoRecordsInstallDefaults_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::newRow("null") << json("null");
        QTest::newRow("a number") << json("5");
        QTest::newRow("true") << json("true");
        QTest::newRow("a text") << json("'MaxValue'");
        QTest::newRow("an array") << json("[{'MaxValue':5,'EnumValues':{'a':1}}]");
        QTest::newRow("an empty object") << json("{}");
        QTest::newRow("arrays, 100,000 deep") << nestedArrays(100000);
        QTest::newRow("objects, 100,000 deep") << nestedObjects(100000);
    }
    void membersThatAreNoRecordsInstallDefaults()
    {
        QFETCH(QString, stored);
        const QString text = json("{'NumberInputParam':%1,'EnumInputParam':%1}").arg(stored);
        QVERIFY(holdTheSame(readBy(with(percent(), positions()), text), with(NumberInputParam(), EnumInputParam())));
    }

    void anInnerRecordMayStandAsAText() // since a text's JSON string is the text itself
    {
        const QString text = json("{'NumberInputParam':'{\\'MaxValue\\':5}'}");
        QVERIFY(holdTheSame(readBy(InputInfoParam(), text), with(upTo(5))));
    }

    void depthInsideAnInnerRecordDoesNotHurtIt()
    {
        const QString text = json("{'NumberInputParam':{'X':%1,'MaxValue':5}}").arg(nestedObjects(100000));
        QVERIFY(holdTheSame(readBy(InputInfoParam(), text), with(upTo(5))));
    }

    void whereverATextIsCutNothingChanges()
    {
        for (const QString& text : {with(percent()).toStream(), with(positions()).toStream()}) {
            forEachCut(text, [](const QString& cut) {
                QVERIFY(holdTheSame(readBy(with(upTo(1), EnumInputParam()), cut), with(upTo(1), EnumInputParam())));
            });
        }
    }
};

QTEST_GUILESS_MAIN(tst_InputInfoParam)
#include "tst_inputinfoparam.moc"
