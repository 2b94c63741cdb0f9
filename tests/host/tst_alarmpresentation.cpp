#include "host/alarms/alarmpresentation.h"
#include "host/core/project.h"
#include "tests/support/testproject.h"

#include <QColor>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using std::chrono::milliseconds;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// The presentation of that object (JSON with single quotes), in the folder "/plant".
tl::expected<AlarmPresentation, QString> read(const QByteArray& object)
{
    const QJsonDocument document = QJsonDocument::fromJson(TestProject::json(object));
    if (!document.isObject())
        qFatal("no object: %s", object.constData());
    return AlarmPresentation::read(document.object(), text("/plant"));
}

AlarmPresentation good(const QByteArray& object)
{
    const auto presentation = read(object);
    if (!presentation)
        qFatal("%s", qPrintable(presentation.error()));
    return *presentation;
}

void compareUsual(const AlarmPresentation& usual)
{
    const QRgb colours[] = {0xff455a64, 0xff37474f, 0xff1b5e20, 0xff00695c, 0xff01579b,
                            0xff1a237e, 0xff6a1b9a, 0xff9a5b00, 0xffbf360c, 0xffb71c1c};
    QCOMPARE(usual.severities.severities().size(), 10);
    for (int severity = 0; severity <= 9; ++severity) {
        const AlarmSeverityData data = usual.severities.severityData(severity);
        QCOMPARE(data.textColor, QColor(colours[severity]));
        QCOMPARE(data.soundPath, QString());
        QVERIFY(!data.usePopup);
    }
    QVERIFY(!usual.severities.isMuted());
    QVERIFY(usual.severities.isSpeechOn());
    QVERIFY(usual.severities.isPopupShown());
    AlarmDisplayFilterInfo filter;
    filter.showToolBar = true;
    QVERIFY(usual.filter.isEqual(filter));
    QCOMPARE(usual.areas, QStringList());
    QVERIFY(usual.repeatAfter == milliseconds(2000));
    QVERIFY(usual.remindAfter == milliseconds(300000));
}

} // namespace

