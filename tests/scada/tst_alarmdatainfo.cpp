#include "scada/records/alarmdatainfo.h"
#include "tests/support/storedjson.h"

#include <QtTest>

static_assert(!std::is_polymorphic_v<AlarmDataInfo>);

namespace {

/// A settings string of entries without sound and popup, from 0 on.
QString emptyEntries(int count)
{
    QStringList entries;
    for (int severity = 0; severity < count; ++severity)
        entries.append(json("'%1':{'Path':'','UsePopup':0}").arg(severity));
    return QStringLiteral("{%1}").arg(entries.join(QLatin1Char(',')));
}

/// Every severity has something that a reader could spoil.
AlarmDataInfo filledInfo()
{
    AlarmDataInfo info;
    info.setMuted(true);
    info.setPopupShown(false);
    info.setSpeechOn(false);
    for (int severity = 0; severity < 10; ++severity) {
        info.setSoundPath(severity, QStringLiteral("%1.wav").arg(severity));
        info.setUsePopup(severity, severity % 2 == 0);
        info.setTextColor(severity, QColor(severity, 1, 2));
    }
    return info;
}

AlarmDataInfo readBy(AlarmDataInfo info, const QString& text)
{
    info.fromSettingInfo(text);
    return info;
}

} // namespace

class tst_AlarmDataInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefaultRecordHasTenSeverities()
    {
        const AlarmDataInfo info;
        QVERIFY(!info.isMuted());
        QVERIFY(info.isPopupShown());
        QVERIFY(info.isSpeechOn());
        QCOMPARE(info.severities().keys(), QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
        for (int severity = 0; severity < 10; ++severity) {
            const AlarmSeverityData data = info.severityData(severity);
            QCOMPARE(data.severity, severity);
            QVERIFY(data.soundPath.isEmpty());
            QVERIFY(!data.usePopup);
            QVERIFY(!data.textColor.isValid());
        }
    }

    void aSeverityWithoutEntryHasTheDefaultAndIsNotAdded()
    {
        const AlarmDataInfo info;
        QVERIFY(info.severityData(12) == (AlarmSeverityData{12, QString(), false, QColor()}));
        QCOMPARE(info.severities().size(), 10);
    }

    void copiesHaveEveryField()
    {
        AlarmDataInfo info = filledInfo();
        const AlarmDataInfo copy(info);
        AlarmDataInfo assigned;
        assigned = info;
        for (const AlarmDataInfo& made : {copy, assigned}) {
            QVERIFY(made.isEqual(info));
            QVERIFY(made.isMuted() && !made.isPopupShown() && !made.isSpeechOn());
            QVERIFY(made.severities() == info.severities());
        }
        info.setSoundPath(3, QStringLiteral("other.wav"));
        QCOMPARE(copy.severityData(3).soundPath, QStringLiteral("3.wav"));
    }

    void everyFieldCountsForEquality()
    {
        const AlarmDataInfo info = filledInfo();
        const auto isEqualAfter = [&info](auto change) {
            AlarmDataInfo other = info;
            change(other);
            return info.isEqual(other) || other.isEqual(info);
        };
        QVERIFY(isEqualAfter([](AlarmDataInfo&) {}));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) { other.setMuted(false); }));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) { other.setPopupShown(true); }));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) { other.setSpeechOn(true); }));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) { other.setSoundPath(4, QString()); }));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) { other.setUsePopup(4, 0); }));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) { other.setTextColor(4, QColor()); }));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) { other.setSeverityData(10, {}); }));
        QVERIFY(!isEqualAfter([](AlarmDataInfo& other) {
            AlarmSeverityData data = other.severityData(4);
            data.severity = 5;
            other.setSeverityData(4, data);
        }));
    }

    void oneFieldOfAnEntryIsChanged()
    {
        AlarmDataInfo info;
        info.setSoundPath(0, QStringLiteral("a.wav"));
        info.setUsePopup(5, 1);
        info.setTextColor(9, Qt::red);
        QVERIFY(info.severityData(0) == (AlarmSeverityData{0, QStringLiteral("a.wav"), false, QColor()}));
        QVERIFY(info.severityData(5) == (AlarmSeverityData{5, QString(), true, QColor()}));
        QVERIFY(info.severityData(9) == (AlarmSeverityData{9, QString(), false, QColor(Qt::red)}));
        info.setUsePopup(5, 0);
        QVERIFY(!info.severityData(5).usePopup);
        info.setUsePopup(5, -128);
        QVERIFY(info.severityData(5).usePopup);
    }

    void aSeverityWithoutEntryIsIgnored()
    {
        for (const int severity : {-1, 10, 2147483647}) {
            AlarmDataInfo info;
            info.setSoundPath(severity, QStringLiteral("a.wav"));
            info.setUsePopup(severity, 1);
            info.setTextColor(severity, Qt::red);
            QVERIFY(info.isEqual(AlarmDataInfo()));
        }
    }

    void wholeEntriesAreStoredAsGiven()
    {
        const AlarmSeverityData data{77, QStringLiteral("a.wav"), true, QColor(Qt::blue)};
        AlarmDataInfo info;
        for (const int severity : {3, 10, -4})
            info.setSeverityData(severity, data);
        QCOMPARE(info.severities().size(), 12);
        for (const int severity : {3, 10, -4})
            QVERIFY(info.severities().value(severity) == data);
        info.setSoundPath(10, QStringLiteral("b.wav")); // it has an entry now
        QCOMPARE(info.severityData(10).soundPath, QStringLiteral("b.wav"));
    }

    void aDefaultRecordIsWrittenAsTenEmptyEntries()
    {
        AlarmDataInfo info;
        QCOMPARE(info.toSettingInfo(), json("{'0':{'Path':'','UsePopup':0},'1':{'Path':'','UsePopup':0},"
                                            "'2':{'Path':'','UsePopup':0},'3':{'Path':'','UsePopup':0},"
                                            "'4':{'Path':'','UsePopup':0},'5':{'Path':'','UsePopup':0},"
                                            "'6':{'Path':'','UsePopup':0},'7':{'Path':'','UsePopup':0},"
                                            "'8':{'Path':'','UsePopup':0},'9':{'Path':'','UsePopup':0}}"));
    }

    void soundsAndPopupsAreWritten()
    {
        AlarmDataInfo info;
        info.setSoundPath(1, QStringLiteral("alarm1.wav"));
        info.setUsePopup(2, -1);
        info.setSoundPath(3, QStringLiteral("C:\\a \"b\" %1%L2.wav"));
        QVERIFY(info.toSettingInfo().startsWith(
            json("{'0':{'Path':'','UsePopup':0},'1':{'Path':'alarm1.wav','UsePopup':0},'2':{'Path':'','UsePopup':1},"
                 "'3':{'Path':'C:\\\\a \\'b\\' %1%L2.wav','UsePopup':0},'4':")));
    }

    void anEleventhSeverityIsWritten()
    {
        AlarmDataInfo info;
        info.setSeverityData(10, {10, QStringLiteral("a.wav"), true, QColor()});
        QString expected = emptyEntries(11);
        expected.replace(json("'10':{'Path':'','UsePopup':0}"), json("'10':{'Path':'a.wav','UsePopup':1}"));
        QCOMPARE(info.toSettingInfo(), expected);
    }

    void writingCountsEntriesAndFillsGaps() // kept: stored settings are numbered without gaps
    {
        AlarmDataInfo info;
        info.setSeverityData(15, {15, QStringLiteral("a.wav"), true, QColor()});
        QCOMPARE(info.severities().size(), 11);
        QCOMPARE(info.toSettingInfo(), emptyEntries(11));
        QCOMPARE(info.severities().keys(), QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 15}));
        QVERIFY(info.severities().value(10) == (AlarmSeverityData{0, QString(), false, QColor()}));
        QCOMPARE(info.severities().value(15).soundPath, QStringLiteral("a.wav"));

        QCOMPARE(info.toSettingInfo(), emptyEntries(12)); // the gap filled last time counts now
        QCOMPARE(info.severities().size(), 13);
    }

    void aNegativeSeverityIsNeverWritten()
    {
        AlarmDataInfo info;
        info.setSeverityData(-1, {-1, QStringLiteral("a.wav"), true, QColor()});
        QCOMPARE(info.toSettingInfo(), emptyEntries(11));
    }

    void whatIsWrittenReadsBackButForColours() // kept: colours live in memory only
    {
        AlarmDataInfo info = filledInfo();
        info.setSoundPath(7, QStringLiteral("\ufeff\uacbd\ubcf4 \U0001f514\n\"\\") + QChar(0) + QLatin1Char('z'));
        AlarmDataInfo fresh;
        fresh.fromSettingInfo(info.toSettingInfo());
        for (int severity = 0; severity < 10; ++severity) {
            const AlarmSeverityData written = info.severityData(severity);
            QVERIFY(fresh.severityData(severity) ==
                    (AlarmSeverityData{severity, written.soundPath, written.usePopup, QColor()}));
        }
        QCOMPARE(fresh.severities().size(), 10);
        QVERIFY(!fresh.isMuted() && fresh.isPopupShown() && fresh.isSpeechOn());
        QCOMPARE(fresh.toSettingInfo(), info.toSettingInfo());
    }

    void halfOfAPairInAPathBecomesAReplacementCharacter()
    {
        AlarmDataInfo info;
        info.setSoundPath(0, QLatin1Char('a') + QString(QChar(0xd83d)) + QLatin1Char('b'));
        AlarmDataInfo fresh;
        fresh.fromSettingInfo(info.toSettingInfo());
        QCOMPARE(fresh.severityData(0).soundPath, QStringLiteral("a\ufffdb"));
    }

    void readingKeepsColourAndNumberOfAnEntry()
    {
        AlarmDataInfo info;
        info.setSeverityData(3, {33, QStringLiteral("old.wav"), true, QColor(Qt::red)});
        info.fromSettingInfo(json("{'3':{'Path':'new.wav'}}"));
        QVERIFY(info.severityData(3) == (AlarmSeverityData{33, QStringLiteral("new.wav"), false, QColor(Qt::red)}));
    }

    void readingAddsSeverities()
    {
        AlarmDataInfo info;
        info.fromSettingInfo(json("{'12':{'Path':'a.wav','UsePopup':1},'-3':{}}"));
        QCOMPARE(info.severities().size(), 12);
        QVERIFY(info.severities().value(12) == (AlarmSeverityData{12, QStringLiteral("a.wav"), true, QColor()}));
        QVERIFY(info.severities().value(-3) == (AlarmSeverityData{-3, QString(), false, QColor()}));
    }

    void severitiesThatAreNotNamedStay()
    {
        const AlarmDataInfo before = filledInfo();
        const AlarmDataInfo after = readBy(before, json("{'4':{'UsePopup':0,'Path':'a'},'5':{}}"));
        for (int severity = 0; severity < 10; ++severity) {
            if (severity != 4 && severity != 5)
                QVERIFY(after.severityData(severity) == before.severityData(severity));
        }
        QVERIFY(after.severityData(4) == (AlarmSeverityData{4, QStringLiteral("a"), false, QColor(4, 1, 2)}));
        QVERIFY(after.severityData(5) == (AlarmSeverityData{5, QString(), false, QColor(5, 1, 2)}));
        QVERIFY(after.isMuted() && !after.isPopupShown() && !after.isSpeechOn());
    }

    void anEntryAsRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("severity");
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("popup");
        const auto row = [](const char* name, const char* text, int severity, const char* path, bool popup) {
            QTest::newRow(name) << json(text) << severity << QString::fromUtf8(path) << popup;
        };
        row("white space is allowed", " {\n'1' : { 'Path' : 'a' , 'UsePopup' : 1 } }\t", 1, "a", true);
        row("members in another order", "{'1':{'UsePopup':1,'Path':'a'}}", 1, "a", true);
        row("other names are ignored", "{'1':{'path':'b','Path':'a','Path ':'c','Path\\u0000':'d','X':[{}]}}", 1, "a",
            false);
        row("of names that stand twice the last wins", "{'1':{'Path':'a','Path':'b','UsePopup':1,'UsePopup':0}}", 1,
            "b", false);
        row("of names that stand twice the last wins, the other way round",
            "{'1':{'Path':'b','Path':'a','UsePopup':0,'UsePopup':1}}", 1, "a", true);
        row("of severities that stand twice the last wins whole", "{'1':{'Path':'a','UsePopup':1},'1':{'Path':'b'}}", 1,
            "b", false);
        row("a name that is no number is 0", "{'high':{'Path':'a'}}", 0, "a", false);
        row("a name in part a number is 0", "{'7x':{'Path':'a'}}", 0, "a", false);
        row("a name with a fraction is 0", "{'7.0':{'Path':'a'}}", 0, "a", false);
        row("a name beyond 32 bits is 0", "{'4294967297':{'Path':'a'}}", 0, "a", false);
        row("an empty name is 0", "{'':{'Path':'a'}}", 0, "a", false);
        row("of names that are no numbers the last wins", "{'x':{'Path':'a'},'0':{'Path':'b'},'y':{'Path':'c'}}", 0,
            "c", false);
        row("a name may have a sign and blanks", "{' +7 ':{'Path':'a'}}", 7, "a", false);
        row("a name with leading zeros is decimal", "{'010':{'Path':'a'}}", 10, "a", false);
        row("a path that is a number leaves it empty", "{'1':{'Path':5,'UsePopup':1}}", 1, "", true);
        row("a path that is null leaves it empty", "{'1':{'Path':null}}", 1, "", false);
        row("a path that is an object leaves it empty", "{'1':{'Path':{'Path':'a'}}}", 1, "", false);
        row("a path behind a wrong one", "{'1':{'Path':[],'Path':'a'}}", 1, "a", false);
        row("a path before a wrong one stays", "{'1':{'Path':'a','Path':5}}", 1, "a", false);
        row("a popup of 2", "{'1':{'UsePopup':2}}", 1, "", true);
        row("a popup of -1", "{'1':{'UsePopup':-1}}", 1, "", true);
        row("a popup of 256 has no low byte", "{'1':{'UsePopup':256}}", 1, "", false);
        row("a popup of 257 has one", "{'1':{'UsePopup':257}}", 1, "", true);
        row("a popup of 2^32 has no low byte", "{'1':{'UsePopup':4294967296}}", 1, "", false);
        row("a popup of 2^64 - 1 has one", "{'1':{'UsePopup':18446744073709551615}}", 1, "", true);
        row("a popup of 0.9 is 0", "{'1':{'UsePopup':0.9}}", 1, "", false);
        row("a popup of 1.0 is 1", "{'1':{'UsePopup':1.0}}", 1, "", true);
        row("a popup of 256.9 has no low byte", "{'1':{'UsePopup':256.9}}", 1, "", false);
        row("a double beyond 32 bits stays at their end, whose low byte is FF", "{'1':{'UsePopup':4294967296.0}}", 1,
            "", true);
        row("a negative one stays at theirs, whose low byte is 0", "{'1':{'UsePopup':-4294967297.0}}", 1, "", false);
        row("a popup beyond 64 bits is such a double", "{'1':{'UsePopup':18446744073709551616}}", 1, "", true);
        row("a popup of the greatest double too", "{'1':{'UsePopup':1.7976931348623157e308}}", 1, "", true);
        row("a popup that is true reads as 0", "{'1':{'UsePopup':true}}", 1, "", false);
        row("a popup that is a text reads as 0", "{'1':{'UsePopup':'1'}}", 1, "", false);
        row("a popup that is an array reads as 0", "{'1':{'UsePopup':[1]}}", 1, "", false);
    }
    void anEntryAsRead()
    {
        QFETCH(QString, text);
        QFETCH(int, severity);
        QFETCH(QString, path);
        QFETCH(bool, popup);
        AlarmDataInfo expected;
        expected.setSeverityData(severity, {severity, path, popup, QColor()});
        QVERIFY(readBy(AlarmDataInfo(), text).isEqual(expected));
    }

    void aRecordUnchanged_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("an empty text") << QString();
        QTest::newRow("no JSON") << QStringLiteral("alarm1.wav");
        QTest::newRow("an empty object") << json("{}");
        QTest::newRow("an empty array") << json("[]");
        QTest::newRow("an array of entries") << json("[{'1':{'Path':'a'}}]");
        QTest::newRow("a text") << json("'1'");
        QTest::newRow("a number") << json("1");
        QTest::newRow("null") << json("null");
        QTest::newRow("true") << json("true");
        QTest::newRow("two roots") << json("{'1':{'Path':'a'}} {}");
        QTest::newRow("a comma too many") << json("{'1':{'Path':'a'},}");
        QTest::newRow("a comment") << json("{'1':{'Path':'a'}} // x");
        QTest::newRow("an escape of half a pair") << json("{'1':{'Path':'\\ud83d'}}");
        QTest::newRow("a NUL inside a text") << json("{'1':{'Path':'a'},'2':{'Path':'b") + QChar(0) + json("'}}");
        QTest::newRow("a line's end inside a text") << json("{'1':{'Path':'a\n'}}");
        QTest::newRow("a number too large") << json("{'1':{'Path':'a','UsePopup':1e999}}");
        QTest::newRow("a byte order mark in front") << QChar(QChar::ByteOrderMark) + json("{'1':{'Path':'a'}}");
        QTest::newRow("entries that are no objects") << json("{'1':5,'2':'a','3':null,'4':[{'Path':'a'}],'12':true}");
        QTest::newRow("arrays, 100,000 deep") << nestedArrays(100000);
        QTest::newRow("arrays in an entry's place, 100,000 deep") << json("{'1':%1,'x':%1}").arg(nestedArrays(100000));
        QTest::newRow("an array never closed, 100,000 deep") << json("{'1':{'Path':'a','X':") + QString(100000, u'[');
    }
    void aRecordUnchanged()
    {
        QFETCH(QString, text);
        QVERIFY(readBy(filledInfo(), text).isEqual(filledInfo()));
    }

    void whatFollowsANulIsNotRead()
    {
        AlarmDataInfo expected;
        expected.setSoundPath(1, QStringLiteral("a"));
        QVERIFY(readBy(AlarmDataInfo(), json("{'1':{'Path':'a'}}") + QChar(0) + QLatin1Char('x')).isEqual(expected));
    }

    void halfOfAPairInATextIsReadAsAnotherCharacter()
    {
        AlarmDataInfo info;
        info.fromSettingInfo(json("{'1':{'Path':'a") + QChar(0xdc00) + json("b','UsePopup':1}}"));
        const QString path = info.severityData(1).soundPath;
        QCOMPARE(path.size(), 3);
        QVERIFY(path.startsWith(QLatin1Char('a')) && path.endsWith(QLatin1Char('b')) && !path.at(1).isSurrogate());
        QVERIFY(info.severityData(1).usePopup);
    }

    void whereverATextIsCutTheRecordIsUnchanged()
    {
        AlarmDataInfo other;
        for (int severity = 0; severity < 10; ++severity)
            other.setSoundPath(severity, QStringLiteral("\uacbd\ubcf4\\ \U0001f514.wav"));
        forEachCut(other.toSettingInfo(),
                   [](const QString& cut) { QVERIFY(readBy(filledInfo(), cut).isEqual(filledInfo())); });
    }

    void depthBesideAnEntryDoesNotHurtIt()
    {
        AlarmDataInfo expected;
        expected.setSeverityData(2, {2, QStringLiteral("a"), true, QColor()});
        const QString text = json("{'2':{'Path':'a','X':%1,'UsePopup':1},'1':{'Path':%2}}")
                                 .arg(nestedArrays(100000), nestedObjects(100000));
        QVERIFY(readBy(AlarmDataInfo(), text).isEqual(expected));
        QVERIFY(readBy(AlarmDataInfo(), nestedObjects(100000)).isEqual(AlarmDataInfo()));
    }

    void aHugePathIsRead()
    {
        const QString path(100000000, QLatin1Char('a'));
        const AlarmDataInfo info = readBy(AlarmDataInfo(), json("{'9':{'UsePopup':1,'Path':'%1'}}").arg(path));
        QVERIFY(info.severityData(9).soundPath == path);
        QVERIFY(info.severityData(9).usePopup);
    }
};

QTEST_GUILESS_MAIN(tst_AlarmDataInfo)
#include "tst_alarmdatainfo.moc"
