// The event actions of pages as page files hold them.

#include "host/actions/canvasactionmanagerfactory.h"
#include "host/canvas/pagereader.h"
#include "host/canvas/pagewriter.h"
#include "host/shapes/placeholder.h"
#include "platform/data/scadaeventactionstream.h"
#include "tests/support/testhub.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

using Korvane::TriggerType;

/// JSON written with single quotes, for the eye.
QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

class Pages
{
public:
    tl::expected<Page, QString> read(const QByteArray& stored)
    {
        return PageReader(m_managers).read(stored, QStringLiteral("page.pws"));
    }

private:
    TestHub m_hub;
    CanvasActionManagerFactory m_managers{&m_hub};
};

/// A page whose shape "r" has those events on the file's fifth line.
QByteArray pageWith(const QByteArray& events, const QByteArray& shapeClass = "Rectangle")
{
    return json("{'format':'korvane-page','version':1,\n"
                "'layers':[{'name':'a','shapes':[\n"
                "{'class':'") +
           shapeClass + json("','name':'r','place':[0,0,9,9],'properties':{},\n'events':\n") + events + "}]}]}";
}

/// The page's own events, on the file's second line.
QByteArray pageOf(const QByteArray& events)
{
    return json("{'format':'korvane-page','version':1,'events':\n") + events + json(",'layers':[]}");
}

QByteArray scriptEvent(const QByteArray& script)
{
    return json("[{'trigger':8,'type':1001,'script':") + script + "}]";
}

QJsonObject parsed(const QByteArray& stored)
{
    return QJsonDocument::fromJson(stored).object();
}

QJsonValue eventsOf(const QByteArray& stored)
{
    const QJsonObject layer = parsed(stored)[QStringLiteral("layers")].toArray()[0].toObject();
    return layer[QStringLiteral("shapes")].toArray()[0].toObject()[QStringLiteral("events")];
}

QJsonValue valueOf(const QByteArray& stored)
{
    return QJsonDocument::fromJson('[' + stored + ']').array()[0];
}

const Shape* shapeOf(const Page& page)
{
    return page.canvas->findShape(QStringLiteral("r"));
}

/// The scripts of \p shape in the order in which they stand: "8: go | 13: load"; "-" stands for what could not be read.
QString listed(const Page& page, const Shape* shape)
{
    QStringList texts;
    for (const EventActions::Entry& entry : page.events.of(shape)) {
        auto* script = dynamic_cast<ScadaScriptAction*>(entry.action.get());
        texts.append(script
                         ? QStringLiteral("%1: %2").arg(static_cast<int>(script->triggetType())).arg(script->script())
                         : text("-"));
    }
    return texts.join(QStringLiteral(" | "));
}

QString onlyScript(const Page& page)
{
    const auto& entries = page.events.of(shapeOf(page));
    auto* script = entries.size() == 1 ? dynamic_cast<ScadaScriptAction*>(entries[0].action.get()) : nullptr;
    return script ? script->script() : text("(no script)");
}

QByteArray dataOf(const QString& script)
{
    ScadaScriptAction action;
    action.setScript(script);
    ScadaEventActionStream stream;
    action.toStream(stream);
    return stream.data();
}

const QByteArray wholePage = json("{\n"
                                  " 'format': 'korvane-page',\n"
                                  " 'version': 1,\n"
                                  " 'size': [800, 600],\n"
                                  " 'background': '#ffffff',\n"
                                  " 'events': [{\n"
                                  "   'trigger': 6,\n"
                                  "   'type': 1001,\n"
                                  "   'script': [\n"
                                  "    'def onLoad():',\n"
                                  "    '\\tprint(\\\"loaded\\\")',\n"
                                  "    ''\n"
                                  "   ],\n"
                                  "   'author': {\n"
                                  "    'name': 'someone',\n"
                                  "    'since': 1.5\n"
                                  "   }\n"
                                  "  }, {\n"
                                  "   'trigger': 6,\n"
                                  "   'type': 1001,\n"
                                  "   'script': [\n"
                                  "    'pass'\n"
                                  "   ]\n"
                                  "  }],\n"
                                  " 'layers': [{\n"
                                  "   'name': 'process',\n"
                                  "   'visible': true,\n"
                                  "   'marks': true,\n"
                                  "   'shapes': [{\n"
                                  "     'class': 'ReadOut',\n"
                                  "     'name': 'r',\n"
                                  "     'place': [10, 20, 90, 24],\n"
                                  "     'properties': {},\n"
                                  "     'actions': [{\n"
                                  "       'type': 2,\n"
                                  "       'version': 911,\n"
                                  "       'settings': {}\n"
                                  "      }],\n"
                                  "     'events': [{\n"
                                  "       'trigger': 8,\n"
                                  "       'type': 1001,\n"
                                  "       'script': [\n"
                                  "        'shape[\\\"ToolTip\\\"] = \\\"\xc3\xa4\xe2\x82\xac\xf0\x9f\x92\xa7\\\"'\n"
                                  "       ]\n"
                                  "      }]\n"
                                  "    }]\n"
                                  "  }]\n"
                                  "}\n");

} // namespace

