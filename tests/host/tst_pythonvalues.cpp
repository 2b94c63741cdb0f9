// Values of the host as scripts see and set them: as properties of shapes, and of the application.

#include "host/shapes/shapefactory.h"
#include "tests/support/scriptpage.h"

#include <QPoint>
#include <QTimeZone>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A page with one shape of each class that a test needs, named after it.
struct Plant : ScriptPage
{
    Plant()
    {
        for (const char* name : {"Label", "Trend", "Pipe", "ReadOut"}) {
            auto shape = ShapeFactory::create(text(name));
            shape->setName(text(name));
            page.canvas->addShape(*page.canvas->layers()[0], std::move(shape));
        }
    }
};

} // namespace

class tst_PythonValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void propertiesOfEveryKindAreSet_data()
    {
        QTest::addColumn<QString>("target"); // a shape's property
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("read"); // empty for a value that it can't have
        const auto row = [](const char* name, const char* target, const char* value, const char* read) {
            QTest::newRow(name) << text(target) << text(value) << text(read);
        };
        const char* const number = "canvas['Label']['Rotation']";
        row("a number", number, "12.5", "12.5");
        row("a whole number for a number", number, "30", "30.0");
        row("a number's text", number, "'1.5'", "1.5");
        row("no number", number, "'much'", "");
        row("NaN", number, "float('nan')", "");
        row("an infinity", number, "float('-inf')", "");
        row("nothing for a number", number, "None", "");
        row("a list for a number", number, "[1]", "");
        const char* const optional = "canvas['ReadOut']['Value']";
        row("nothing where that is a value", optional, "None", "None");
        row("a number where nothing is a value too", optional, "5", "5.0");
        row("a text where nothing is a value too", optional, "'x'", "");
        const char* const integer = "canvas['Label']['FontSize']";
        row("a whole number", integer, "20", "20");
        row("the nearest whole number", integer, "20.6", "21");
        row("beyond what the property can have", integer, "9999", "200");
        row("beyond 32 bits", integer, "2 ** 40", "");
        const char* const boolean = "canvas['Label']['Visible']";
        row("false", boolean, "False", "False");
        row("0 for false", boolean, "0", "False");
        row("another number for true", boolean, "-2.5", "True");
        row("a word is neither", boolean, "'no'", "");
        const char* const words = "canvas['Label']['Text']";
        row("a text", words, "'a\\u00e4\\n\\U0001f4a7'", "'a\xc3\xa4\\n\xf0\x9f\x92\xa7'");
        row("an empty text", words, "''", "''");
        row("half of a pair", words, "'\\ud83d'", "'\\ud83d'");
        row("a NUL", words, "'a\\0b'", "'a\\x00b'");
        row("a number for a text", words, "1.5", "'1.5'");
        row("nothing for a text", words, "None", "");
        row("a list for a text", words, "['a']", "");
        const char* const list = "canvas['Trend']['CurveNames']";
        row("a list of texts", list, "['a', 'b']", "['a', 'b']");
        row("a tuple of texts", list, "('a',)", "['a']");
        row("an empty list", list, "[]", "[]");
        row("a list with a number", list, "['a', 1]", "");
        row("a text for a list", list, "'a'", "");
        const char* const color = "canvas['Label']['TextColor']";
        row("a colour by its name", color, "'steelblue'", "'#4682b4'");
        row("a colour that shines through", color, "'#80ff0000'", "'#80ff0000'");
        row("no colour", color, "''", "''");
        row("a word that is no colour", color, "'warm'", "");
        row("a number that is no colour", color, "255", "");
        const char* const rect = "canvas['Label']['Geometry']";
        row("a rectangle", rect, "(0, 0, 30, 40.5)", "(0.0, 0.0, 30.0, 40.5)");
        row("a rectangle as a list", rect, "[0, 0, 30, 40]", "(0.0, 0.0, 30.0, 40.0)");
        row("three numbers are no rectangle", rect, "(0, 0, 30)", "");
        row("five neither", rect, "(0, 0, 30, 40, 50)", "");
        row("a number is no rectangle", rect, "4", "");
        const char* const point = "canvas['Label']['Position']";
        row("a point", point, "(10, -20.5)", "(10.0, -20.5)");
        row("a point as a list", point, "[1, 2]", "(1.0, 2.0)");
        row("a point without a number", point, "('left', 1)", "");
        row("a point at no place", point, "(float('nan'), 1)", "");
        row("a point of one number", point, "(1,)", "");
        row("a point of none", point, "()", "");
        const char* const size = "canvas['Label']['Size']";
        row("a size", size, "(30, 20.5)", "(30.0, 20.5)");
        row("a size that is a text", size, "'30x20'", "");
        const char* const points = "canvas['Pipe']['Points']";
        row("points", points, "[(0, 0), (10.5, 5)]", "[(0.0, 0.0), (10.5, 5.0)]");
        row("points as tuples and lists", points, "([0, 0], (1, 2))", "[(0.0, 0.0), (1.0, 2.0)]");
        row("points with a triple", points, "[(0, 0), (1, 2, 3)]", "");
        row("points that are numbers", points, "[0, 0, 1, 2]", "");
        row("points that are a text", points, "'0 0'", "");
    }
    void propertiesOfEveryKindAreSet()
    {
        QFETCH(QString, target);
        QFETCH(QString, value);
        QFETCH(QString, read);
        Plant plant;
        const QString before = plant.run(text("print(repr(%1))").arg(target));
        const QString answer = plant.run(text("%1 = %2\nprint(repr(%1))").arg(target, value));
        if (read.isEmpty()) {
            QVERIFY2(answer.contains(text(": ValueError: property \"")), qPrintable(answer));
            QCOMPARE(plant.run(text("print(repr(%1))").arg(target)), before);
        } else {
            QCOMPARE(answer, read);
        }
    }

    void valuesOfNoKindAreRefused_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("failure");
        const auto row = [](const char* name, const char* value, const char* failure) {
            QTest::newRow(name) << text(value) << text(failure);
        };
        row("a dictionary", "{}", "TypeError: a dict can't be used here");
        row("bytes", "b'a'", "TypeError: a bytes can't be used here");
        row("a function", "print", "TypeError: a builtin_function_or_method can't be used here");
        row("a shape", "canvas['Label']", "TypeError: a korvane.Shape can't be used here");
        row("a date without a time", "__import__('datetime').date(2024, 1, 1)",
            "TypeError: a datetime.date can't be used here");
        row("one in a list", "[1, {}]", "TypeError: a dict can't be used here");
        row("beyond 64 bits", "2 ** 63", "ValueError: the number has more than 64 bits");
        row("beyond them downwards", "-2 ** 63 - 1", "ValueError: the number has more than 64 bits");
    }
    void valuesOfNoKindAreRefused()
    {
        QFETCH(QString, value);
        QFETCH(QString, failure);
        Plant plant;
        for (const char* script : {"korvane.set_property('P', %1)", "canvas['Label']['Text'] = %1"})
            QCOMPARE(plant.run(text(script).arg(value)), text("page \"overview\", line 1: ") + failure);
        QCOMPARE(plant.properties.names(), QStringList());
    }

    void whatScriptsSetTheHostReads_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QVariant>("held");
        const auto row = [](const char* name, const char* value, const QVariant& held) {
            QTest::newRow(name) << text(value) << held;
        };
        row("true", "True", true);
        row("a whole number", "7", 7);
        row("the largest of 32 bits", "2147483647", 2147483647);
        row("one of 64 bits", "2147483648", Q_INT64_C(2147483648));
        row("the smallest of 64 bits", "-2 ** 63", std::numeric_limits<qint64>::min());
        row("a number", "0.1", 0.1);
        row("a text", "'\\U0001f4a7'", text("\xf0\x9f\x92\xa7"));
        row("half of a pair", "'\\udca7'", QString(QChar(0xdca7)));
        row("a text of ASCII letters", "'abc'", text("abc"));
        row("a text of Latin letters", "'\\u00e4'", text("\xc3\xa4"));
        row("a text of a class of its own", "type('S', (str,), {})('s')", text("s"));
        row("a list", "[1, 'a', [2.5, None]]", QVariantList{1, text("a"), QVariantList{2.5, QVariant()}});
        row("a tuple", "(True,)", QVariantList{true});
        const auto utc = [](const char* iso) { return QDateTime::fromString(text(iso), Qt::ISODateWithMs); };
        row("a time in UTC", "datetime(2024, 2, 29, 23, 59, 59, 999000, timezone.utc)",
            utc("2024-02-29T23:59:59.999Z"));
        row("a time of another zone", "datetime(2024, 1, 1, 9, 0, tzinfo=timezone(timedelta(hours=9)))",
            utc("2024-01-01T00:00:00Z"));
        row("a time without a zone is the machine's", "datetime(2024, 7, 1, 12, 0)", utc("2024-07-01T12:00:00Z"));
        row("a time before 1970", "datetime(1900, 1, 1, tzinfo=timezone.utc)", utc("1900-01-01T00:00:00Z"));
        row("the nearest millisecond", "datetime(2024, 1, 1, 0, 0, 0, 1600, timezone.utc)",
            utc("2024-01-01T00:00:00.002Z"));
    }
    void whatScriptsSetTheHostReads()
    {
        QFETCH(QString, value);
        QFETCH(QVariant, held);
        Plant plant;
        const QString failure = plant.run(
            text("from datetime import datetime, timedelta, timezone\nkorvane.set_property('P', %1)").arg(value));
        QCOMPARE(failure, QString());
        const QVariant property = plant.properties.getProperty(text("P"));
        QCOMPARE(property.userType(), held.userType());
        QCOMPARE(property, held);
        if (held.userType() == QMetaType::QDateTime)
            QCOMPARE(property.toDateTime().timeSpec(), Qt::UTC);
    }

    void whatTheHostHoldsScriptsRead_data()
    {
        QTest::addColumn<QVariant>("held");
        QTest::addColumn<QString>("read");
        const auto row = [](const char* name, const QVariant& held, const char* read) {
            QTest::newRow(name) << held << text(read);
        };
        row("true", true, "True");
        row("a whole number", -7, "-7");
        row("one without a sign", 4294967295U, "4294967295");
        row("the largest there is", std::numeric_limits<quint64>::max(), "18446744073709551615");
        row("the smallest there is", std::numeric_limits<qint64>::min(), "-9223372036854775808");
        row("a short one", QVariant::fromValue<short>(-3), "-3");
        row("a number", 0.1, "0.1");
        row("a number of single precision", 0.5F, "0.5");
        row("a text", text("a\xc3\xa4\xf0\x9f\x92\xa7"), "'a\xc3\xa4\xf0\x9f\x92\xa7'");
        row("half of a pair", QString(QChar(0xd83d)), "'\\ud83d'");
        row("an empty text", QString(), "''");
        row("a list of texts", QStringList{text("a"), text("b")}, "['a', 'b']");
        row("a list", QVariantList{1, QVariantList{text("a")}, QVariant()}, "[1, ['a'], None]");
        row("a colour", QColor(1, 2, 3), "'#010203'");
        row("a point", QPointF(1, 2.5), "(1.0, 2.5)");
        row("a size", QSizeF(1, 2), "(1.0, 2.0)");
        row("a rectangle", QRectF(1, 2, 3, 4), "(1.0, 2.0, 3.0, 4.0)");
        row("points", QPolygonF(QVector<QPointF>{{1, 2}, {3, 4}}), "[(1.0, 2.0), (3.0, 4.0)]");
        row("letters in bytes", QByteArray("abc"), "'abc'");
        row("a value of another kind", QVariant(QPoint(1, 2)), "None");
        row("a time", QDateTime({2024, 2, 29}, {1, 2, 3, 4}, Qt::UTC),
            "datetime.datetime(2024, 2, 29, 1, 2, 3, 4000, tzinfo=datetime.timezone.utc)");
        row("a time of another zone", QDateTime({2024, 1, 1}, {3, 0}, Qt::OffsetFromUTC, 3600),
            "datetime.datetime(2024, 1, 1, 2, 0, tzinfo=datetime.timezone.utc)");
        row("a time in the time of a summer", QDateTime({2024, 7, 1}, {12, 0}, QTimeZone("Europe/Berlin")),
            "datetime.datetime(2024, 7, 1, 10, 0, tzinfo=datetime.timezone.utc)");
        row("no time", QDateTime(), "None");
        row("a time beyond what Python can hold", QDateTime({10000, 1, 1}, {0, 0}, Qt::UTC), "None");
        row("a time before that", QDateTime({-1, 1, 1}, {0, 0}, Qt::UTC), "None");
        row("a list with no time", QVariantList{QDateTime(), 1}, "[None, 1]");
    }
    void whatTheHostHoldsScriptsRead()
    {
        QFETCH(QVariant, held);
        QFETCH(QString, read);
        Plant plant;
        plant.properties.setValue(text("P"), held);
        QCOMPARE(plant.run("print(repr(korvane.property('P')))"), read);
    }

    void timesComeBackAsTheyWere()
    {
        Plant plant;
        const QDateTime time({1969, 12, 31}, {23, 59, 59, 1}, Qt::UTC);
        plant.properties.setValue(text("P"), time);
        QCOMPARE(plant.run("korvane.set_property('Q', korvane.property('P'))"), QString());
        QCOMPARE(plant.properties.getProperty(text("Q")).toDateTime(), time);
    }
};

QTEST_MAIN(tst_PythonValues)
#include "tst_pythonvalues.moc"
