#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/logdatainfo.h"
#include "scada/binding/objecttarget.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/testhub.h"
#include "tests/support/testruntime.h"

#include <QtTest>

#include <limits>
#include <type_traits>

using DataCode::DataField;
using Korvane::ScadaObjectType;
using Renames = QList<QPair<QString, QString>>;

static_assert(std::is_base_of_v<ObjectTagValue, ObjectTarget>);
static_assert(!std::is_polymorphic_v<ObjectTagValue>);
static_assert(std::has_virtual_destructor_v<ObjectTarget>);
static_assert(
    std::is_same_v<decltype(std::declval<ObjectTarget&>() = std::declval<const ObjectTarget&>()), const ObjectTarget&>);
static_assert(ObjectTarget::TagUnmapped == 0 && ObjectTarget::TagMapped == 1);

namespace {

ObjectTarget target(const char* tag)
{
    return ObjectTarget::fromTagString(QString::fromUtf8(tag));
}

/// The stored tag string, which must contain an "A": renaming A to itself puts it in force.
QString storedTagString(const ObjectTarget& of)
{
    ObjectTarget probe = of;
    return probe.replacePointName(nullptr, {{QStringLiteral("A"), QStringLiteral("A")}}) ? probe.getTagString()
                                                                                         : QString();
}

} // namespace

