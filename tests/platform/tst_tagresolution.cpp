#include "platform/data/tagresolution.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/tagtexts.h"
#include "tests/support/testruntime.h"

#include <QtTest>

#include <memory>

using Korvane::DataLinkInfo;
using Korvane::ScadaObjectType;

namespace {

/// A database and directory whose names lie where the grammar is delicate.
void fill(TestRuntime& runtime)
{
    runtime.add(ScadaObjectType::AnalogPoint, 200001, QStringLiteral("PUMP"));
    runtime.add(ScadaObjectType::DigitalPoint, 100001, QStringLiteral("PUMP:"));
    runtime.add(ScadaObjectType::AnalogPoint, 200002, QStringLiteral("a"));
    runtime.add(ScadaObjectType::AnalogPoint, 2999999, QStringLiteral("7"));
    runtime.add(ScadaObjectType::RtuObject, 5, QStringLiteral("PUMP"));
    runtime.add(ScadaObjectType::ChannelObject, 6, QStringLiteral("a"));
}

/// Answers every question with a unit: no well-kept database, but one that must not lead a tag astray.
class StrayDirectory : public PointDirectory
{
    ObjectKey findPoint(QStringView) const override { return {ScadaObjectType::RtuObject, 9}; }
    std::vector<Station> stations() const override { return {}; }
};

} // namespace

