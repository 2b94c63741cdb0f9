#include "tests/scada/scriptactions.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/testcore.h"
#include "tests/support/testscriptinterface.h"
#include "tests/support/testshape.h"

#include <QApplication>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <cstring>
#include <memory>
#include <type_traits>

using Korvane::TriggerType;
using Operation = TestScriptInterface::Operation;
using Call = TestScriptInterface::Call;
using Renames = QList<QPair<QString, QString>>;
using Values = QMap<QString, QVariant>;
using State = ScadaEventActionInterface::State;

static_assert(!std::is_base_of_v<QObject, ScadaEventActionInterface>);
static_assert(std::is_base_of_v<ScadaEventActionInterface, ScadaScriptAction>);
static_assert(std::is_abstract_v<ScadaEventActionInterface> && !std::is_abstract_v<ScadaScriptAction>);
static_assert(std::has_virtual_destructor_v<ScadaEventActionInterface>);
static_assert(static_cast<int>(State::Empty) == 0 && static_cast<int>(State::Filled) == 1);
static_assert(sizeof(TriggerType) == 4);

namespace {

/// What runAction works with.
struct Services
{
    Services()
    {
        core.manager = &manager;
        core.scripts = &scripts;
        manager.inFront = &front;
    }

    TestCanvas front;
    TestCanvas page;
    TestShape shape;
    TestCanvasManager manager;
    TestScriptInterface scripts;
    TestCore core;
};

int loggedMessages = 0;

void countMessage(QtMsgType, const QMessageLogContext&, const QString&)
{
    ++loggedMessages;
}

#if defined(__x86_64__) && !defined(_MSC_VER)
/// The place of a virtual operation in the table, where the ABI tells it: the destructor takes the first two.
template <typename Member>
int place(Member operation)
{
    std::ptrdiff_t word = 0;
    std::memcpy(&word, &operation, sizeof word);
    return static_cast<int>((word - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}
#endif

} // namespace

class tst_ScadaScriptAction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Actions built elsewhere depend on the places.
    void virtualOperationsStandInTheirPlaces()
    {
        QFile header(QStringLiteral(KORVANE_SOURCE_DIR "/scada/actions/scadaeventactioninterface.h"));
        QVERIFY(header.open(QIODevice::ReadOnly));
        static const QRegularExpression operation(QStringLiteral("^    virtual [^\n]*?(~?\\w+\\([^\n]*\\)[^;\n]*);"),
                                                  QRegularExpression::MultilineOption);
        QStringList found;
        for (auto match = operation.globalMatch(QString::fromUtf8(header.readAll())); match.hasNext();)
            found.append(match.next().captured(1));
        const QStringList expected = {
            QStringLiteral("~ScadaEventActionInterface()"),
            QStringLiteral("type() const = 0"),
            QStringLiteral(
                "runAction(KorvaneCoreInterface* core, TesselInterface* shape, KVCanvasInterface* canvas) = 0"),
            QStringLiteral("triggetType()"),
            QStringLiteral("setTriggerType(Korvane::TriggerType trigger)"),
            QStringLiteral("state() = 0"),
            QStringLiteral("name() = 0"),
            QStringLiteral(
                "replacePointName(KorvaneScadaCoreInterface* core, const QList<QPair<QString, QString>>& renames)"),
            QStringLiteral("replaceText(const QString& before, const QString& after)"),
            QStringLiteral("triggerName()"),
            QStringLiteral("toStream(ScadaEventActionStream& stream) const"),
            QStringLiteral("fromStream(const ScadaEventActionStream& stream, QMap<QString, QVariant>& values)"),
            QStringLiteral("fromStream(const ScadaEventActionStream& stream)"),
            QStringLiteral("isEqual(const ScadaEventActionInterface& other) = 0"),
            QStringLiteral("setTagString(const QString& tag)"),
            QStringLiteral("containText(const QString& text)"),
        };
        QCOMPARE(found, expected);
    }

#if defined(__x86_64__) && !defined(_MSC_VER)
    void theCompilerKeepsThePlaces()
    {
        using Action = ScadaEventActionInterface;
        using Reader = void (Action::*)(const ScadaEventActionStream&);
        using ReaderOfValues = void (Action::*)(const ScadaEventActionStream&, Values&);
        QCOMPARE(place(&Action::type), 2);
        QCOMPARE(place(&Action::runAction), 3);
        QCOMPARE(place(&Action::triggetType), 4);
        QCOMPARE(place(&Action::setTriggerType), 5);
        QCOMPARE(place(&Action::state), 6);
        QCOMPARE(place(&Action::name), 7);
        QCOMPARE(place(&Action::replacePointName), 8);
        QCOMPARE(place(&Action::replaceText), 9);
        QCOMPARE(place(&Action::triggerName), 10);
        QCOMPARE(place(&Action::toStream), 11);
        QCOMPARE(place(static_cast<ReaderOfValues>(&Action::fromStream)), 12);
        QCOMPARE(place(static_cast<Reader>(&Action::fromStream)), 13);
        QCOMPARE(place(&Action::isEqual), 14);
        QCOMPARE(place(&Action::setTagString), 15);
        QCOMPARE(place(&Action::containText), 16);
    }
#endif

    void theBaseHoldsTheTriggerAlone()
    {
        PlainAction plain;
        QCOMPARE(plain.triggetType(), TriggerType::None);
        plain.setTriggerType(TriggerType(8));
        QCOMPARE(static_cast<int>(plain.triggetType()), 8);
        const PlainAction copy(plain);
        QCOMPARE(PlainAction(copy).triggetType(), TriggerType(8));
        PlainAction assigned;
        assigned = plain;
        QCOMPARE(assigned.triggetType(), TriggerType(8));
    }

    void theBasesOptionalOperationsDoNothing()
    {
        PlainAction plain;
        plain.replacePointName(nullptr, {{QStringLiteral("A"), QStringLiteral("B")}});
        plain.setTagString(QStringLiteral("A"));
        QVERIFY(!plain.replaceText(QString(), QStringLiteral("B")));
        QVERIFY(!plain.containText(QString()));
        QCOMPARE(plain.triggetType(), TriggerType::None);
    }

    void triggersHaveNames_data()
    {
        QTest::addColumn<int>("trigger");
        QTest::addColumn<QString>("name");
        const std::pair<int, const char*> rows[] = {
            {0, "none"},
            {1, "Mouse Release"},
            {2, "Mouse Double Click"},
            {3, "Mouse Hover"},
            {4, "Mouse Leave"},
            {5, "Key Press"},
            {6, "Canvas Load"},
            {7, "Canvas Unload"},
            {8, "Mouse Press"},
            {9, ""},
            {10, "Mouse Right Button Release"},
            {11, ""},
            {12, ""},
            {13, "On Object Loading"},
            {14, ""},
            {-1, ""},
            {INT_MAX, ""},
            {INT_MIN, ""},
        };
        for (const auto& [trigger, name] : rows)
            QTest::addRow("trigger %d", trigger) << trigger << QString::fromLatin1(name);
    }
    void triggersHaveNames()
    {
        QFETCH(int, trigger);
        QFETCH(QString, name);
        QCOMPARE(action({}, trigger).triggerName(), name);
        const MarkingTranslator translator;
        QCOMPARE(action({}, trigger).triggerName(),
                 name.isEmpty() ? QString() : QStringLiteral("ScadaEventActionInterface::") + name);
    }

    void itIsAScriptAction()
    {
        ScadaScriptAction script;
        QCOMPARE(script.type(), 1001);
        QCOMPARE(script.name(), QStringLiteral("Script Action"));
        QCOMPARE(script.triggetType(), TriggerType::None);
        QVERIFY(script.script().isEmpty());
        QVERIFY(loadedScript(script).isEmpty());
        const MarkingTranslator translator;
        QCOMPARE(script.name(), QStringLiteral("ScadaScriptAction::Script Action"));
    }

    void theStateTellsWhetherThereIsAScript()
    {
        ScadaScriptAction script;
        QCOMPARE(script.state(), State::Empty);
        script.setScript(QStringLiteral(" "));
        QCOMPARE(script.state(), State::Filled);
        script.setScript(QString());
        QCOMPARE(script.state(), State::Empty);
        script.setScript(QStringLiteral("x"));
        QVERIFY(script.replaceText(QStringLiteral("x"), QString()));
        QCOMPARE(script.state(), State::Empty); // the script in force counts
    }

    void aCopyTakesTheScriptInForceForTheLoadedOne()
    {
        ScadaScriptAction original = action(QStringLiteral("before"), 5);
        QVERIFY(original.replaceText(QStringLiteral("before"), QStringLiteral("after")));
        ScadaScriptAction copy(original);
        QCOMPARE(copy.triggetType(), TriggerType(5));
        QCOMPARE(copy.script(), QStringLiteral("after"));
        QCOMPARE(loadedScript(copy), QStringLiteral("after"));
        QCOMPARE(loadedScript(original), QStringLiteral("before"));
    }

    void assignmentCopiesBothScripts()
    {
        ScadaScriptAction original = action(QStringLiteral("before"), 5);
        QVERIFY(original.replaceText(QStringLiteral("before"), QStringLiteral("after")));
        ScadaScriptAction assigned = action(QStringLiteral("old"), 1);
        assigned = original;
        QCOMPARE(assigned.triggetType(), TriggerType(5));
        QCOMPARE(assigned.script(), QStringLiteral("after"));
        QCOMPARE(loadedScript(assigned), QStringLiteral("before"));
    }

    void assigningToItselfDoesNothing()
    {
        ScadaScriptAction script = action(QStringLiteral("before"), 5);
        QVERIFY(script.replaceText(QStringLiteral("before"), QStringLiteral("after")));
        const ScadaScriptAction& itself = script;
        script = itself;
        QCOMPARE(script.triggetType(), TriggerType(5));
        QCOMPARE(script.script(), QStringLiteral("after"));
        QCOMPARE(loadedScript(script), QStringLiteral("before"));
    }

    void equalityIsThatOfTheScriptsInForce()
    {
        ScadaScriptAction script = action(QStringLiteral("x"), 1);
        QVERIFY(script.isEqual(action(QStringLiteral("x"), 8)));
        QVERIFY(!script.isEqual(action(QStringLiteral("X"), 1)));
        QVERIFY(ScadaScriptAction().isEqual(action(QStringLiteral(""), 8))); // null and empty are one
        ScadaScriptAction changed = action(QStringLiteral("y"), 1);
        QVERIFY(changed.replaceText(QStringLiteral("y"), QStringLiteral("x")));
        QVERIFY(script.isEqual(changed));
        QVERIFY(!script.isEqual(PlainAction()));
    }

    void textIsSearchedInTheScriptInForce()
    {
        ScadaScriptAction script = action(QStringLiteral("set('PUMP12', 1)"));
        QVERIFY(script.containText(QStringLiteral("PUMP1")));
        QVERIFY(!script.containText(QStringLiteral("pump12")));
        QVERIFY(script.containText(QString()));
        QVERIFY(script.replaceText(QStringLiteral("PUMP"), QStringLiteral("FAN")));
        QVERIFY(!script.containText(QStringLiteral("PUMP")));
        QVERIFY(script.containText(QStringLiteral("FAN12")));
    }

    void replacingTextChangesEveryOccurrenceOfTheScriptInForce()
    {
        ScadaScriptAction script = action(QStringLiteral("A1 a1 A12 'A1'"));
        QVERIFY(!script.replaceText(QStringLiteral("B"), QStringLiteral("C")));
        QCOMPARE(script.script(), QStringLiteral("A1 a1 A12 'A1'"));
        QVERIFY(script.replaceText(QStringLiteral("A1"), QStringLiteral("B")));
        QCOMPARE(script.script(), QStringLiteral("B a1 B2 'B'"));
        QCOMPARE(loadedScript(script), QStringLiteral("A1 a1 A12 'A1'"));
    }

    void replacingOddTexts_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("replaced");
        const char* const rows[][5] = {
            {"a text by itself counts as replaced", "A1 A1", "A1", "A1", "A1 A1"},
            {"an empty text stands around every letter", "AB", "", "x", "xAxBx"},
            {"an empty text stands in an empty script, once", "", "", "x", "x"},
            {"nothing by nothing", "AB", "", "", "AB"},
        };
        const auto text = [](const char* latin) { return QString::fromLatin1(latin); };
        for (const auto& row : rows)
            QTest::newRow(row[0]) << text(row[1]) << text(row[2]) << text(row[3]) << text(row[4]);
    }
    void replacingOddTexts()
    {
        QFETCH(QString, script);
        QFETCH(QString, before);
        QFETCH(QString, after);
        ScadaScriptAction changed = action(script);
        QVERIFY(changed.replaceText(before, after));
        QTEST(changed.script(), "replaced");
        QCOMPARE(loadedScript(changed), script);
    }