class tst_ObjectTarget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { PointDirectory::registerDirectory(nullptr); }

    void aDefaultTargetIsUnmapped()
    {
        const ObjectTarget fresh;
        QCOMPARE(fresh.mappingState(), ObjectTarget::TagUnmapped);
        QVERIFY(!fresh.getLogDataInfo());
        QVERIFY(fresh.isEqual(ObjectTarget()));
        QVERIFY(fresh.getTagString().isNull());
        QVERIFY(!fresh.value().isValid());
        QCOMPARE(fresh.getPid(), 0);
        QCOMPARE(fresh.objectKindType(), ScadaObjectType::NoObject);
    }

    void aTagStringMapsIt()
    {
        ObjectTarget made = target("PUMP:HighLimit");
        QCOMPARE(made.getTagString(), QStringLiteral("PUMP:HighLimit"));
        QCOMPARE(made.mappingState(), ObjectTarget::TagMapped);
        QCOMPARE(made.getPid(), 0);
        made.setTagString(QStringLiteral(" "));
        QCOMPARE(made.mappingState(), ObjectTarget::TagMapped);
        made.setTagString(QString());
        QCOMPARE(made.mappingState(), ObjectTarget::TagUnmapped);
    }

    void equalityComparesTagStringsAlone()
    {
        ObjectTarget one = target("PUMP");
        ObjectTarget other = target("PUMP");
        other.setValue(5);
        QVERIFY(one.isEqual(other));
        QVERIFY(!one.isEqual(target("pump")));
        QVERIFY(!one.isEqual(target("PUMP ")));
        QVERIFY(!one.isEqual(target("PUMP:Value")));
        QVERIFY(target("").isEqual(ObjectTarget()));
    }

    void resolvingKeepsTheBareName_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("field"); // -1 stands for the current value
        QTest::newRow("a point with a field") << "PUMP:HighLimit" << 1 << 200001 << "PUMP" << 30002;
        QTest::newRow("a point") << "PUMP" << 1 << 200001 << "PUMP" << -1;
        QTest::newRow("a unit") << "@R::RTU1:CommState" << 2 << 5 << "RTU1" << 93;
        QTest::newRow("an unknown name") << "GONE" << 6 << 0 << "GONE" << -1;
        QTest::newRow("a property") << "@::theme" << 7 << 0 << "theme" << -1;
    }
    void resolvingKeepsTheBareName()
    {
        QFETCH(QString, tag);
        QFETCH(int, field);
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("PUMP"));
        runtime.add(ScadaObjectType::RtuObject, 5, QStringLiteral("RTU1"));
        ObjectTarget made = ObjectTarget::fromTagString(tag);
        made.resolve(&runtime);
        QTEST(static_cast<int>(made.objectKindType()), "kind");
        QTEST(made.getPid(), "id");
        QTEST(made.getTagString(), "name");
        QCOMPARE(made.field(), DataFieldInfo::find(DataField(field)));
    }

    void resolvingLeavesTheStoredTagString()
    {
        ObjectTarget made = target("A:HighLimit");
        made.resolve(nullptr);
        QCOMPARE(made.getTagString(), QStringLiteral("A"));
        QCOMPARE(storedTagString(made), QStringLiteral("A:HighLimit"));
    }

    void resolvingAConstantSetsItsValue()
    {
        ObjectTarget bound = target("12.5");
        QVERIFY(!bound.value().isValid());
        bound.resolve(nullptr);
        QCOMPARE(bound.value(), QVariant(12.5));
        QCOMPARE(bound.getTagString(), QStringLiteral("12.5"));
        QCOMPARE(bound.objectKindType(), ScadaObjectType::NoObject);
    }

    void replacingText_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QString>("result");
        QTest::newRow("absent") << "PUMP"
                                << "VALVE"
                                << "X" << false << "PUMP";
        QTest::newRow("every occurrence") << "A.B.A:Value"
                                          << "A"
                                          << "CC" << true << "CC.B.CC:Value";
        QTest::newRow("letter case counts") << "PUMP"
                                            << "pump"
                                            << "X" << false << "PUMP";
        QTest::newRow("inside a word") << "PUMP12"
                                       << "PUMP1"
                                       << "P" << true << "P2";
        QTest::newRow("in the field too") << "PUMP:HighLimit"
                                          << "High"
                                          << "Low" << true << "PUMP:LowLimit";
        QTest::newRow("an empty text occurs everywhere, as QString has it") << "AB"
                                                                            << ""
                                                                            << "x" << true << "xAxBx";
        QTest::newRow("by nothing") << "PUMP"
                                    << "PUMP"
                                    << "" << true << "";
        QTest::newRow("in an unmapped target") << ""
                                               << "A"
                                               << "B" << false << "";
    }
    void replacingText()
    {
        QFETCH(QString, tag);
        QFETCH(QString, before);
        QFETCH(QString, after);
        ObjectTarget made = ObjectTarget::fromTagString(tag);
        QTEST(made.replaceText(before, after), "found");
        QTEST(made.getTagString(), "result");
    }

    void replacingTextLeavesTheStoredTagStringAndTheBinding()
    {
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("A"));
        ObjectTarget made = target("A");
        made.resolve(&runtime);
        QVERIFY(made.replaceText(QStringLiteral("A"), QStringLiteral("B")));
        QCOMPARE(made.getTagString(), QStringLiteral("B"));
        QCOMPARE(made.getPid(), 200001);
        QCOMPARE(storedTagString(made), QStringLiteral("A"));
    }

    void renaming_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<Renames>("renames");
        QTest::addColumn<bool>("changed");
        QTest::addColumn<QString>("result");
        const auto pair = [](const char* before, const char* after) {
            return qMakePair(QString::fromLatin1(before), QString::fromLatin1(after));
        };
        QTest::newRow("an empty list") << "A" << Renames() << false << "A";
        QTest::newRow("tests look at the stored string, replacements add up")
            << "A B" << Renames{pair("A", "B"), pair("B", "C")} << true << "C C";
        QTest::newRow("a name that only a replacement brought in is not renamed")
            << "A" << Renames{pair("A", "B"), pair("B", "C")} << true << "B";
        QTest::newRow("a name that a replacement took away still counts")
            << "AB" << Renames{pair("AB", "C"), pair("B", "D")} << true << "C";
        QTest::newRow("letter case counts") << "PUMP" << Renames{pair("pump", "X")} << false << "PUMP";
        QTest::newRow("parts of words too") << "A12" << Renames{pair("A1", "A10")} << true << "A102";
        QTest::newRow("prefix and field stay")
            << "@R::A:CommState" << Renames{pair("A", "B")} << true << "@R::B:CommState";
    }
    void renaming()
    {
        QFETCH(QString, tag);
        QFETCH(Renames, renames);
        QFETCH(QString, result);
        TestHub hub;
        ObjectTarget made = ObjectTarget::fromTagString(tag);
        QTEST(made.replacePointName(&hub, renames), "changed");
        QCOMPARE(made.getTagString(), result);
    }

    void renamingBindsToTheNewName()
    {
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("OLD"));
        runtime.add(ScadaObjectType::AnalogPoint, 200002, QStringLiteral("NEW"));
        TestHub hub;
        hub.setScadaRuntime(&runtime);
        ObjectTarget made = target("OLD:HighLimit");
        QVERIFY(made.replacePointName(&hub, {{QStringLiteral("OLD"), QStringLiteral("NEW")}}));
        QCOMPARE(made.getTagString(), QStringLiteral("NEW:HighLimit"));
        QCOMPARE(made.getPid(), 200002);
        QCOMPARE(made.objectKindType(), ScadaObjectType::AnalogPoint);
        QCOMPARE(made.field(), DataFieldInfo::find(DataField::HighLimit));
    }

    void renamingWithoutAHitLeavesTheBinding()
    {
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("A"));
        TestHub hub;
        ObjectTarget made = target("A");
        made.resolve(&runtime);
        QVERIFY(!made.replacePointName(&hub, {{QStringLiteral("X"), QStringLiteral("Y")}}));
        QCOMPARE(made.getPid(), 200001);
    }

    // The stored tag string is what renaming works on, not the one in force, and it stays as it was.
    void renamingStartsFromTheStoredTagStringEachTime()
    {
        ObjectTarget made = target("A:HighLimit");
        made.resolve(nullptr);
        QVERIFY(made.replaceText(QStringLiteral("A"), QStringLiteral("Z")));
        QVERIFY(made.replacePointName(nullptr, {{QStringLiteral("A"), QStringLiteral("AA")}}));
        QCOMPARE(made.getTagString(), QStringLiteral("AA:HighLimit"));
        QVERIFY(made.replacePointName(nullptr, {{QStringLiteral("A"), QStringLiteral("AA")}}));
        QCOMPARE(made.getTagString(), QStringLiteral("AA:HighLimit"));
    }

    void renamingNamesThePointInTheLoggingDescription()
    {
        ObjectTarget made = target("A:PastMean");
        LogDataInfo info;
        info.pointName = QStringLiteral("A");
        info.periodsBack = 3;
        made.setLogDataInfo(info);
        QVERIFY(made.replacePointName(nullptr, {{QStringLiteral("A"), QStringLiteral("B")}}));
        QCOMPARE(made.getLogDataInfo()->pointName, QStringLiteral("B"));
        QCOMPARE(made.getLogDataInfo()->periodsBack, 3);
    }

    void aChangeIsNeededOnce()
    {
        ObjectTarget made;
        QVERIFY(made.needUpdate(1.0));
        QVERIFY(!made.needUpdate(1.0));
        QVERIFY(made.needUpdate(2.0));
        QVERIFY(made.needUpdate(1.0));
    }

    void changesAreWhatVariantsSay_data()
    {
        QTest::addColumn<QVariant>("current");
        QTest::addColumn<double>("next");
        QTest::addColumn<bool>("needed");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("no value yet") << QVariant() << 0.0 << true;
        QTest::newRow("same") << QVariant(1.5) << 1.5 << false;
        QTest::newRow("differs beyond twelve digits") << QVariant(1.0) << 1.0 + 1e-13 << false;
        QTest::newRow("differs within twelve digits") << QVariant(1.0) << 1.0 + 1e-11 << true;
        QTest::newRow("small numbers are not near zero") << QVariant(0.0) << 1e-300 << true;
        QTest::newRow("zero of either sign") << QVariant(0.0) << -0.0 << false;
        QTest::newRow("a whole number of the same size") << QVariant(5) << 5.0 << false;
        QTest::newRow("a text of the same number") << QVariant(QStringLiteral("5")) << 5.0 << false;
        QTest::newRow("a text that reads as the same number") << QVariant(QStringLiteral("5.0")) << 5.0 << false;
        QTest::newRow("another text") << QVariant(QStringLiteral("on")) << 5.0 << true;
        QTest::newRow("NaN is never the same") << QVariant(nan) << nan << true;
        QTest::newRow("infinity is the same") << QVariant(infinity) << infinity << false;
        QTest::newRow("infinity of the other sign") << QVariant(infinity) << -infinity << true;
    }
    void changesAreWhatVariantsSay()
    {
        QFETCH(QVariant, current);
        QFETCH(double, next);
        QFETCH(bool, needed);
        QCOMPARE(!(QVariant(next) == current), needed);

        ObjectTarget made;
        made.setValue(current);
        QCOMPARE(made.needUpdate(next), needed);
        if (needed)
            QCOMPARE(made.value().userType(), int(QMetaType::Double));
        else
            QCOMPARE(made.value().userType(), current.userType());
    }

    void aChangeAllocatesNothing()
    {
        ObjectTarget made;
        made.needUpdate(0.0);
        int changes = 0;
        const AllocationCounter counter;
        for (int i = 0; i < 100; ++i)
            changes += made.needUpdate(i / 2) ? 1 : 0;
        QCOMPARE(counter.count(), std::size_t(0));
        QCOMPARE(changes, 49);
    }

    void theLoggingDescriptionIsKeptAndReplaced()
    {
        ObjectTarget made;
        LogDataInfo info;
        info.pointName = QStringLiteral("A");
        info.period = LogDataInfo::Period::Day;
        made.setLogDataInfo(info);
        const LogDataInfo* record = made.getLogDataInfo();
        QVERIFY(record && *record == info);
        info.pointName = QStringLiteral("B");
        made.setLogDataInfo(info);
        QCOMPARE(made.getLogDataInfo(), record);
        QCOMPARE(record->pointName, QStringLiteral("B"));
    }

    void aCopySharesTheLoggingDescription()
    {
        ObjectTarget original = target("A");
        original.setValue(1);
        original.setLogDataInfo({});
        ObjectTarget copy(original);
        QCOMPARE(copy.getLogDataInfo(), original.getLogDataInfo());
        QCOMPARE(copy.getTagString(), QStringLiteral("A"));
        QCOMPARE(copy.value(), QVariant(1));

        LogDataInfo info;
        info.pointName = QStringLiteral("B");
        copy.setLogDataInfo(info);
        QCOMPARE(original.getLogDataInfo()->pointName, QStringLiteral("B"));
    }

    void theLoggingDescriptionOutlivesItsTargets()
    {
        const LogDataInfo* record = nullptr;
        {
            ObjectTarget original;
            LogDataInfo info;
            info.pointName = QStringLiteral("A");
            original.setLogDataInfo(info);
            record = original.getLogDataInfo();
        }
        QCOMPARE(record->pointName, QStringLiteral("A"));
    }

    void aCopyCarriesEverything()
    {
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("A"));
        ObjectTarget original = target("A:HighLimit");
        original.resolve(&runtime);
        original.setValue(1);
        original.setFieldValue(DataField::LowLimit, 2);
        const ObjectTarget copy(original);
        QCOMPARE(copy.getTagString(), QStringLiteral("A"));
        QCOMPARE(storedTagString(copy), QStringLiteral("A:HighLimit"));
        QCOMPARE(copy.getPid(), 200001);
        QCOMPARE(copy.objectKindType(), ScadaObjectType::AnalogPoint);
        QCOMPARE(copy.value(), QVariant(1));
        QCOMPARE(copy.fieldValue(DataField::LowLimit), QVariant(2));
        QCOMPARE(copy.field(), DataFieldInfo::find(DataField::HighLimit));
    }

    void assignmentLeavesTheLoggingDescription()
    {
        TestRuntime runtime;
        runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("A"));
        ObjectTarget original = target("A:HighLimit");
        original.resolve(&runtime);
        original.setValue(1);
        original.setFieldValue(DataField::LowLimit, 2);
        original.setLogDataInfo({});

        ObjectTarget without;
        without = original;
        QVERIFY(!without.getLogDataInfo());
        QCOMPARE(without.getTagString(), QStringLiteral("A"));
        QCOMPARE(storedTagString(without), QStringLiteral("A:HighLimit"));
        QCOMPARE(without.objectKindType(), ScadaObjectType::AnalogPoint);
        QCOMPARE(without.getPid(), 200001);
        QCOMPARE(without.value(), QVariant(1));
        QCOMPARE(without.fieldValue(DataField::LowLimit), QVariant(2));
        QCOMPARE(without.field(), DataFieldInfo::find(DataField::HighLimit));

        ObjectTarget with;
        with.setLogDataInfo({});
        const LogDataInfo* own = with.getLogDataInfo();
        with = original;
        QCOMPARE(with.getLogDataInfo(), own);
        QVERIFY(own != original.getLogDataInfo());
    }

    void assignmentToItselfChangesNothing()
    {
        ObjectTarget made = target("A:HighLimit");
        made.resolve(nullptr);
        const ObjectTarget& itself = made;
        QCOMPARE(&(made = itself), &itself);
        QCOMPARE(made.getTagString(), QStringLiteral("A"));
        QCOMPARE(storedTagString(made), QStringLiteral("A:HighLimit"));
    }

    // Actions of one target are kept by the hundred thousand.
    void itTakesAtMostEightyBytes() { QVERIFY(sizeof(ObjectTarget) <= 80); }
};

QTEST_GUILESS_MAIN(tst_ObjectTarget)
#include "tst_objecttarget.moc"
