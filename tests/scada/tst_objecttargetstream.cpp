#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/tagresolution.h"
#include "scada/binding/objecttarget.h"
#include "tests/support/storedbytes.h"
#include "tests/support/tagtexts.h"
#include "tests/support/testruntime.h"

#include <QRandomGenerator>
#include <QtTest>

using DataCode::DataField;
using Korvane::ScadaObjectType;

namespace {

/// How a version lays the record out behind type, id and name.
enum class Layout { SecondText, UnusedCode, FieldCode };

struct Version
{
    quint32 number;
    Layout layout;
};

constexpr Version versions[] = {
    {0, Layout::SecondText},          {607, Layout::SecondText},        {608, Layout::SecondText},
    {700, Layout::SecondText},        {799, Layout::SecondText},        {800, Layout::UnusedCode},
    {816, Layout::UnusedCode},        {817, Layout::UnusedCode},        {831, Layout::UnusedCode},
    {832, Layout::FieldCode},         {850, Layout::FieldCode},         {911, Layout::FieldCode},
    {912, Layout::SecondText},        {1000, Layout::SecondText},       {0x7FFFFFFF, Layout::SecondText},
    {0x80000000, Layout::SecondText}, {0xFFFFFFFF, Layout::SecondText},
};

ScadaTagActionStream version(quint32 number)
{
    return ScadaTagActionStream(number);
}

QString storedTagString(const ObjectTarget& of, const char* part)
{
    ObjectTarget probe = of;
    const QString text = QString::fromLatin1(part);
    return probe.replacePointName(nullptr, {{text, text}}) ? probe.getTagString() : QString();
}

QByteArray written(const char* tag)
{
    return ObjectTarget::fromTagString(QString::fromUtf8(tag)).makeByteStream();
}

} // namespace