    void replacingTwiceWorksOnWhatTheFirstLeft()
    {
        ScadaScriptAction grown = action(QStringLiteral("A"));
        QVERIFY(grown.replaceText(QStringLiteral("A"), QStringLiteral("AA")));
        QVERIFY(grown.replaceText(QStringLiteral("A"), QStringLiteral("AA")));
        QCOMPARE(grown.script(), QStringLiteral("AAAA"));
        QVERIFY(grown.replaceText(QStringLiteral("AA"), QStringLiteral("B")));
        QVERIFY(!grown.replaceText(QStringLiteral("AA"), QStringLiteral("B")));
        QCOMPARE(grown.script(), QStringLiteral("BB"));
        QCOMPARE(loadedScript(grown), QStringLiteral("A"));
    }

    void aScriptActionIsBoundToNoTag()
    {
        ScadaScriptAction script = action(QStringLiteral("before"), 5);
        QVERIFY(script.replaceText(QStringLiteral("before"), QStringLiteral("after")));
        script.setTagString(QStringLiteral("@R::rtu5:Value"));
        QCOMPARE(script.triggetType(), TriggerType(5));
        QCOMPARE(script.script(), QStringLiteral("after"));
        QCOMPARE(loadedScript(script), QStringLiteral("before"));
    }

