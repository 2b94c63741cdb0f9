#include "host/actions/canvasactionmanagerfactory.h"
#include "host/actions/tagaction.h"
#include "host/canvas/pagereader.h"
#include "host/canvas/pagewriter.h"
#include "host/runtime/runtimedatabase.h"
#include "host/shapes/placeholder.h"
#include "scada/binding/objecttarget.h"
#include "tests/support/testhub.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// JSON written with single quotes, for the eye.
QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}

const QByteArray wholePage =
    json("{\n"
         " 'format': 'korvane-page', 'version': 1,\n"
         " 'title': 'Overview', 'size': [800, 600], 'background': '#ffffff',\n"
         " 'author': {'name': 'someone', 'since': 1.5},\n"
         " 'layers': [\n"
         "  {'name': 'process', 'visible': true, 'marks': false, 'note': 'kept', 'shapes': [\n"
         "   {'class': 'ReadOut', 'name': 'flow', 'place': [10, 20, 90, 24], 'group': 7,\n"
         "    'properties': {'Unit': 'l/min', 'Decimals': 2, 'Sparkle': true},\n"
         "    'actions': [\n"
         "     {'type': 2, 'version': 911, 'targets': [{'tag': 'P1:HighLimit'}], 'settings': {'Factor': 2.5, 'Shade': "
         "'dark'}, 'by': 'hand'},\n"
         "     {'type': 4, 'version': 911,\n"
         "      'rules': [{'when': [{'tag': 'P1', 'operator': '>', 'bound': '5', 'link': '&&'}, {'tag': 'P2', "
         "'operator': '<=', 'bound': '7'}],\n"
         "                 'set': {'FillColor': '#ff0000', 'Blink': true}}], 'settings': {}}\n"
         "    ]},\n"
         "   {'class': 'Rectangle', 'place': [0, 0, 50, 60], 'properties': {'Rotation': 30, 'FillColor': ''}}\n"
         "  ]}\n"
         " ]\n"
         "}\n");

class Pages
{
public:
    Pages()
    {
        for (int number = 1; number <= 2; ++number) {
            const auto added = database.add(
                {Korvane::ScadaObjectType::AnalogPoint, 200000 + number, QStringLiteral("P%1").arg(number)});
            Q_ASSERT(added);
        }
    }
    tl::expected<Page, QString> read(const QByteArray& text)
    {
        return PageReader(m_managers, &database).read(text, QStringLiteral("page.pws"));
    }
    tl::expected<Page, QString> readFile(const QString& name)
    {
        return PageReader(m_managers, &database).readFile(name);
    }

    RuntimeDatabase database;

private:
    TestHub m_hub;
    CanvasActionManagerFactory m_managers{&m_hub};
};

QJsonObject parsed(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).object();
}

QJsonArray shapesOf(const QByteArray& text)
{
    return parsed(text)[QStringLiteral("layers")].toArray()[0].toObject()[QStringLiteral("shapes")].toArray();
}

QByteArray pageWith(const QByteArray& shapes)
{
    return "{\"format\":\"korvane-page\",\"version\":1,\"layers\":[{\"name\":\"a\",\"shapes\":[\n" + shapes + "\n]}]}";
}

/// A page with the rectangle "b" and its operation, written with single quotes.
QByteArray pageWithOperation(const QByteArray& operation)
{
    return pageWith(json("{'class':'Rectangle','name':'b','place':[0,0,9,9],'operation':" + operation + "}"));
}

} // namespace