class tst_ObjectTargetStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { PointDirectory::registerDirectory(nullptr); }

    void writesTheRecord_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("a point") << "AB" << bytesOf("00000006 00000000 00000004 00410042 0000");
        QTest::newRow("a point with a field") << "AB:HighLimit" << bytesOf("00000006 00000000 00000004 00410042 7532");
        QTest::newRow("a point by its id")
            << "#100001" << bytesOf("00000000 000186A1 0000000E 0023003100300030003000300031 0000");
        QTest::newRow("a unit with a field") << "@R::X:ScanState" << bytesOf("00000002 00000000 00000002 0058 005E");
        QTest::newRow("a line") << "@C::X" << bytesOf("00000003 00000000 00000002 0058 0000");
        QTest::newRow("a property") << "@::X" << bytesOf("00000007 00000000 00000002 0058 0000");
        QTest::newRow("a constant") << "12.5" << bytesOf("FFFFFFFF 00000000 00000008 00310032002E0035 4E20");
        QTest::newRow("the current value's field has code 0")
            << "AB:Value" << bytesOf("00000006 00000000 00000004 00410042 0000");
        QTest::newRow("a code of 100001 keeps its low 16 bits, 34465")
            << "X:PastMaximum" << bytesOf("00000006 00000000 00000002 0058 86A1");
        QTest::newRow("an empty tag is no constant") << "" << bytesOf("FFFFFFFF 00000000 00000000 0000");
        QTest::newRow("no tag at all") << QString() << bytesOf("FFFFFFFF 00000000 FFFFFFFF 0000");
    }
    void writesTheRecord()
    {
        QFETCH(QString, tag);
        QFETCH(QByteArray, bytes);
        ObjectTarget made = ObjectTarget::fromTagString(tag);
        QCOMPARE(made.makeByteStream().toHex(' '), bytes.toHex(' '));

        QByteArray appended;
        QDataStream stream(&appended, QIODevice::WriteOnly);
        stream.setVersion(12);
        made.toStream(stream);
        QCOMPARE(appended, bytes);
    }

    void writesInTheStreamsOwnByteOrder()
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        ObjectTarget::fromTagString(QStringLiteral("AB:HighLimit")).toStream(stream);
        QCOMPARE(bytes.toHex(' '), bytesOf("06000000 00000000 04000000 41004200 3275").toHex(' '));
    }

    void writesTheBoundIdWhereTheTextGivesNone()
    {
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("AB"));
        ObjectTarget made = ObjectTarget::fromTagString(QStringLiteral("AB:HighLimit"));
        made.resolve(&runtime);
        // Resolving took the field off the tag string, so it is not written: pages are saved from unresolved targets.
        QCOMPARE(made.makeByteStream().toHex(' '), bytesOf("00000006 00030D41 00000004 00410042 0000").toHex(' '));
        made.setTagString(QStringLiteral("12.5"));
        QCOMPARE(made.makeByteStream().toHex(' '),
                 bytesOf("FFFFFFFF 00030D41 00000008 00310032002E0035 4E20").toHex(' '));
        made.setTagString(QStringLiteral("#100001"));
        QCOMPARE(made.makeByteStream().left(8).toHex(' '), bytesOf("00000000 000186A1").toHex(' '));
    }

    void writesKindAndIdFromTheDirectory()
    {
        TestRuntime directory;
        directory.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("AB"));
        PointDirectory::registerDirectory(&directory);
        QCOMPARE(written("AB").toHex(' '), bytesOf("00000001 00030D41 00000004 00410042 0000").toHex(' '));
    }

    void everyVersionReadsItsLayout_data()
    {
        QTest::addColumn<quint32>("number");
        QTest::addColumn<int>("layout");
        for (const Version& row : versions)
            QTest::addRow("version %u", row.number) << row.number << static_cast<int>(row.layout);
    }
    void everyVersionReadsItsLayout()
    {
        QFETCH(quint32, number);
        QFETCH(int, layout);
        // A line "X" with id 7; behind it a code for its communication state, or the text "@C::X:ScanState"; then a
        // mark.
        const QByteArray head = bytesOf("00000003 00000007 00000002 0058");
        const QByteArray code = bytesOf("005D");
        const QByteArray text = bytesOf("0000001E 00400043003A003A0058003A005300630061006E00530074006100740065");
        const QByteArray mark = bytesOf("C0FFEE00");
        const bool isText = Layout(layout) == Layout::SecondText;
        StoredBytes stream(head + (isText ? text : code) + mark);

        ObjectTarget read;
        read.fromStream(stream, version(number));
        QCOMPARE(stream.status(), QDataStream::Ok);
        quint32 rest = 0;
        stream >> rest;
        QCOMPARE(rest, 0xC0FFEE00U);

        QCOMPARE(read.objectKindType(), ScadaObjectType::ChannelObject);
        QCOMPARE(read.getPid(), 7);
        QVERIFY(!read.value().isValid());
        switch (Layout(layout)) {
        case Layout::SecondText: // the stored tag string stays the name
            QCOMPARE(read.getTagString(), QStringLiteral("@C::X:ScanState"));
            QCOMPARE(storedTagString(read, "X"), QStringLiteral("X"));
            break;
        case Layout::UnusedCode:
            QCOMPARE(read.getTagString(), QStringLiteral("X"));
            QCOMPARE(storedTagString(read, "X"), QStringLiteral("X"));
            break;
        case Layout::FieldCode:
            QCOMPARE(read.getTagString(), QStringLiteral("@C::X:CommState"));
            QCOMPARE(storedTagString(read, "X"), QStringLiteral("@C::X:CommState"));
            break;
        }
    }

    void prefixesOnReading_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("tag");
        QTest::newRow("kind 3, no field") << bytesOf("00000003 00000000 00000002 0058 0000") << "@C::X";
        QTest::newRow("kind 2, no field") << bytesOf("00000002 00000000 00000002 0058 0000") << "@R::X";
        QTest::newRow("kind 7, no field") << bytesOf("00000007 00000000 00000002 0058 0000") << "@::X";
        QTest::newRow("kind 7 whose name has the prefix gets no second one")
            << bytesOf("00000007 00000000 00000008 0040003A003A0058 0000") << "@::X";
        QTest::newRow("kind 2 whose name has the prefix gets a second one")
            << bytesOf("00000002 00000000 0000000A 00400052003A003A0058 0000") << "@R::@R::X";
        QTest::newRow("kind 3 whose name has the prefix gets a second one")
            << bytesOf("00000003 00000000 0000000A 00400043003A003A0058 0000") << "@C::@C::X";
        QTest::newRow("kind 0") << bytesOf("00000000 00000000 00000002 0058 0000") << "X";
        QTest::newRow("kind 1 with a field") << bytesOf("00000001 00000000 00000002 0058 7532") << "X:HighLimit";
        QTest::newRow("a kind nobody knows") << bytesOf("7FFFFFFF 00000000 00000002 0058 0000") << "X";
        QTest::newRow("a code nobody knows adds an empty field")
            << bytesOf("00000006 00000000 00000002 0058 86A1") << "X:";
        QTest::newRow("a code nobody knows behind a prefix")
            << bytesOf("00000002 00000000 00000002 0058 FFFF") << "@R::X:";
    }
    void prefixesOnReading()
    {
        QFETCH(QByteArray, bytes);
        for (const quint32 number : {832U, 850U, 911U}) {
            const ObjectTarget read = ObjectTarget::makeFromByteStream(bytes, version(number));
            QTEST(read.getTagString(), "tag");
            QCOMPARE(read.mappingState(), ObjectTarget::TagMapped);
        }
    }

    void aConstantReadsBackAsItsValue()
    {
        ObjectTarget read = ObjectTarget::makeFromByteStream(written("12.5"), version(850));
        QCOMPARE(read.getTagString(), QStringLiteral("12.5"));
        QCOMPARE(read.value(), QVariant(12.5));
        QCOMPARE(read.value().userType(), int(QMetaType::Double));
        QCOMPARE(read.objectKindType(), ScadaObjectType::NoObject);
    }

    void aMarkedConstantThatIsNoNumberIsZero()
    {
        const ObjectTarget read =
            ObjectTarget::makeFromByteStream(bytesOf("FFFFFFFF 00000000 00000002 0058 4E20"), version(911));
        QCOMPARE(read.getTagString(), QStringLiteral("X"));
        QCOMPARE(read.value(), QVariant(0.0));
    }

    void aConstantUnderAnUnusedCodeHasNoValue()
    {
        const ObjectTarget read = ObjectTarget::makeFromByteStream(written("12.5"), version(831));
        QCOMPARE(read.getTagString(), QStringLiteral("12.5"));
        QVERIFY(!read.value().isValid());
    }

    void readingOverATargetKeepsItsValue()
    {
        ObjectTarget read = ObjectTarget::fromTagString(QStringLiteral("OLD"));
        read.setValue(3);
        StoredBytes stream(written("@R::X:CommState"));
        read.fromStream(stream, version(911));
        QCOMPARE(read.value(), QVariant(3));
        QCOMPARE(read.getTagString(), QStringLiteral("@R::X:CommState"));
    }

    void readsIntoAMapUnderEveryVersion_data() { everyVersionReadsItsLayout_data(); }
    void readsIntoAMapUnderEveryVersion()
    {
        QFETCH(quint32, number);
        QFETCH(int, layout);
        const QByteArray head = bytesOf("00000001 00030D41 00000002 0058");
        const QByteArray text = bytesOf("00000014 0058003A004C006F0077004C0069006D00690074"); // "X:LowLimit"
        StoredBytes stream(head + (Layout(layout) == Layout::SecondText ? text : bytesOf("7533")));
        QMap<QString, QVariant> map;
        ObjectTarget::fromStream(stream, version(number), map);
        QCOMPARE(stream.status(), QDataStream::Ok);
        const int field = Layout(layout) == Layout::UnusedCode ? -1 : 30003;
        QCOMPARE(map, (QMap<QString, QVariant>{{QStringLiteral("pname"), QStringLiteral("X")},
                                               {QStringLiteral("dtfield"), field}}));
    }

    void readsIntoAMap_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("field");
        QTest::newRow("with a field") << "@C::X:CommState"
                                      << "X" << 93;
        QTest::newRow("without a field") << "PUMP"
                                         << "PUMP" << -1;
        QTest::newRow("a constant") << "12.5"
                                    << "12.5" << -1;
        QTest::newRow("nothing") << ""
                                 << "" << -1;
    }
    void readsIntoAMap()
    {
        QFETCH(QString, tag);
        QFETCH(QString, name);
        QFETCH(int, field);
        QMap<QString, QVariant> map{{QStringLiteral("pname"), 1}, {QStringLiteral("other"), 2}};
        StoredBytes stream(ObjectTarget::fromTagString(tag).makeByteStream());
        ObjectTarget::fromStream(stream, version(911), map);
        QCOMPARE(map, (QMap<QString, QVariant>{{QStringLiteral("pname"), name},
                                               {QStringLiteral("dtfield"), field},
                                               {QStringLiteral("other"), 2}}));
        QCOMPARE(map.value(QStringLiteral("pname")).userType(), int(QMetaType::QString));
        QCOMPARE(map.value(QStringLiteral("dtfield")).userType(), int(QMetaType::Int));
    }

    void theDefaultVersionReadsWhatIsWritten()
    {
        const ObjectTarget read = ObjectTarget::makeFromByteStream(written("@R::X:CommState"), ScadaTagActionStream());
        QCOMPARE(ScadaTagActionStream().version(), 911U);
        QCOMPARE(read.getTagString(), QStringLiteral("@R::X:CommState"));
    }

    void whatIsWrittenReadsBack()
    {
        QVERIFY(rc::check("the link survives, but for what the record can't hold", [] {
            const QString tag = *tagTexts();
            const Korvane::DataLinkInfo link = Korvane::quickResolveFromString(tag);
            const DataField field = Korvane::dtStringToCode(link.field);
            // The record has no code for the current value, none above 16 bits, and no mark for a property's name that
            // begins with the prefix itself.
            RC_PRE(field != DataField::Value && static_cast<int>(field) <= 0xFFFF);
            RC_PRE(link.type != ScadaObjectType::ApplicationProperty || !link.name.startsWith(QLatin1String("@::")));
            const quint32 number = *rc::gen::inRange(832U, 912U);
            const ObjectTarget read =
                ObjectTarget::makeFromByteStream(ObjectTarget::fromTagString(tag).makeByteStream(), version(number));
            RC_ASSERT(read.getTagString() == tag);
            RC_ASSERT(read.objectKindType() == link.type);
            RC_ASSERT(read.getPid() == link.id);
        }));
    }

    void cutOffAtEveryByte_data() { everyVersionReadsItsLayout_data(); }
    void cutOffAtEveryByte()
    {
        QFETCH(quint32, number);
        QFETCH(int, layout);
        const QByteArray head = bytesOf("00000003 00000007 00000002 0058");
        const QByteArray whole =
            head + (Layout(layout) == Layout::SecondText ? bytesOf("00000002 0059") : bytesOf("005D"));
        for (int length = 0; length <= whole.size(); ++length) {
            StoredBytes stream(whole.left(length));
            ObjectTarget read = ObjectTarget::fromTagString(QStringLiteral("BEFORE"));
            read.fromStream(stream, version(number));
            QCOMPARE(stream.status() == QDataStream::Ok, length == whole.size());
            QCOMPARE(static_cast<int>(read.objectKindType()), length < 4 ? 0 : 3);
            QCOMPARE(read.getPid(), length < 8 ? 0 : 7);
            if (length == whole.size())
                continue;
            // What is missing is empty; the prefix belongs to what was read.
            const bool hasName = length >= head.size();
            QString expected = hasName ? QStringLiteral("X") : QString();
            if (Layout(layout) == Layout::SecondText)
                expected.clear();
            else if (Layout(layout) == Layout::FieldCode && length >= 4)
                expected.prepend(QStringLiteral("@C::"));
            QCOMPARE(read.getTagString(), expected);
        }
    }

    void absurdTextLengths_data()
    {
        QTest::addColumn<QByteArray>("length");
        QTest::newRow("largest but null") << bytesOf("FFFFFFFE");
        QTest::newRow("largest signed") << bytesOf("7FFFFFFE");
        QTest::newRow("a gigabyte") << bytesOf("40000000");
        QTest::newRow("odd") << bytesOf("00000003");
    }
    void absurdTextLengths()
    {
        QFETCH(QByteArray, length);
        for (const Version& row : versions) {
            StoredBytes stream(bytesOf("00000006 00000000") + length + bytesOf("0058 0058"));
            ObjectTarget read;
            read.fromStream(stream, version(row.number));
            QVERIFY(stream.status() != QDataStream::Ok);
            QVERIFY(read.getTagString().size() <= 1); // at most the colon of an unknown field
        }
    }

    void randomBytesUnderEveryVersion()
    {
        QRandomGenerator random(20261120);
        for (quint32 number = 0; number <= 1000; ++number) {
            QByteArray bytes(int(random.bounded(64)), Qt::Uninitialized);
            for (char& byte : bytes)
                byte = static_cast<char>(random.bounded(4) == 0 ? random.bounded(256) : 0);
            StoredBytes stream(bytes);
            ObjectTarget read;
            read.fromStream(stream, version(number));
            // Read again, the same bytes give the same: nothing is left over from what was there before.
            ObjectTarget again = ObjectTarget::fromTagString(QStringLiteral("BEFORE"));
            StoredBytes secondStream(bytes);
            again.fromStream(secondStream, version(number));
            QVERIFY(again.isEqual(read));
            QCOMPARE(again.getPid(), read.getPid());
            QCOMPARE(again.objectKindType(), read.objectKindType());
            QCOMPARE(secondStream.status(), stream.status());
        }
    }
};

QTEST_GUILESS_MAIN(tst_ObjectTargetStream)
#include "tst_objecttargetstream.moc"