    void renamingStartsFromTheLoadedScript_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<Renames>("renames");
        QTest::addColumn<QString>("renamed");
        const auto text = [](const char* latin) { return QString::fromLatin1(latin); };
        QTest::newRow("also inside longer names")
            << text("A1 + A12") << Renames{{text("A1"), text("A10")}} << text("A10 + A102");
        QTest::newRow("each pair works on what the pairs before left")
            << text("A B") << Renames{{text("A"), text("B")}, {text("B"), text("C")}} << text("C C");
        QTest::newRow("in the list's order")
            << text("A B") << Renames{{text("B"), text("C")}, {text("A"), text("B")}} << text("B C");
        QTest::newRow("case counts") << text("pump PUMP") << Renames{{text("PUMP"), text("FAN")}} << text("pump FAN");
        QTest::newRow("a name that does not occur") << text("A") << Renames{{text("X"), text("Y")}} << text("A");
        QTest::newRow("an empty name stands around every letter")
            << text("AB") << Renames{{QString(), text("x")}} << text("xAxBx");
        QTest::newRow("no pairs") << text("A") << Renames{} << text("A");
    }
    void renamingStartsFromTheLoadedScript()
    {
        QFETCH(QString, script);
        QFETCH(Renames, renames);
        ScadaScriptAction renamed = action(script, 3);
        renamed.replaceText(script, QStringLiteral("something else"));
        renamed.replacePointName(nullptr, renames);
        QTEST(renamed.script(), "renamed");
        renamed.replacePointName(nullptr, renames);
        QTEST(renamed.script(), "renamed");
        QCOMPARE(renamed.triggetType(), TriggerType(3));
        QCOMPARE(loadedScript(renamed), script);
    }

    void aRunHandsOverCanvasShapeScriptAndTrigger()
    {
        Services services;
        ScadaScriptAction script = action(QStringLiteral("old"), 5);
        QVERIFY(script.replaceText(QStringLiteral("old"), QStringLiteral("go()"))); // the script in force is run
        script.runAction(&services.core, &services.shape, &services.page);
        QCOMPARE(services.scripts.calls, (QList<Call>{{Operation::RunAction, &services.page, &services.shape,
                                                       QStringLiteral("go()"), TriggerType(5), nullptr},
                                                      {Operation::LastError}}));
        QCOMPARE(services.page.namesAsked, 0);
    }

    void anEmptyScriptIsRunToo()
    {
        Services services;
        ScadaScriptAction().runAction(&services.core, nullptr, &services.page);
        QCOMPARE(services.scripts.calls, (QList<Call>{{Operation::RunAction, &services.page}, {Operation::LastError}}));
    }

    void withoutACanvasTheOneInFrontIsTaken()
    {
        Services services;
        action(QStringLiteral("x"), 6).runAction(&services.core, nullptr, nullptr);
        QCOMPARE(services.scripts.calls,
                 (QList<Call>{{Operation::RunAction, &services.front, nullptr, QStringLiteral("x"), TriggerType(6)},
                              {Operation::LastError}}));
    }

    void withoutAnyCanvasNothingRuns()
    {
        Services services;
        services.manager.inFront = nullptr;
        action(QStringLiteral("x")).runAction(&services.core, &services.shape, nullptr);
        services.core.manager = nullptr;
        action(QStringLiteral("x")).runAction(&services.core, &services.shape, nullptr);
        QVERIFY(services.scripts.calls.isEmpty());
    }

    void withoutAScriptInterfaceNothingRuns()
    {
        Services services;
        services.core.scripts = nullptr;
        action(QStringLiteral("x")).runAction(&services.core, &services.shape, &services.page);
        action(QStringLiteral("x")).runAction(nullptr, &services.shape, &services.page);
        QVERIFY(services.scripts.calls.isEmpty());
        QCOMPARE(services.page.namesAsked, 0);
    }

    void aFailingScriptIsIgnored()
    {
        Services services;
        services.scripts.error = QStringLiteral("NameError");
        const int windows = QApplication::topLevelWidgets().size();
        loggedMessages = 0;
        const QtMessageHandler before = qInstallMessageHandler(countMessage);
        action(QStringLiteral("x")).runAction(&services.core, nullptr, &services.page);
        qInstallMessageHandler(before);
        QCOMPARE(services.scripts.calls.size(), 2);
        QCOMPARE(services.page.namesAsked, 1); // for the text that is dropped
        QCOMPARE(QApplication::topLevelWidgets().size(), windows);
        QCOMPARE(loggedMessages, 0);
    }

    void aScriptMayDestroyItsAction()
    {
        Services services;
        auto script = std::make_unique<ScadaScriptAction>(action(QStringLiteral("remove()"), 1));
        services.scripts.whileRunning = [&script] { script.reset(); };
        services.scripts.error = QStringLiteral("late");
        script->runAction(&services.core, nullptr, &services.page);
        QVERIFY(!script);
        QCOMPARE(services.scripts.calls.first().script, QStringLiteral("remove()"));
    }

    void aScriptMayChangeItsAction()
    {
        Services services;
        ScadaScriptAction script = action(QStringLiteral("first"));
        services.scripts.whileRunning = [&script] { script.setScript(QStringLiteral("second")); };
        script.runAction(&services.core, nullptr, &services.page);
        QCOMPARE(services.scripts.calls.first().script, QStringLiteral("first"));
        QCOMPARE(script.script(), QStringLiteral("second"));
    }
};

QTEST_MAIN(tst_ScadaScriptAction)
#include "tst_scadascriptaction.moc"