class tst_AlarmPresentation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsNeeded()
    {
        compareUsual(AlarmPresentation());
        compareUsual(good("{}"));
        compareUsual(good("{'comment': 'of a later version', 'colors': 7}")); // members that nobody knows
    }

    void everyMemberIsRead()
    {
        const AlarmPresentation read =
            good("{'severities': {'8': {'Path': 'sounds/urgent.wav', 'UsePopup': 1}, '2': {'Path': '/bells/two.wav'}},"
                 " 'filter': {'Severity': [8, 9], 'Aor': [1], 'SubjectToUserAor': 0, 'ShowToolBar': 0,"
                 "            'DisplayItem': {'5': 1, '0': 0}},"
                 " 'colours': {'8': '#102030', '0': 'red'}, 'areas': ['North', '남쪽'],"
                 " 'repeatMs': 500, 'remindMs': 60000, 'isSpoken': false, 'isPopupShown': false}");
        QCOMPARE(read.severities.severityData(8).soundPath, text("/plant/sounds/urgent.wav"));
        QVERIFY(read.severities.severityData(8).usePopup);
        QCOMPARE(read.severities.severityData(2).soundPath, text("/bells/two.wav"));
        QVERIFY(!read.severities.severityData(2).usePopup);
        QCOMPARE(read.severities.severityData(9).soundPath, QString());
        QCOMPARE(read.severities.severityData(8).textColor, QColor(0x10, 0x20, 0x30));
        QCOMPARE(read.severities.severityData(0).textColor, QColor(Qt::red));
        QCOMPARE(read.severities.severityData(9).textColor, QColor(0xb7, 0x1c, 0x1c)); // as by default
        QCOMPARE(read.filter.severities, (QList<int>{8, 9}));
        QCOMPARE(read.filter.areas, QList<int>{1});
        QVERIFY(!read.filter.subjectToUserAor);
        QVERIFY(!read.filter.showToolBar);
        QCOMPARE(read.filter.displayItems, (QMap<int, int>{{0, 0}, {5, 1}}));
        QCOMPARE(read.areas, (QStringList{text("North"), text("남쪽")}));
        QVERIFY(read.repeatAfter == milliseconds(500));
        QVERIFY(read.remindAfter == milliseconds(60000));
        QVERIFY(!read.severities.isSpeechOn());
        QVERIFY(!read.severities.isPopupShown());
    }

    void boundsBelongToTheirRange()
    {
        const AlarmPresentation shortest = good("{'repeatMs': 0, 'remindMs': 0}");
        QVERIFY(shortest.repeatAfter == milliseconds(0));
        QVERIFY(shortest.remindAfter == milliseconds(0));
        const AlarmPresentation longest = good("{'repeatMs': 3600000, 'remindMs': 3600000.0}");
        QVERIFY(longest.repeatAfter == milliseconds(3600000));
        QVERIFY(longest.remindAfter == milliseconds(3600000));
        QCOMPARE(good("{'areas': []}").areas, QStringList());
        QVERIFY(good("{'isSpoken': true}").severities.isSpeechOn());
        QVERIFY(good("{'filter': {}}").filter.showToolBar); // unless it says otherwise
    }

    void whatIsWrongIsNamed_data()
    {
        QTest::addColumn<QByteArray>("object");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char* name, const char* object, const char* problem) {
            QTest::newRow(name) << QByteArray(object) << text("\"alarms\": ") + text(problem);
        };
        row("severities in a list", "{'severities': []}", "\"severities\" must be an object");
        row("severities as a text", "{'severities': '{}'}", "\"severities\" must be an object");
        row("severities that are null", "{'severities': null}", "\"severities\" must be an object");
        row("a filter in a list", "{'filter': []}", "\"filter\" must be an object");
        row("a filter that is a number", "{'filter': 1}", "\"filter\" must be an object");
        row("colours in a list", "{'colours': ['red']}", "\"colours\" must be an object");
        const char* colours = "\"colours\" must be colour names by severity, 0 to 9";
        row("a colour that is none", "{'colours': {'1': 'reddish'}}", colours);
        row("a colour of a wrong number", "{'colours': {'1': '#12'}}", colours);
        row("an empty colour", "{'colours': {'1': ''}}", colours);
        row("a colour that is a number", "{'colours': {'1': 255}}", colours);
        row("a colour of no severity", "{'colours': {'high': 'red'}}", colours);
        row("a colour above the severities", "{'colours': {'10': 'red'}}", colours);
        row("a colour below the severities", "{'colours': {'-1': 'red'}}", colours);
        row("a colour of a severity that is none but has a sound",
            "{'severities': {'10': {'Path': 'a.wav'}}, 'colours': {'10': 'red'}}", colours);
        row("areas as a text", "{'areas': 'North'}", "\"areas\" must be a list of names");
        row("areas as an object", "{'areas': {}}", "\"areas\" must be a list of names");
        row("an area that is a number", "{'areas': ['North', 2]}", "\"areas\" must be a list of names");
        row("an area without a name", "{'areas': ['']}", "\"areas\" must be a list of names");
        const char* repeat = "\"repeatMs\" must be a whole number from 0 to 3600000";
        row("a pause that is negative", "{'repeatMs': -1}", repeat);
        row("a pause that is too long", "{'repeatMs': 3600001}", repeat);
        row("a pause beyond all numbers", "{'repeatMs': 1e300}", repeat);
        row("a pause that is no whole number", "{'repeatMs': 0.5}", repeat);
        row("a pause as a text", "{'repeatMs': '2000'}", repeat);
        row("a pause that is null", "{'repeatMs': null}", repeat);
        const char* remind = "\"remindMs\" must be a whole number from 0 to 3600000";
        row("a reminder that is negative", "{'remindMs': -1}", remind);
        row("a reminder that is too late", "{'remindMs': 3600001}", remind);
        row("a reminder that is true", "{'remindMs': true}", remind);
        row("speech by a number", "{'isSpoken': 1}", "\"isSpoken\" must be true or false");
        row("speech that is null", "{'isSpoken': null}", "\"isSpoken\" must be true or false");
        row("popups by a text", "{'isPopupShown': 'yes'}", "\"isPopupShown\" must be true or false");
        row("the first of several is told", "{'isSpoken': 1, 'areas': 1, 'filter': 1}", "\"filter\" must be an object");
    }
    void whatIsWrongIsNamed()
    {
        QFETCH(const QByteArray, object);
        QFETCH(const QString, problem);
        const auto presentation = read(object);
        QVERIFY(!presentation);
        QCOMPARE(presentation.error(), problem);
    }

    void aProjectStatesIt()
    {
        const TestProject folder;
        folder.write("project.json", TestProject::json("{'alarms': {'severities': {'5': {'Path': 'sounds/a.wav'}},"
                                                       " 'areas': ['North'], 'repeatMs': 100}}"));
        const auto project = Project::read(folder.folder());
        QVERIFY2(project, project ? "" : qPrintable(project.error()));
        QCOMPARE(project->alarms.severities.severityData(5).soundPath,
                 project->folder + text("/sounds/a.wav")); // where the project lies, not the working folder
        QCOMPARE(project->alarms.areas, QStringList{text("North")});
        QVERIFY(project->alarms.repeatAfter == milliseconds(100));
    }

    void aProjectNeedsNone()
    {
        const TestProject folder;
        const auto project = Project::read(folder.folder());
        QVERIFY2(project, project ? "" : qPrintable(project.error()));
        compareUsual(project->alarms);
    }

    void aProjectWithAWrongOneIsRefused_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char* name, const char* settings, const char* problem) {
            QTest::newRow(name) << QByteArray(settings) << text(problem);
        };
        row("a list", "{'alarms': []}", "\"alarms\" must be an object");
        row("null", "{'alarms': null}", "\"alarms\" must be an object");
        row("a text", "{'alarms': 'loud'}", "\"alarms\" must be an object");
        row("a wrong member", "{'alarms': {'repeatMs': 'often'}}",
            "\"alarms\": \"repeatMs\" must be a whole number from 0 to 3600000");
    }
    void aProjectWithAWrongOneIsRefused()
    {
        QFETCH(const QByteArray, settings);
        QFETCH(const QString, problem);
        const TestProject folder;
        folder.write("project.json", TestProject::json(settings));
        const auto project = Project::read(folder.folder());
        QVERIFY(!project);
        QCOMPARE(project.error(), folder.path("project.json: ") + problem);
    }
};

QTEST_GUILESS_MAIN(tst_AlarmPresentation)
#include "tst_alarmpresentation.moc"