class tst_PageFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPageIsReadAsItStands()
    {
        Pages pages;
        const auto page = pages.read(wholePage);
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList{QStringLiteral(
                                     "page.pws:10: shape \"flow\": setting \"Shade\" is unknown or can't have its "
                                     "value: left at the default")});
        const Canvas& canvas = *page->canvas;
        QCOMPARE(canvas.canvasName(), QStringLiteral("page"));
        QCOMPARE(canvas.title(), QStringLiteral("Overview"));
        QCOMPARE(canvas.size(), QSizeF(800, 600));
        QVERIFY(!canvas.layers()[0]->areMarksShown());
        QCOMPARE(canvas.shapeNames(), QStringList{QStringLiteral("flow")});
        Shape& flow = *canvas.findShape(QStringLiteral("flow"));
        QCOMPARE(flow.place(), QRectF(10, 20, 90, 24));
        QCOMPARE(flow.namedProperty(QStringLiteral("Unit")), QVariant(QStringLiteral("l/min")));
        QCOMPARE(flow.namedProperty(QStringLiteral("Decimals")), QVariant(2));
        const auto actions = page->actions->actionsOf(&flow);
        QCOMPARE(actions.size(), 2);
        const auto& number = dynamic_cast<const TagAction&>(*actions[0]);
        QCOMPARE(number.tags(), QStringList{QStringLiteral("P1:HighLimit")});
        QCOMPARE(number.settings().value(QStringLiteral("Factor")), QVariant(2.5));
        const auto& colour = dynamic_cast<const TagAction&>(*actions[1]);
        QCOMPARE(colour.rules().size(), std::size_t(1));
        QCOMPARE(colour.rules()[0].text(), QStringLiteral("P1 > 5 && P2 <= 7"));
        QCOMPARE(colour.rules()[0].set.value(QStringLiteral("Blink")), QVariant(true));
    }

    void whatIsSavedReadsBackTheSame()
    {
        Pages pages;
        auto page = pages.read(wholePage);
        QVERIFY(page);
        const QByteArray saved = PageWriter::write(*page);
        auto again = pages.read(saved);
        QVERIFY2(again, again ? "" : qPrintable(again.error()));
        QCOMPARE(PageWriter::write(*again), saved);
        QVERIFY(!saved.contains("\"record\": \"\""));
        for (ScadaTagActionInterface* action : page->actions->actions()) {
            const int place = page->actions->actions().indexOf(action);
            QVERIFY(action->isEqual(*again->actions->actions().at(place)));
        }
    }

    void unknownMembersAreKept()
    {
        Pages pages;
        const QByteArray saved = PageWriter::write(*pages.read(wholePage));
        QCOMPARE(parsed(saved)[QStringLiteral("author")], parsed(wholePage)[QStringLiteral("author")]);
        const QJsonObject layer = parsed(saved)[QStringLiteral("layers")].toArray()[0].toObject();
        QCOMPARE(layer[QStringLiteral("note")], QJsonValue(QStringLiteral("kept")));
        const QJsonObject flow = shapesOf(saved)[0].toObject();
        QCOMPARE(flow[QStringLiteral("group")], QJsonValue(7));
        QCOMPARE(flow[QStringLiteral("properties")].toObject()[QStringLiteral("Sparkle")], QJsonValue(true));
        const QJsonObject action = flow[QStringLiteral("actions")].toArray()[0].toObject();
        QCOMPARE(action[QStringLiteral("by")], QJsonValue(QStringLiteral("hand")));
        QCOMPARE(action[QStringLiteral("settings")].toObject()[QStringLiteral("Shade")],
                 QJsonValue(QStringLiteral("dark")));
    }

    void shapesToWorkWithAreStored_data()
    {
        QTest::addColumn<QByteArray>("shape");
        QTest::newRow("a field") << json("{'class':'InputField','properties':{'Enabled':false,'FontSize':20}}");
        QTest::newRow("a choice whose entry comes before its entries")
            << json("{'class':'Choice','properties':{'Index':2,'Items':['on','off','\uc790\ub3d9']}}");
        QTest::newRow("a date") << json(
            "{'class':'DateField','properties':{'Date':'2024-02-29','Placeholder':'from'}}");
        QTest::newRow("a table whose row in view comes before its rows")
            << json("{'class':'Table','properties':{'FirstRow':700,'SelectedRow':3,'RowCount':1000,"
                    "'Columns':['A','B'],'Rows':['1\\t2','']}}");
    }
    void shapesToWorkWithAreStored()
    {
        QFETCH(QByteArray, shape);
        Pages pages;
        const auto page = pages.read(pageWith(shape));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        const QJsonObject saved = shapesOf(PageWriter::write(*page))[0].toObject();
        QCOMPARE(saved[QStringLiteral("class")], parsed(shape)[QStringLiteral("class")]);
        QCOMPARE(saved[QStringLiteral("properties")], parsed(shape)[QStringLiteral("properties")]);
    }

    void recordsStandBesideTheirTexts()
    {
        Pages pages;
        const QByteArray saved = PageWriter::write(*pages.read(wholePage));
        const QJsonObject action = shapesOf(saved)[0].toObject()[QStringLiteral("actions")].toArray()[0].toObject();
        const QJsonObject target = action[QStringLiteral("targets")].toArray()[0].toObject();
        const QByteArray record = QByteArray::fromBase64(target[QStringLiteral("record")].toString().toLatin1());
        QCOMPARE(record, ObjectTarget::fromTagString(QStringLiteral("P1:HighLimit")).makeByteStream());
        QCOMPARE(action[QStringLiteral("version")], QJsonValue(911));
    }

    void aRecordAloneWillDo()
    {
        Pages pages;
        const QByteArray record =
            ObjectTarget::fromTagString(QStringLiteral("P2:LowLimit")).makeByteStream().toBase64();
        const auto page = pages.read(pageWith(
            json("{'class':'ReadOut','place':[0,0,9,9],'actions':[{'type':2,'version':911,'targets':[{'record':'") +
            record + "\"}]}]}"));
        QVERIFY(page);
        QCOMPARE(page->problems, QStringList());
        const auto& action = dynamic_cast<const TagAction&>(*page->actions->actions().first());
        QCOMPARE(action.tags(), QStringList{QStringLiteral("P2:LowLimit")});
    }

    void theTextWinsOverTheRecord()
    {
        Pages pages;
        const QByteArray record = ObjectTarget::fromTagString(QStringLiteral("P2")).makeByteStream().toBase64();
        const auto page = pages.read(pageWith(json("{'class':'ReadOut','place':[0,0,9,9],'actions':[{'type':2,'version'"
                                                   ":911,'targets':[{'tag':'P1:PastMean','record':'") +
                                              record + "\"}]}]}"));
        QVERIFY(page);
        const auto& action = dynamic_cast<const TagAction&>(*page->actions->actions().first());
        QCOMPARE(action.tags(), QStringList{QStringLiteral("P1:PastMean")});
    }

    void openingAPageLeavesItsTagsWhole()
    {
        Pages pages;
        auto page = pages.read(wholePage);
        const QByteArray before = PageWriter::write(*page);
        page->actions->open(&pages.database);
        const QJsonArray actions =
            shapesOf(PageWriter::write(*page))[0].toObject()[QStringLiteral("actions")].toArray();
        QCOMPARE(actions, shapesOf(before)[0].toObject()[QStringLiteral("actions")].toArray());
    }

    void whatIsNoPageIsRefused_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        QTest::newRow("an empty file") << QByteArray() << QStringLiteral("page.pws: line 1: The document is empty.");
        QTest::newRow("cut off on its third line")
            << QByteArray("{\n\"format\": \"korvane-page\",\n\"version\"")
            << QStringLiteral("page.pws: line 3: Missing a colon after a name of object member.");
        QTest::newRow("another document")
            << QByteArray("[1, 2]") << QStringLiteral("page.pws: is no page: \"format\" is not \"korvane-page\"");
        QTest::newRow("a newer version") << QByteArray(json("{'format':'korvane-page','version':2}"))
                                         << QStringLiteral(
                                                "page.pws: is of version 2; this program reads up to version 1");
        QTest::newRow("no version") << QByteArray(json("{'format':'korvane-page'}"))
                                    << QStringLiteral("page.pws: \"version\" is no whole number from 1");
        QTest::newRow("layers that are none") << QByteArray(json("{'format':'korvane-page','version':1,'layers':5}"))
                                              << QStringLiteral("page.pws: \"layers\" is no array");
        QTest::newRow("nested 100,000 deep") << QByteArray(json("{'format':'korvane-page','version':1,'x':")) +
                                                    QByteArray(100'000, '[') + QByteArray(100'000, ']') + '}'
                                             << QStringLiteral("page.pws: line 1: nested deeper than 100 levels");
        QTest::newRow("a number beyond every double")
            << json("{'format':'korvane-page','version':1,\n'x':1e999}")
            << QStringLiteral("page.pws: line 2: Number too big to be stored in double.");
        QTest::newRow("not UTF-8") << QByteArray("{\"format\":\"\xff\"}")
                                   << QStringLiteral("page.pws: line 1: Invalid encoding in string.");
    }
    void whatIsNoPageIsRefused()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, reason);
        Pages pages;
        const auto page = pages.read(text);
        QVERIFY(!page);
        QCOMPARE(page.error(), reason);
    }

    void aPageCutAnywhereIsRefusedOrRead()
    {
        Pages pages;
        for (int length = 0; length < wholePage.trimmed().size(); ++length)
            QVERIFY2(!pages.read(wholePage.left(length)), qPrintable(QString::number(length)));
    }

    void brokenPartsAreToldAndKept_data()
    {
        QTest::addColumn<QByteArray>("shape");
        QTest::addColumn<QString>("problem");
        QTest::newRow("an unknown class")
            << QByteArray(json("{'class':'Hologram','name':'h','place':[1,2,30,40],'power':9000}"))
            << QStringLiteral("page.pws:2: shape \"h\": unknown class \"Hologram\"; a placeholder stands in its place");
        QTest::newRow("a shape that is a number")
            << QByteArray("17")
            << QStringLiteral("page.pws:2: shape \"\": a shape that is no object; a placeholder stands in its place");
        QTest::newRow("an unknown action type")
            << QByteArray(json(
                   "{'class':'ReadOut','name':'r','place':[0,0,9,9],'properties':{},'actions':[{'type':99,'x':1}]}"))
            << QStringLiteral("page.pws:2: shape \"r\": unknown action type 99: the action does nothing");
        QTest::newRow("a value that a property can't have")
            << QByteArray(
                   json("{'class':'ReadOut','name':'r','place':[0,0,9,9],'properties':{'FillColor':'no colour'}}"))
            << QStringLiteral("page.pws:2: shape \"r\": property \"FillColor\" can't have the value \"no colour\": its "
                              "default is used");
        QTest::newRow("a place that is none")
            << json("{'class':'Rectangle','name':'r','place':'here','properties':{}}")
            << QStringLiteral("page.pws:2: shape \"r\": \"place\" is not four numbers up to 1000000: the shape lies in "
                              "the top left corner");
        QTest::newRow("a place beyond every page")
            << json("{'class':'Rectangle','name':'r','place':[1e300,0,5,5],'properties':{}}")
            << QStringLiteral("page.pws:2: shape \"r\": \"place\" is not four numbers up to 1000000: the shape lies in "
                              "the top left corner");
        QTest::newRow("properties that are none")
            << json("{'class':'Rectangle','name':'r','place':[1,2,3,4],'properties':[]}")
            << QStringLiteral("page.pws:2: shape \"r\": \"properties\" is no object: the defaults are used");
        QTest::newRow("a name that is none") << json("{'class':'Rectangle','name':7,'place':[1,2,3,4],'properties':{}}")
                                             << QStringLiteral("page.pws:2: shape \"\": \"name\" is no text");
        QTest::newRow("targets that are none")
            << json("{'class':'ReadOut','name':'r','place':[0,0,9,9],'properties':{},'actions':[{'type':2,'targets':5}]"
                    "}")
            << QStringLiteral("page.pws:2: shape \"r\": \"targets\" is no array: the action does nothing");
        QTest::newRow("a target without a tag and a record that is no base64")
            << json("{'class':'ReadOut','name':'r','place':[0,0,9,9],'properties':{},"
                    "'actions':[{'type':2,'targets':[{'record':'*'}]}]}")
            << QStringLiteral(
                   "page.pws:2: shape \"r\": a target without a tag that could be read: the action does nothing");
        QTest::newRow("an unknown operator")
            << json("{'class':'ReadOut','name':'r','place':[0,0,9,9],'properties':{},'actions':[{'type':4,"
                    "'rules':[{'when':[{'tag':'P1','operator':'~','bound':'1'}],'set':{}}]}]}")
            << QStringLiteral("page.pws:2: shape \"r\": unknown operator \"~\": the action does nothing");
        QTest::newRow("a rule that sets what the shape does not have")
            << json("{'class':'ReadOut','name':'r','place':[0,0,9,9],'properties':{},'actions':[{'type':4,"
                    "'rules':[{'when':[{'tag':'P1','operator':'>','bound':'1'}],'set':{'Aura':1}}]}]}")
            << QStringLiteral(
                   "page.pws:2: shape \"r\": a rule sets \"Aura\", which the shape does not have: the action "
                   "does nothing");
        QTest::newRow("a tag that names nothing")
            << QByteArray(json("{'class':'ReadOut','name':'r','place':[0,0,9,9],'properties':{},'actions':[{'type':2,'"
                               "version':911,'targets':[{'tag':'NOWHERE','record':'////"
                               "fwAAAAAAAAAOAE4ATwBXAEgARQBSAEUAAAAA'}],'settings':{}}]}"))
            << QStringLiteral("page.pws:2: shape \"r\": tag \"NOWHERE\" names no known object");
    }
    void brokenPartsAreToldAndKept()
    {
        QFETCH(QByteArray, shape);
        QFETCH(QString, problem);
        Pages pages;
        const QByteArray good = json("{'class':'Rectangle','name':'good','place':[5,5,10,10]}");
        const auto page = pages.read(pageWith(shape + ",\n" + good));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList{problem});
        QVERIFY(page->canvas->findShape(QStringLiteral("good")));
        QCOMPARE(page->canvas->shapeCount(), std::size_t(2));
        const QJsonValue kept = shapesOf(PageWriter::write(*page))[0];
        const QJsonValue stored = QJsonDocument::fromJson('[' + shape + ']').array()[0];
        if (problem.contains(QStringLiteral("NOWHERE"))) // its record is written anew
            QCOMPARE(kept.toObject()[QStringLiteral("name")], stored.toObject()[QStringLiteral("name")]);
        else
            QCOMPARE(kept, stored);
    }

    void aRecordThatIsNoBase64IsTold()
    {
        Pages pages;
        const auto page = pages.read(pageWith(json("{'class':'ReadOut','name':'r','place':[0,0,9,9],'actions':[{'type':"
                                                   "2,'version':911,'targets':[{'tag':'P1','record':'*!*'}]}]}")));
        QVERIFY(page);
        QCOMPARE(page->problems, QStringList{QStringLiteral(
                                     "page.pws:2: shape \"r\": \"record\" is no base64: the tag's text is used")});
        const auto& action = dynamic_cast<const TagAction&>(*page->actions->actions().first());
        QCOMPARE(action.tags(), QStringList{QStringLiteral("P1")});
    }

    void numbersAreReadExactly_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<double>("number");
        QTest::newRow("whole") << QByteArray("3") << 3.0;
        QTest::newRow("negative") << QByteArray("-0.5") << -0.5;
        QTest::newRow("17 digits") << QByteArray("0.28000000000000003") << 0.28000000000000003;
        QTest::newRow("zero with an exponent") << QByteArray("0E60") << 0.0;
        QTest::newRow("smaller than every double") << QByteArray("1e-999") << 0.0;
        QTest::newRow("a large exponent") << QByteArray("1.7976931348623157e308") << 1.7976931348623157e308;
    }
    void numbersAreReadExactly()
    {
        QFETCH(QByteArray, text);
        QFETCH(double, number);
        Pages pages;
        const auto page = pages.read(pageWith("{\"class\":\"ReadOut\",\"name\":\"r\",\"place\":[0,0,9,9],"
                                              "\"actions\":[{\"type\":2,\"settings\":{\"Factor\":" +
                                              text + "}}]}"));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        const auto& action = dynamic_cast<const TagAction&>(*page->actions->actions().first());
        QVERIFY(action.settings().value(QStringLiteral("Factor")).toDouble() == number);
    }

    void anOperationIsReadAsItStands()
    {
        Pages pages;
        const auto page = pages.read(pageWithOperation(
            "{'kind': 'setpoint', 'tag': 'P1', 'value': 12.5, 'key': 'Ctrl+F5', 'by': {'hand': true}}"));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->problems, QStringList());
        const Shape* shape = page->canvas->findShape(QStringLiteral("b"));
        const Operation* operation = page->operations.of(shape);
        QVERIFY(operation);
        QVERIFY(operation->kind == Operation::Kind::SetPoint);
        QCOMPARE(operation->tag, QStringLiteral("P1"));
        QCOMPARE(operation->value.value_or(0), 12.5);
        QCOMPARE(operation->key, QStringLiteral("Ctrl+F5"));
        QVERIFY(operation->input.isEmpty());
        QVERIFY(page->operations.unreadable(shape).isEmpty());
        QCOMPARE(page->operations.all().size(), std::size_t(1));
    }

    void operationsSurviveARoundTrip_data()
    {
        QTest::addColumn<QByteArray>("operation");
        QTest::newRow("select") << QByteArray("{'kind': 'select', 'tag': 'P1'}");
        QTest::newRow("operate") << QByteArray("{'kind': 'operate', 'tag': 'P1', 'value': 1}");
        QTest::newRow("operate with 0") << QByteArray("{'kind': 'operate', 'tag': 'P1', 'value': 0}");
        QTest::newRow("raise") << QByteArray("{'kind': 'raise', 'tag': 'P1'}");
        QTest::newRow("lower") << QByteArray("{'kind': 'lower', 'tag': 'P2', 'key': 'Down'}");
        QTest::newRow("enter") << QByteArray("{'kind': 'enter', 'tag': 'P2'}");
        QTest::newRow("members that no program knows")
            << QByteArray("{'kind': 'raise', 'tag': 'P1', 'fast': [1, {'x': null}], 'note': 'kept'}");
        QTest::newRow("a tag that names nothing") << QByteArray("{'kind': 'raise', 'tag': 'NOWHERE'}");
        QTest::newRow("no object") << QByteArray("['raise', 'P1']");
        QTest::newRow("an unknown kind") << QByteArray("{'kind': 'explode', 'tag': 'P1'}");
        QTest::newRow("a kind in other letters") << QByteArray("{'kind': 'Raise', 'tag': 'P1'}");
        QTest::newRow("no tag") << QByteArray("{'kind': 'raise'}");
        QTest::newRow("a value that is none") << QByteArray("{'kind': 'operate', 'tag': 'P1', 'value': 'on'}");
        QTest::newRow("an input that is none") << QByteArray("{'kind': 'enter', 'tag': 'P1', 'input': 7}");
        QTest::newRow("a key that is none") << QByteArray("{'kind': 'raise', 'tag': 'P1', 'key': 5}");
    }
    void operationsSurviveARoundTrip()
    {
        QFETCH(QByteArray, operation);
        Pages pages;
        const auto page = pages.read(pageWithOperation(operation));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        const QJsonValue stored = shapesOf(PageWriter::write(*page))[0].toObject().value(QStringLiteral("operation"));
        QCOMPARE(stored, QJsonDocument::fromJson(json("{'v': " + operation + "}")).object()[QStringLiteral("v")]);
    }

    void whatIsNoOperationDoesNothing_data()
    {
        QTest::addColumn<QByteArray>("operation");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char* name, const char* operation, const char* problem) {
            QTest::newRow(name) << QByteArray(operation) << QString::fromLatin1(problem);
        };
        row("no object", "7", "is no object");
        row("an unknown kind", "{'kind': 'explode', 'tag': 'P1'}", "has no \"kind\" that is known");
        row("an empty tag", "{'kind': 'raise', 'tag': ''}", "has no \"tag\"");
        row("a value that is none", "{'kind': 'operate', 'tag': 'P1', 'value': true}",
            "has a \"value\" that is no number");
        row("an input that is none", "{'kind': 'enter', 'tag': 'P1', 'input': []}",
            "has an \"input\" that is no object");
        row("an empty key", "{'kind': 'raise', 'tag': 'P1', 'key': ''}", "has a \"key\" that is none");
    }
    void whatIsNoOperationDoesNothing()
    {
        QFETCH(QByteArray, operation);
        QFETCH(QString, problem);
        Pages pages;
        const auto page = pages.read(pageWithOperation(operation));
        QVERIFY(page);
        QVERIFY(page->operations.isEmpty());
        QVERIFY(!page->operations.unreadable(page->canvas->findShape(QStringLiteral("b"))).isEmpty());
        QCOMPARE(page->problems.size(), 1);
        QVERIFY2(page->problems[0].endsWith(QStringLiteral("\"operation\" %1: the shape does nothing").arg(problem)),
                 qPrintable(page->problems[0]));
    }

    void anOperationThatIsSetTakesThePlaceOfWhatWasUnreadable()
    {
        Pages pages;
        auto page = pages.read(pageWithOperation("{'kind': 'explode', 'tag': 'P1'}"));
        const Shape* shape = page->canvas->findShape(QStringLiteral("b"));
        page->operations.set(shape, Operation{Operation::Kind::Lower, QStringLiteral("P2")});
        const auto stored = [&page] { return shapesOf(PageWriter::write(*page))[0].toObject(); };
        QCOMPARE(stored()[QStringLiteral("operation")].toObject().value(QStringLiteral("kind")).toString(),
                 QStringLiteral("lower"));
        page->operations.set(shape, std::nullopt);
        QVERIFY(!stored().contains(QStringLiteral("operation")));
    }

    void accessSurvivesARoundTrip_data()
    {
        QTest::addColumn<QByteArray>("access");
        QTest::addColumn<bool>("isProtected");
        QTest::addColumn<QList<int>>("users");
        QTest::addColumn<bool>("isReadable");
        const auto row = [](const char* name, const char* access, bool isProtected, const QList<int>& users,
                            bool isReadable = true) {
            QTest::newRow(name) << QByteArray(access) << isProtected << users << isReadable;
        };
        row("two users", "{'protected': true, 'users': [3, 12]}", true, {3, 12});
        row("nobody", "{'protected': true, 'users': []}", true, {});
        row("users of a page that is not protected", "{'protected': false, 'users': [3]}", false, {3});
        row("another member", "{'protected': false, 'users': [3], 'role': 'engineer'}", true, {}, false);
        row("no protection", "{'users': [3]}", true, {}, false);
        row("a number for yes", "{'protected': 0, 'users': []}", true, {}, false);
        row("a text", "'everybody'", true, {}, false);
        row("null", "null", true, {}, false);
        row("a list", "[{'protected': false}]", true, {}, false);
        row("a user by name", "{'protected': true, 'users': ['ann']}", true, {}, false);
        row("half a user", "{'protected': true, 'users': [1.5]}", true, {}, false);
        row("no user's number", "{'protected': true, 'users': [-1]}", true, {}, false);
        row("a number beyond all", "{'protected': true, 'users': [3, 4294967299]}", true, {}, false);
    }
    void accessSurvivesARoundTrip()
    {
        QFETCH(QByteArray, access);
        QFETCH(bool, isProtected);
        QFETCH(QList<int>, users);
        QFETCH(bool, isReadable);
        Pages pages;
        const QByteArray text = json("{'format':'korvane-page','version':1,'access':" + access + ",'layers':[]}");
        const auto page = pages.read(text);
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        QCOMPARE(page->access.isProtected, isProtected);
        QCOMPARE(page->access.users, users);
        QCOMPARE(page->access.unreadable.isEmpty(), isReadable);
        QCOMPARE(page->problems.isEmpty(), isReadable);
        for (const int user : {0, 1, 3, 12})
            QCOMPARE(page->access.mayOpen(user), !isProtected || users.contains(user));
        QCOMPARE(parsed(PageWriter::write(*page)).value(QStringLiteral("access")),
                 parsed(text).value(QStringLiteral("access"))); // as it was, also what could not be read

        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("p.pws")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        const auto alone = PageReader::readAccess(file.fileName());
        QVERIFY(alone);
        QVERIFY(alone->isEqual(page->access));
    }

    void aPageThatSaysNothingOfAccessIsEverybodys()
    {
        Pages pages;
        const auto page = pages.read(wholePage);
        QVERIFY(!page->access.isProtected);
        QVERIFY(page->access.mayOpen(0));
        QVERIFY(!parsed(PageWriter::write(*page)).contains(QStringLiteral("access")));
    }

    void accessOfWhatCantBeReadIsAnError()
    {
        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("p.pws"));
        QVERIFY(!PageReader::readAccess(name));
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"access\": {\"protected\": false");
        file.close();
        const auto access = PageReader::readAccess(name);
        QVERIFY(!access);
        QVERIFY(access.error().startsWith(name));
    }

    void placeholdersStandWhereTheShapeWould()
    {
        Pages pages;
        const auto page = pages.read(pageWith(json("{'class':'Hologram','name':'h','place':[1,2,30,40]}")));
        Shape* shape = page->canvas->findShape(QStringLiteral("h"));
        QVERIFY(dynamic_cast<Placeholder*>(shape));
        QCOMPARE(shape->place(), QRectF(1, 2, 30, 40));
    }

    void filesAreSavedWholeOrNotAtAll()
    {
        QTemporaryDir folder;
        Pages pages;
        const QString name = folder.filePath(QStringLiteral("first.pws"));
        QVERIFY(!pages.readFile(name));
        QCOMPARE(pages.readFile(name).error(), name + QStringLiteral(": there is no such page"));
        QCOMPARE(pages.readFile(folder.path()).error(), folder.path() + QStringLiteral(": is no regular file"));
        const auto page = pages.read(wholePage);
        QVERIFY(PageWriter::writeFile(*page, name));
        const auto read = pages.readFile(name);
        QVERIFY(read);
        QCOMPARE(read->canvas->canvasName(), QStringLiteral("first"));
        const auto failed = PageWriter::writeFile(*page, folder.filePath(QStringLiteral("nowhere/first.pws")));
        QVERIFY(!failed);
        QVERIFY(failed.error().contains(QStringLiteral("nowhere/first.pws: can't be written")));
    }

    void aPageBeyondTheLargestIsRefusedUnread()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("large.pws")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(100 * 1024 * 1024)); // takes no room on the disk
        file.close();
        Pages pages;
        QCOMPARE(pages.readFile(file.fileName()).error(),
                 file.fileName() + QStringLiteral(": is larger than a page can be (64 MB)"));
    }
};

QTEST_MAIN(tst_PageFile)
#include "tst_pagefile.moc"
