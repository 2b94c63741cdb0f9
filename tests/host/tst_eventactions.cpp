#include "host/canvas/eventactions.h"
#include "host/shapes/label.h"

#include <QtTest>

namespace {

using Korvane::TriggerType;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

ScadaScriptAction scriptOf(TriggerType trigger, const QString& script)
{
    ScadaScriptAction action;
    action.setTriggerType(trigger);
    action.setScript(script);
    return action;
}

EventActions::Entry entryOf(TriggerType trigger, const QString& script, const QByteArray& unknown = {})
{
    return {std::make_unique<ScadaScriptAction>(scriptOf(trigger, script)), unknown};
}

EventActions::Entry unloaded(const QByteArray& stored)
{
    return {nullptr, stored};
}

/// An action of another kind than scripts.
class OtherAction : public ScadaEventActionInterface
{
public:
    int type() const override { return 7; }
    void runAction(KorvaneCoreInterface*, TesselInterface*, KVCanvasInterface*) override {}
    State state() override { return State::Filled; }
    QString name() override { return QStringLiteral("Other"); }
    bool isEqual(const ScadaEventActionInterface& other) override { return &other == this; }
};

/// Triggers with their scripts: "8: go | 13: load".
QString listed(const QList<ScadaScriptAction>& scripts)
{
    QStringList texts;
    for (ScadaScriptAction script : scripts)
        texts.append(QStringLiteral("%1: %2").arg(static_cast<int>(script.triggetType())).arg(script.script()));
    return texts.join(QStringLiteral(" | "));
}

/// Likewise as the entries stand, each with what is unknown of it; "-" stands for what is no script.
QString listed(const std::vector<EventActions::Entry>& entries)
{
    QStringList texts;
    for (const EventActions::Entry& entry : entries) {
        auto* script = dynamic_cast<ScadaScriptAction*>(entry.action.get());
        const QString shown =
            script ? QStringLiteral("%1: %2").arg(static_cast<int>(script->triggetType())).arg(script->script())
                   : text("-");
        texts.append(entry.unknown.isEmpty() ? shown : shown + QLatin1Char(' ') + QString::fromUtf8(entry.unknown));
    }
    return texts.join(QStringLiteral(" | "));
}

} // namespace