class tst_PageEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eventsAreReadAsTheyStand()
    {
        Pages pages;
        const auto page = pages.read(wholePage);
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList());
        QCOMPARE(listed(*page, nullptr), text("6: def onLoad():\n\tprint(\"loaded\")\n | 6: pass"));
        QCOMPARE(listed(*page, shapeOf(*page)),
                 text("8: shape[\"ToolTip\"] = \"\xc3\xa4\xe2\x82\xac\xf0\x9f\x92\xa7\""));
        QCOMPARE(page->actions->actionsOf(shapeOf(*page)).size(), 1); // events and bindings don't mix
    }

    void whatIsReadIsWrittenByteForByte()
    {
        Pages pages;
        const auto page = pages.read(wholePage);
        QVERIFY(page);
        QCOMPARE(PageWriter::write(*page), wholePage);
    }

    void aPageWithoutEventsHasNoMemberForThem()
    {
        Pages pages;
        const auto page = pages.read(pageWith("[]"));
        QVERIFY(page);
        QVERIFY(page->events.isEmpty());
        QVERIFY(!PageWriter::write(*page).contains("\"events\""));
    }

    void scriptsAreReadInEveryForm_data()
    {
        QTest::addColumn<QByteArray>("stored"); // value of "script"
        QTest::addColumn<QString>("script");
        QTest::newRow("lines") << json("['a', '\\tb']") << text("a\n\tb");
        QTest::newRow("an empty line at the end is a line feed there") << json("['a', '']") << text("a\n");
        QTest::newRow("no lines are no text") << json("[]") << QString();
        QTest::newRow("one empty line neither") << json("['']") << QString();
        QTest::newRow("two empty lines are a line feed") << json("['', '']") << text("\n");
        QTest::newRow("one text") << json("'a\\n\\tb\\n'") << text("a\n\tb\n");
        QTest::newRow("an empty text") << json("''") << QString();
        QTest::newRow("line ends of another kind stay") << json("['a\\r', 'b']") << text("a\r\nb");
        QTest::newRow("also in one text") << json("'a\\r\\nb'") << text("a\r\nb");
        QTest::newRow("a line with a line feed in it") << json("['a\\nb', 'c']") << text("a\nb\nc");
        QTest::newRow("a NUL") << json("['a\\u0000b']") << QString(QLatin1String("a\0b", 3));
        QTest::newRow("other separators of lines") << json("['a\\u2028b\\u2029c']")
                                                   << text("a\xe2\x80\xa8"
                                                           "b\xe2\x80\xa9"
                                                           "c");
        QTest::newRow("beyond 16 bits") << json("['\\ud83d\\udca7']") << text("\xf0\x9f\x92\xa7");
        QTest::newRow("quotes and backslashes") << json("['\\\"\\\\n\\\"']") << text("\"\\n\"");
    }
    void scriptsAreReadInEveryForm()
    {
        QFETCH(QByteArray, stored);
        QFETCH(QString, script);
        Pages pages;
        const auto page = pages.read(pageWith(scriptEvent(stored)));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList());
        QCOMPARE(onlyScript(*page), script);
        const QByteArray saved = PageWriter::write(*page);
        QVERIFY(eventsOf(saved).toArray()[0].toObject()[QStringLiteral("script")].isArray());
        const auto again = pages.read(saved);
        QVERIFY(again);
        QCOMPARE(onlyScript(*again), script);
        QCOMPARE(PageWriter::write(*again), saved);
    }

    void everyLineHasALineOfTheFile()
    {
        QStringList lines;
        QByteArray stored;
        for (int line = 0; line < 10000; ++line) {
            lines.append(QStringLiteral("x%1 = %1").arg(line));
            stored += (line == 0 ? "[\"" : ",\"") + lines.last().toUtf8() + '"';
        }
        Pages pages;
        const auto page = pages.read(pageWith(scriptEvent(stored + ']')));
        QVERIFY(page);
        QCOMPARE(onlyScript(*page), lines.join(QLatin1Char('\n')));
        const QByteArray saved = PageWriter::write(*page);
        for (const char* line :
             {"\n        \"x0 = 0\",\n", "\n        \"x4711 = 4711\",\n", "\n        \"x9999 = 9999\"\n"})
            QVERIFY2(saved.contains(line), line);
        QCOMPARE(PageWriter::write(*pages.read(saved)), saved);
    }

    void settingsInBase64AreReadToo_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<bool>("isText"); // written as lines from then on
        QTest::newRow("a script") << text("a\nb") << true;
        QTest::newRow("an empty one") << text("") << true;
        QTest::newRow("one that is null") << QString() << true;
        QTest::newRow("the first half of a pair") << QString(QChar(0xd83d)) << false;
        QTest::newRow("the second half of a pair") << text("x = '") + QChar(0xdca7) + QLatin1Char('\'') << false;
    }
    void settingsInBase64AreReadToo()
    {
        QFETCH(QString, script);
        QFETCH(bool, isText);
        Pages pages;
        const QByteArray data = dataOf(script).toBase64();
        const QByteArray stored = json("[{'trigger':8,'type':1001,'data':'") + data + json("','note':1}]");
        const auto page = pages.read(pageWith(stored));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList());
        QCOMPARE(onlyScript(*page), script);
        const QByteArray saved = PageWriter::write(*page);
        const QJsonObject event = eventsOf(saved).toArray()[0].toObject();
        QCOMPARE(event.contains(QStringLiteral("script")), isText);
        QCOMPARE(event[QStringLiteral("data")].toString().toLatin1(), isText ? QByteArray() : data);
        QCOMPARE(event[QStringLiteral("note")], QJsonValue(1));
        QCOMPARE(onlyScript(*pages.read(saved)), script);
    }

    void theTextWinsOverTheData()
    {
        Pages pages;
        const auto page = pages.read(pageWith(json("[{'trigger':8,'type':1001,'script':['text'],'data':'") +
                                              dataOf(text("data")).toBase64() + "\"}]"));
        QVERIFY(page);
        QCOMPARE(onlyScript(*page), text("text"));
    }

    void everyTriggerIsKept_data()
    {
        QTest::addColumn<int>("trigger");
        QTest::newRow("none") << 0;
        QTest::newRow("a press") << 8;
        QTest::newRow("a number between those there are") << 9;
        QTest::newRow("a number beyond") << 14;
        QTest::newRow("a negative one") << -1;
        QTest::newRow("the largest") << 2147483647;
        QTest::newRow("the smallest") << -2147483647 - 1;
    }
    void everyTriggerIsKept()
    {
        QFETCH(int, trigger);
        Pages pages;
        const QByteArray stored =
            json("[{'trigger':") + QByteArray::number(trigger) + json(",'type':1001,'script':['go']}]");
        const auto page = pages.read(pageWith(stored));
        QVERIFY(page);
        QCOMPARE(page->problems, QStringList());
        QCOMPARE(listed(*page, shapeOf(*page)), QStringLiteral("%1: go").arg(trigger));
        QCOMPARE(eventsOf(PageWriter::write(*page)), valueOf(stored));
    }

    void brokenOnesAreToldAndKept_data()
    {
        QTest::addColumn<QByteArray>("stored"); // one event
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* stored, const char* reason) {
            QTest::newRow(name) << json(stored) << text(reason) + text(": the event action does nothing");
        };
        row("no trigger", "{'type':1001,'script':['a']}", "\"trigger\" is no whole number");
        row("a trigger by name", "{'trigger':'press','type':1001,'script':['a']}", "\"trigger\" is no whole number");
        row("a trigger between two", "{'trigger':8.5,'type':1001,'script':['a']}", "\"trigger\" is no whole number");
        row("a trigger beyond 32 bits", "{'trigger':2147483648,'type':1001,'script':['a']}",
            "\"trigger\" is no whole number");
        row("no type", "{'trigger':8,'script':['a']}", "unknown type of event action");
        row("another type", "{'trigger':8,'type':1002,'script':['a'],'sound':'horn.wav'}",
            "unknown type of event action");
        row("a type by name", "{'trigger':8,'type':'script','script':['a']}", "unknown type of event action");
        row("neither script nor data", "{'trigger':8,'type':1001}", "has neither \"script\" nor \"data\"");
        row("a script that is a number", "{'trigger':8,'type':1001,'script':5}",
            "\"script\" is neither lines nor a text");
        row("a script that is nothing", "{'trigger':8,'type':1001,'script':null}",
            "\"script\" is neither lines nor a text");
        row("a script that is an object", "{'trigger':8,'type':1001,'script':{'lines':[]}}",
            "\"script\" is neither lines nor a text");
        row("a line that is a number", "{'trigger':8,'type':1001,'script':['a',5,'b']}",
            "\"script\" has a line that is no text");
        row("a line that is a list", "{'trigger':8,'type':1001,'script':[['a']]}",
            "\"script\" has a line that is no text");
        row("data that are a number", "{'trigger':8,'type':1001,'data':5}", "\"data\" is no base64");
        row("data that are no base64", "{'trigger':8,'type':1001,'data':'*!*'}", "\"data\" is no base64");
        row("data with a NUL behind them", "{'trigger':8,'type':1001,'data':'AAAAAA==\\u0000*'}",
            "\"data\" is no base64");
        row("data that are nothing", "{'trigger':8,'type':1001,'data':''}", "\"data\" is not what the action writes");
        row("data cut off", "{'trigger':8,'type':1001,'data':'AAAABABh'}", "\"data\" is not what the action writes");
        row("data that claim more than there is", "{'trigger':8,'type':1001,'data':'f////gBh'}",
            "\"data\" is not what the action writes");
        row("data with more behind them", "{'trigger':8,'type':1001,'data':'AAAAAgBhAGI='}",
            "\"data\" is not what the action writes");
        row("a number", "17", "\"trigger\" is no whole number");
        row("a text", "'go'", "\"trigger\" is no whole number");
        row("nothing", "null", "\"trigger\" is no whole number");
        row("a list", "[{'trigger':8,'type':1001,'script':['a']}]", "\"trigger\" is no whole number");
        row("an object without anything", "{}", "\"trigger\" is no whole number");
    }
    void brokenOnesAreToldAndKept()
    {
        QFETCH(QByteArray, stored);
        QFETCH(QString, reason);
        Pages pages;
        const QByteArray good = json("{'trigger':1,'type':1001,'script':['good']}");
        const QByteArray events = "[" + stored + ",\n" + good + "]";
        const auto page = pages.read(pageWith(events));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList(text("page.pws:5: shape \"r\": ") + reason));
        QCOMPARE(listed(*page, shapeOf(*page)), text("- | 1: good"));
        const QByteArray saved = PageWriter::write(*page);
        QCOMPARE(eventsOf(saved), valueOf(events));
        QCOMPARE(PageWriter::write(*pages.read(saved)), saved);

        const auto own = pages.read(pageOf(events));
        QVERIFY2(own, own ? "" : qPrintable(own.error()));
        QCOMPARE(own->problems, QStringList(text("page.pws:2: page: ") + reason));
        QCOMPARE(listed(*own, nullptr), text("- | 1: good"));
        QCOMPARE(parsed(PageWriter::write(*own))[QStringLiteral("events")], valueOf(events));
    }

    void theLineOfABrokenOneIsTold()
    {
        Pages pages;
        const auto page = pages.read(pageWith(json("[{'trigger':8,'type':1001,'script':['a']},\n\n{'trigger':8}]")));
        QVERIFY(page);
        QCOMPARE(page->problems,
                 QStringList(text("page.pws:7: shape \"r\": unknown type of event action: the event action "
                                  "does nothing")));
    }

    void eventsThatAreNoListAreToldAndKept_data()
    {
        QTest::addColumn<QByteArray>("events");
        QTest::newRow("a number") << QByteArray("5");
        QTest::newRow("nothing") << QByteArray("null");
        QTest::newRow("a text") << json("'go'");
        QTest::newRow("one event by itself") << json("{'trigger':8,'type':1001,'script':['a']}");
    }
    void eventsThatAreNoListAreToldAndKept()
    {
        QFETCH(QByteArray, events);
        Pages pages;
        const auto page = pages.read(pageWith(events));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList(text("page.pws:5: shape \"r\": \"events\" is no array: there are none")));
        QCOMPARE(listed(*page, shapeOf(*page)), QString());
        QVERIFY(page->events.scripts(shapeOf(*page)).isEmpty());
        QCOMPARE(eventsOf(PageWriter::write(*page)), valueOf(events)); // as it was: it must not come alive

        const auto own = pages.read(pageOf(events));
        QVERIFY(own);
        QCOMPARE(own->problems, QStringList(text("page.pws:2: page: \"events\" is no array: there are none")));
    }

    void unknownMembersAreKept()
    {
        Pages pages;
        const QByteArray stored = json("[{'by':'hand','trigger':8,'note':{'deep':[1,{'x':null}]},'type':1001,"
                                       "'script':['a'],'version':3}]");
        const auto page = pages.read(pageWith(stored));
        QVERIFY(page);
        QCOMPARE(page->problems, QStringList());
        QCOMPARE(eventsOf(PageWriter::write(*page)), valueOf(stored));
    }

    void whatIsSetIsWritten()
    {
        Pages pages;
        auto page = pages.read(pageWith(json("[{'trigger':8,'type':1001,'script':['a'],'by':'hand'},{'type':99}]")));
        QVERIFY(page);
        ScadaScriptAction press;
        press.setTriggerType(TriggerType::MousePress);
        press.setScript(text("b\n\tc\n"));
        page->events.setScripts(shapeOf(*page), {press});
        page->events.setScripts(nullptr, {press});
        const QByteArray saved = PageWriter::write(*page);
        QCOMPARE(eventsOf(saved),
                 valueOf(json("[{'trigger':8,'type':1001,'script':['b','\\tc',''],'by':'hand'},{'type':99}]")));
        QCOMPARE(parsed(saved)[QStringLiteral("events")],
                 valueOf(json("[{'trigger':8,'type':1001,'script':['b','\\tc','']}]")));
        const auto again = pages.read(saved);
        QCOMPARE(listed(*again, nullptr), text("8: b\n\tc\n"));
    }

    void aPlaceholderKeepsItsEvents()
    {
        Pages pages;
        const QByteArray stored = json("[{'trigger':8,'type':1001,'script':['a']},{'type':99}]");
        const auto page = pages.read(pageWith(stored, "Hologram"));
        QVERIFY(page);
        QCOMPARE(page->problems.size(), 1); // the class alone
        QVERIFY(dynamic_cast<const Placeholder*>(shapeOf(*page)));
        QVERIFY(page->events.isEmpty());
        QCOMPARE(eventsOf(PageWriter::write(*page)), valueOf(stored));
    }

    void halfAPairCantStandInAText()
    {
        Pages pages;
        const auto page = pages.read(pageWith(scriptEvent(json("['\\ud83d']"))));
        QVERIFY(!page);
        QVERIFY2(page.error().startsWith(text("page.pws: line 5: ")), qPrintable(page.error()));
    }

    void aPageCutAnywhereIsRefused()
    {
        Pages pages;
        for (int length = 0; length < wholePage.trimmed().size(); ++length)
            QVERIFY2(!pages.read(wholePage.left(length)), qPrintable(QString::number(length)));
    }

    void aPageWithAWrongByteIsRefusedOrReadAndKept()
    {
        Pages pages;
        int readable = 0;
        for (int place = 0; place < wholePage.size(); ++place) {
            QByteArray wrong = wholePage;
            wrong[place] = '5';
            const auto page = pages.read(wrong);
            if (!page)
                continue;
            ++readable;
            const QByteArray saved = PageWriter::write(*page);
            const auto again = pages.read(saved);
            QVERIFY2(again, qPrintable(QString::number(place)));
            QCOMPARE(PageWriter::write(*again), saved);
        }
        QVERIFY(readable > 100); // inside of texts
    }
};

QTEST_MAIN(tst_PageEvents)
#include "tst_pageevents.moc"