class tst_TagResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { PointDirectory::registerDirectory(nullptr); }

    void byTextAlone_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("field");

        QTest::newRow("a name is a point of unknown kind") << "PUMP" << 6 << 0 << "PUMP"
                                                           << "";
        QTest::newRow("a known field is split off") << "PUMP:HighLimit" << 6 << 0 << "PUMP"
                                                    << "HighLimit";
        QTest::newRow("an unknown field belongs to the name") << "PUMP:Nothing" << 6 << 0 << "PUMP:Nothing"
                                                              << "";
        QTest::newRow("a field in other case belongs to the name") << "PUMP:value" << 6 << 0 << "PUMP:value"
                                                                   << "";
        QTest::newRow("only the last colon splits") << "A:Value:HighLimit" << 6 << 0 << "A:Value"
                                                    << "HighLimit";
        QTest::newRow("a colon at the end belongs to the name") << "PUMP:" << 6 << 0 << "PUMP:"
                                                                << "";
        QTest::newRow("two colons before a field") << "PUMP::Value" << 6 << 0 << "PUMP:"
                                                   << "Value";
        QTest::newRow("a field alone has an empty name") << ":Value" << 6 << 0 << ""
                                                         << "Value";
        QTest::newRow("a field's name alone is a name") << "Value" << 6 << 0 << "Value"
                                                        << "";

        QTest::newRow("prefix of units") << "@R::RTU1" << 2 << 0 << "RTU1"
                                         << "";
        QTest::newRow("prefix of lines, with a field") << "@C::COM1:DriverState" << 3 << 0 << "COM1"
                                                       << "DriverState";
        QTest::newRow("prefix of properties") << "@::theme" << 7 << 0 << "theme"
                                              << "";
        QTest::newRow("only the first prefix counts") << "@::@R::x" << 7 << 0 << "@R::x"
                                                      << "";
        QTest::newRow("a prefix alone has an empty name") << "@R::" << 2 << 0 << ""
                                                          << "";
        QTest::newRow("a prefix in other case is a name") << "@r::x" << 6 << 0 << "@r::x"
                                                          << "";
        QTest::newRow("a prefix behind the start is a name") << "x@R::y" << 6 << 0 << "x@R::y"
                                                             << "";
        QTest::newRow("an incomplete prefix is a name") << "@R:x" << 6 << 0 << "@R:x"
                                                        << "";

        QTest::newRow("id of a digital point, first") << "#100001" << 0 << 100001 << "#100001"
                                                      << "";
        QTest::newRow("id of a digital point, last") << "#199999" << 0 << 199999 << "#199999"
                                                     << "";
        QTest::newRow("id before the digital points") << "#100000" << 6 << 100000 << "#100000"
                                                      << "";
        QTest::newRow("id between the ranges") << "#200000" << 6 << 200000 << "#200000"
                                               << "";
        QTest::newRow("id of an analog point, first") << "#200001" << 1 << 200001 << "#200001"
                                                      << "";
        QTest::newRow("id of an analog point, last") << "#2999999" << 1 << 2999999 << "#2999999"
                                                     << "";
        QTest::newRow("id behind the analog points") << "#3000000" << 6 << 3000000 << "#3000000"
                                                     << "";
        QTest::newRow("id with a field") << "#200001:LowLimit" << 1 << 200001 << "#200001"
                                         << "LowLimit";
        QTest::newRow("id with leading zeros") << "#0000100001" << 0 << 100001 << "#0000100001"
                                               << "";
        QTest::newRow("id zero is unknown") << "#0" << 6 << 0 << "#0"
                                            << "";
        QTest::newRow("id of a unit keeps the prefix's kind") << "@R::#100001" << 2 << 100001 << "#100001"
                                                              << "";
        QTest::newRow("a property has no id") << "@::#5" << 7 << 0 << "#5"
                                              << "";
        QTest::newRow("a unit by its id") << "@R::#5" << 2 << 5 << "#5"
                                          << "";
        QTest::newRow("largest id of 32 bits keeps its bits") << "#4294967295" << 6 << -1 << "#4294967295"
                                                              << "";
        QTest::newRow("id beyond 32 bits is a name") << "#4294967296" << 6 << 0 << "#4294967296"
                                                     << "";
        QTest::newRow("hash alone is a name") << "#" << 6 << 0 << "#"
                                              << "";
        QTest::newRow("hash with other text is a name") << "#12a" << 6 << 0 << "#12a"
                                                        << "";
        QTest::newRow("hash with foreign digits is a name")
            << QString::fromUtf8("#１２") << 6 << 0 << QString::fromUtf8("#１２") << "";

        QTest::newRow("empty") << "" << -1 << 0 << ""
                               << "";
        QTest::newRow("number") << "12.5" << -1 << 0 << "12.5"
                                << "";
        QTest::newRow("negative number") << "-3" << -1 << 0 << "-3"
                                         << "";
        QTest::newRow("number with exponent") << "1e5" << -1 << 0 << "1e5"
                                              << "";
        QTest::newRow("number with blanks keeps them") << " 12.5 " << -1 << 0 << " 12.5 "
                                                       << "";
        QTest::newRow("nan is a number") << "nan" << -1 << 0 << "nan"
                                         << "";
        QTest::newRow("inf is a number") << "inf" << -1 << 0 << "inf"
                                         << "";
        QTest::newRow("number with a field is a name") << "12.5:Value" << 6 << 0 << "12.5"
                                                       << "Value";
        QTest::newRow("number behind a prefix is a name") << "@R::12.5" << 2 << 0 << "12.5"
                                                          << "";
        QTest::newRow("hexadecimal is a name") << "0x10" << 6 << 0 << "0x10"
                                               << "";
        QTest::newRow("decimal comma is a name") << "1,5" << 6 << 0 << "1,5"
                                                 << "";
    }
    void byTextAlone()
    {
        QFETCH(QString, tag);
        QFETCH(int, type);
        QFETCH(int, id);
        QFETCH(QString, name);
        QFETCH(QString, field);

        const DataLinkInfo link = Korvane::resolveFromString(tag, nullptr);
        QCOMPARE(static_cast<int>(link.type), type);
        QCOMPARE(link.id, id);
        QCOMPARE(link.name, name);
        QCOMPARE(link.field, field);
        QCOMPARE(Korvane::quickResolveFromString(tag), link);
        QCOMPARE(link.absoluteName(), tag);
    }

    void constantsAreWhatToDoubleTakes()
    {
        // Every character before, behind and between digits, and inside the words for what is no number.
        for (uint unit = 1; unit <= 0xFFFF; ++unit) {
            const QString character(QChar(static_cast<ushort>(unit)));
            for (const QString& text : {character, character + QLatin1Char('1'), QLatin1Char('1') + character,
                                        QLatin1Char('1') + character + QLatin1Char('1'),
                                        character + QLatin1String("nf"), QLatin1String("na") + character}) {
                bool isNumber = false;
                text.toDouble(&isNumber);
                const bool isConstant = Korvane::quickResolveFromString(text).type == ScadaObjectType::NoObject;
                QVERIFY2(isConstant == isNumber, qPrintable(QStringLiteral("U+%1").arg(unit, 4, 16)));
            }
        }
    }

    void withARuntime_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("name");

        QTest::newRow("a known point gives its kind and id") << "PUMP" << 1 << 200001 << "PUMP";
        QTest::newRow("also with a field") << "PUMP:HighLimit" << 1 << 200001 << "PUMP";
        QTest::newRow("another point ends in a colon") << "PUMP:" << 0 << 100001 << "PUMP:";
        QTest::newRow("an unknown point") << "VALVE" << 6 << 0 << "VALVE";
        QTest::newRow("names are case-sensitive") << "pump" << 6 << 0 << "pump";
        QTest::newRow("a unit of the same name") << "@R::PUMP" << 2 << 5 << "PUMP";
        QTest::newRow("an unknown unit keeps its kind") << "@R::a" << 2 << 0 << "a";
        QTest::newRow("a line") << "@C::a" << 3 << 6 << "a";
        QTest::newRow("a property is not in the database") << "@::PUMP" << 7 << 0 << "PUMP";
        QTest::newRow("nor by its id") << "@::#200001" << 7 << 0 << "#200001";
        QTest::newRow("a known id gives its kind") << "#200001" << 1 << 200001 << "#200001";
        QTest::newRow("an unknown id is not found") << "#200009" << 6 << 0 << "#200009";
        QTest::newRow("a unit by its id") << "@R::#5" << 2 << 5 << "#5";
        QTest::newRow("a point's id is no unit's") << "@R::#200001" << 2 << 0 << "#200001";
        QTest::newRow("a number stays a constant though a point has that name") << "7" << -1 << 0 << "7";
    }
    void withARuntime()
    {
        QFETCH(QString, tag);
        QFETCH(int, type);
        QFETCH(int, id);
        QFETCH(QString, name);

        TestRuntime runtime;
        fill(runtime);
        const DataLinkInfo link = Korvane::resolveFromString(tag, &runtime);
        QCOMPARE(static_cast<int>(link.type), type);
        QCOMPARE(link.id, id);
        QCOMPARE(link.name, name);
    }

    void aDirectoryGivesPointsTheirKindAndId()
    {
        TestRuntime directory;
        fill(directory);
        PointDirectory::registerDirectory(&directory);

        const DataLinkInfo point = Korvane::quickResolveFromString(QStringLiteral("PUMP:LowLimit"));
        QCOMPARE(point.type, ScadaObjectType::AnalogPoint);
        QCOMPARE(point.id, 200001);
        QCOMPARE(point.name, QStringLiteral("PUMP"));

        const DataLinkInfo unit = Korvane::quickResolveFromString(QStringLiteral("@R::PUMP"));
        QCOMPARE(unit.type, ScadaObjectType::RtuObject);
        QCOMPARE(unit.id, 0);

        const DataLinkInfo unknown = Korvane::quickResolveFromString(QStringLiteral("VALVE"));
        QCOMPARE(unknown.type, ScadaObjectType::Point);
        QCOMPARE(unknown.id, 0);
    }

    void aRuntimeGoesBeforeTheDirectory()
    {
        TestRuntime directory;
        fill(directory);
        PointDirectory::registerDirectory(&directory);
        TestRuntime empty;
        QCOMPARE(Korvane::resolveFromString(QStringLiteral("PUMP"), &empty).id, 0);
    }

    void aDestroyedDirectoryIsNoLongerRegistered()
    {
        {
            TestRuntime directory;
            PointDirectory::registerDirectory(&directory);
            QCOMPARE(PointDirectory::registered(), static_cast<const PointDirectory*>(&directory));
        }
        QVERIFY(!PointDirectory::registered());
    }

    void aDestroyedDirectoryLeavesItsSuccessorRegistered()
    {
        TestRuntime successor;
        {
            TestRuntime directory;
            PointDirectory::registerDirectory(&directory);
            PointDirectory::registerDirectory(&successor);
        }
        QCOMPARE(PointDirectory::registered(), static_cast<const PointDirectory*>(&successor));
    }

    void anAnswerOfAnotherFamilyIsNotTaken()
    {
        StrayDirectory directory;
        PointDirectory::registerDirectory(&directory);
        const DataLinkInfo link = Korvane::quickResolveFromString(QStringLiteral("PUMP"));
        QCOMPARE(link.type, ScadaObjectType::Point);
        QCOMPARE(link.id, 0);
    }

    void absoluteNameResolvesToTheSame()
    {
        TestRuntime runtime;
        fill(runtime);
        const auto holds = [](const QString& tag, ScadaRuntimeInterface* database) {
            const DataLinkInfo link = Korvane::resolveFromString(tag, database);
            RC_ASSERT(Korvane::resolveFromString(link.absoluteName(), database) == link);
        };
        QVERIFY(rc::check("by text alone", [&] { holds(*tagTexts(), nullptr); }));
        QVERIFY(rc::check("with a runtime", [&] { holds(*tagTexts(), &runtime); }));
        PointDirectory::registerDirectory(&runtime);
        QVERIFY(rc::check("with a directory", [&] { holds(*tagTexts(), nullptr); }));
        QVERIFY(rc::check("arbitrary characters", [&] {
            const auto units = *rc::gen::container<std::vector<ushort>>(rc::gen::arbitrary<ushort>());
            holds(QString::fromUtf16(units.data(), int(units.size())), &runtime);
        }));
    }

    void addressableNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("asPoint");
        QTest::addColumn<bool>("asUnit");
        QTest::newRow("plain") << "PUMP" << true << true;
        QTest::newRow("with a colon") << "PUMP:1" << true << true;
        QTest::newRow("field's name") << "Value" << true << true;
        QTest::newRow("empty") << "" << false << false;
        QTest::newRow("number") << "12" << false << true;
        QTest::newRow("nan") << "nan" << false << true;
        QTest::newRow("prefix") << "@R::x" << false << true;
        QTest::newRow("at sign") << "@x" << false << true;
        QTest::newRow("id") << "#5" << false << false;
        QTest::newRow("id beyond 32 bits") << "#4294967296" << true << true;
        QTest::newRow("field at the end") << "PUMP:Value" << false << false;
    }
    void addressableNames()
    {
        QFETCH(QString, name);
        QTEST(Korvane::isAddressableName(name), "asPoint");
        QTEST(Korvane::isAddressableName(name, ScadaObjectType::AnalogPoint), "asPoint");
        QTEST(Korvane::isAddressableName(name, ScadaObjectType::RtuObject), "asUnit");
        QVERIFY(!Korvane::isAddressableName(name, ScadaObjectType::NoObject));
    }

    void allocations_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("count"); // the name, where it can't share the tag's text, and at most one beside
        QTest::newRow("name") << "STATION_01.PUMP_01.FLOW" << 0;
        QTest::newRow("name with a field") << "STATION_01.PUMP_01.FLOW:HighLimit" << 1;
        QTest::newRow("prefix and field") << "@R::STATION_01.RTU:CommState" << 1;
        QTest::newRow("constant") << "12.5" << 0;
        QTest::newRow("long name of digits") << QString(1000, QLatin1Char('1')) + QLatin1Char('x') << 0;
    }
    void allocations()
    {
        QFETCH(QString, tag);
        QFETCH(int, count);
        Korvane::resolveFromString(QStringLiteral("x:Value"), nullptr); // texts shared by all results are made once
        const AllocationCounter counter;
        const DataLinkInfo link = Korvane::resolveFromString(tag, nullptr);
        const std::size_t counted = counter.count();
        QCOMPARE(counted, static_cast<std::size_t>(count));
    }

    void allocationsAreCounted()
    {
        const AllocationCounter counter;
        const QString text(10, QLatin1Char('x'));
        const auto number = std::make_unique<int>(text.size());
        QCOMPARE(counter.count(), std::size_t(2));
        QCOMPARE(*number, 10);
    }
};

QTEST_GUILESS_MAIN(tst_TagResolution)
#include "tst_tagresolution.moc"