class tst_EventActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void atFirstThereAreNone()
    {
        const EventActions events;
        QVERIFY(events.isEmpty());
        QVERIFY(events.of(nullptr).empty());
        QVERIFY(events.of(&m_shape).empty());
        QVERIFY(events.scripts(nullptr).isEmpty());
        QVERIFY(events.isEmpty()); // asking makes none
    }

    void eachObjectHasItsOwnInTheirOrder()
    {
        EventActions events;
        events.add(&m_shape, entryOf(TriggerType::MousePress, text("second in number")));
        events.add(&m_shape, entryOf(TriggerType::MouseRelease, text("first in number")));
        events.add(nullptr, entryOf(TriggerType::CanvasLoad, text("page")));
        QVERIFY(!events.isEmpty());
        QCOMPARE(listed(events.of(&m_shape)), text("8: second in number | 1: first in number"));
        QCOMPARE(listed(events.of(nullptr)), text("6: page"));
        QVERIFY(events.of(&m_other).empty());
    }

    void whatGoesTakesItsActionsAlong()
    {
        EventActions events;
        events.add(&m_shape, entryOf(TriggerType::MousePress, text("go")));
        events.add(nullptr, entryOf(TriggerType::CanvasLoad, text("page")));
        events.remove(&m_other);
        events.remove(&m_shape);
        QVERIFY(events.of(&m_shape).empty());
        QCOMPARE(listed(events.of(nullptr)), text("6: page"));
        events.remove(nullptr);
        QVERIFY(events.isEmpty());
    }

    void scriptsOfATriggerAreJoined_data()
    {
        QTest::addColumn<QStringList>("stored"); // of one trigger
        QTest::addColumn<QString>("joined");
        QTest::newRow("one stays as it is") << QStringList(text("a")) << text("a");
        QTest::newRow("one with a line feed at its end too") << QStringList(text("a\n")) << text("a\n");
        QTest::newRow("a line feed is put between") << QStringList({text("a"), text("b")}) << text("a\nb");
        QTest::newRow("but no second one") << QStringList({text("a\n"), text("b\n")}) << text("a\nb\n");
        QTest::newRow("an empty one adds nothing") << QStringList({text("a"), QString(), text("b")}) << text("a\nb");
        QTest::newRow("empty ones in front neither") << QStringList({QString(), text("b")}) << text("b");
        QTest::newRow("three") << QStringList({text("a"), text("b\n"), text("c")}) << text("a\nb\nc");
        QTest::newRow("an empty line of its own is one") << QStringList({text("a\n"), text("\n")}) << text("a\n\n");
    }
    void scriptsOfATriggerAreJoined()
    {
        QFETCH(QStringList, stored);
        QFETCH(QString, joined);
        EventActions events;
        for (const QString& script : stored) {
            events.add(&m_shape, entryOf(TriggerType::MousePress, script));
            events.add(&m_shape, entryOf(TriggerType::KeyPress, text("between")));
        }
        QList<ScadaScriptAction> scripts = events.scripts(&m_shape);
        QCOMPARE(scripts.size(), 2);
        QVERIFY(scripts[1].triggetType() == TriggerType::MousePress);
        QCOMPARE(scripts[1].script(), joined);
    }

    void scriptsComeByTheirTriggersNumbers()
    {
        EventActions events;
        for (const int trigger : {13, 8, 10, -5, 1, 99})
            events.add(nullptr, entryOf(static_cast<TriggerType>(trigger), QString::number(trigger)));
        QCOMPARE(listed(events.scripts(nullptr)), text("-5: -5 | 1: 1 | 8: 8 | 10: 10 | 13: 13 | 99: 99"));
    }

    void onlyScriptsAreScripts()
    {
        EventActions events;
        events.add(&m_shape, unloaded("{\"type\":99}"));
        events.add(&m_shape, {std::make_unique<OtherAction>()});
        QVERIFY(events.scripts(&m_shape).isEmpty());
        events.add(&m_shape, entryOf(TriggerType::MousePress, text("go")));
        QCOMPARE(listed(events.scripts(&m_shape)), text("8: go"));
    }

    void anEmptyScriptIsNone()
    {
        EventActions events;
        events.add(&m_shape, entryOf(TriggerType::MousePress, QString()));
        QVERIFY(events.scripts(&m_shape).isEmpty());
        QCOMPARE(events.of(&m_shape).size(), std::size_t(1)); // the file's goes on standing there
    }

    void scriptsAreReplacedAsAWhole()
    {
        EventActions events;
        events.add(&m_shape, entryOf(TriggerType::MousePress, text("old press")));
        events.add(&m_shape, entryOf(TriggerType::KeyPress, text("old key")));
        events.add(&m_other, entryOf(TriggerType::KeyPress, text("another's")));
        events.setScripts(&m_shape, {scriptOf(TriggerType::MousePress, text("press")),
                                     scriptOf(TriggerType::MouseHover, QString()),
                                     scriptOf(TriggerType::MouseLeave, text("leave"))});
        QCOMPARE(listed(events.of(&m_shape)), text("8: press | 4: leave"));
        QCOMPARE(listed(events.of(&m_other)), text("5: another's"));
        events.setScripts(&m_shape, {});
        QVERIFY(events.of(&m_shape).empty());
        events.setScripts(&m_other, {scriptOf(TriggerType::KeyPress, QString())});
        QVERIFY(events.isEmpty());
    }

    void scriptsOfAnObjectWithoutOnesAreAdded()
    {
        EventActions events;
        events.setScripts(nullptr, {scriptOf(TriggerType::CanvasLoad, text("load"))});
        QCOMPARE(listed(events.of(nullptr)), text("6: load"));
        events.setScripts(&m_shape, {});
        QVERIFY(events.of(&m_shape).empty());
    }

    void otherActionsStay()
    {
        EventActions events;
        auto other = std::make_unique<OtherAction>();
        const OtherAction* const kept = other.get();
        events.add(&m_shape, entryOf(TriggerType::MousePress, text("old")));
        events.add(&m_shape, unloaded("{\"type\":99}"));
        events.add(&m_shape, {std::move(other), "{\"by\":\"hand\"}"});
        events.setScripts(&m_shape, {scriptOf(TriggerType::MousePress, text("new"))});
        QCOMPARE(listed(events.of(&m_shape)), text("8: new | - {\"type\":99} | - {\"by\":\"hand\"}"));
        QCOMPARE(events.of(&m_shape)[2].action.get(), kept);
        events.setScripts(&m_shape, {});
        QCOMPARE(listed(events.of(&m_shape)), text("- {\"type\":99} | - {\"by\":\"hand\"}"));
    }

    void unknownMembersGoWithTheirTrigger()
    {
        EventActions events;
        events.add(&m_shape, entryOf(TriggerType::MousePress, text("press"), "{\"by\":1}"));
        events.add(&m_shape, entryOf(TriggerType::KeyPress, text("key")));
        events.add(&m_shape, entryOf(TriggerType::MouseHover, text("hover"), "{\"by\":3}"));
        events.setScripts(&m_shape, {scriptOf(TriggerType::KeyPress, text("other key")),
                                     scriptOf(TriggerType::MousePress, text("other press")),
                                     scriptOf(TriggerType::MouseLeave, text("leave"))});
        QCOMPARE(listed(events.of(&m_shape)), text("8: other press {\"by\":1} | 5: other key | 4: leave"));
    }

    void whatIsSetReadsBackTheSame()
    {
        EventActions events;
        const QList<ScadaScriptAction> scripts = {scriptOf(TriggerType::MouseRelease, text("a\n\tb\n")),
                                                  scriptOf(TriggerType::KeyPress, text("\n"))};
        events.setScripts(&m_shape, scripts);
        QCOMPARE(listed(events.scripts(&m_shape)), listed(scripts));
        events.setScripts(&m_shape, events.scripts(&m_shape));
        QCOMPARE(listed(events.scripts(&m_shape)), listed(scripts));
    }

    void scriptsAreWhatCanBeMade()
    {
        const auto made = EventActions::make(1001);
        QVERIFY(dynamic_cast<ScadaScriptAction*>(made.get()));
        QVERIFY(made->triggetType() == TriggerType::None);
        for (const int type : {0, 1, 1000, 1002, -1001})
            QVERIFY2(!EventActions::make(type), qPrintable(QString::number(type)));
    }

private:
    const Label m_shape{};
    const Label m_other{};
};

QTEST_MAIN(tst_EventActions)
#include "tst_eventactions.moc"
