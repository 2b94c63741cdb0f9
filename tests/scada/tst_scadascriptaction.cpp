#include "platform/data/scadaeventactionstream.h"
#include "platform/utility/pythonstringconverter.h"
#include "scada/actions/scadascriptaction.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/storedbytes.h"
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

/// An action with the base's own bodies wherever there are any.
struct PlainAction : ScadaEventActionInterface
{
    int type() const override { return 7; }
    void runAction(KorvaneCoreInterface*, TesselInterface*, KVCanvasInterface*) override {}
    State state() override { return State::Filled; }
    QString name() override { return QStringLiteral("Plain"); }
    bool isEqual(const ScadaEventActionInterface& other) override { return other.type() == type(); }
};

ScadaScriptAction action(const QString& script, int trigger = 0)
{
    ScadaScriptAction made;
    made.setScript(script);
    made.setTriggerType(TriggerType(trigger));
    return made;
}

QString loadedScript(ScadaScriptAction& of)
{
    of.replacePointName(nullptr, {});
    return of.script();
}

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
