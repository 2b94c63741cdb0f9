// The demonstration's list of points with recordings of the plant that it describes, where those are at hand.

#include "host/runtime/pointlist.h"
#include "host/sources/recordingsource.h"
#include "tests/support/sourcelistener.h"

#include <QtTest>

#include <cmath>

using Times = SourceAddress::Times;
using Object = RuntimeDatabase::Object;

namespace {

QString sourceFolder()
{
    return QStringLiteral(KORVANE_SOURCE_DIR);
}

QString recordingPath(const QString& name)
{
    return sourceFolder() + QStringLiteral("/../shared/recordings/water-loop/") + name;
}

std::vector<SourcePoint> sourcePoints(const PointList::Result& list)
{
    std::vector<SourcePoint> points;
    for (const Object& object : list.objects)
        points.push_back({{object.type, object.id}, object.name, object.address});
    return points;
}

/// The recordings have no quotes, so splitting is all there is to reading them.
std::vector<QStringList> readPlainly(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    std::vector<QStringList> rows;
    while (!file.atEnd())
        rows.push_back(QString::fromLatin1(file.readLine()).trimmed().split(QLatin1Char(';')));
    return rows;
}

/// How many values stand outside of the point's limits.
int countBeyondLimits(const Object& object, const std::vector<Sample>& samples)
{
    return int(std::count_if(samples.begin(), samples.end(), [&object](const Sample& sample) {
        return sample.object.id == object.id && (sample.value < object.low || sample.value > object.high);
    }));
}

} // namespace

class tst_WaterLoopRecordings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const auto list = PointList::read(sourceFolder() + QStringLiteral("/demo/water-loop/points.csv"));
        QVERIFY2(list, list ? "" : qPrintable(list.error()));
        m_list = *list;
    }

    void theListOfPointsIsSound()
    {
        QCOMPARE(m_list.problems, QStringList());
        QCOMPARE(m_list.objects.size(), std::size_t(16)); // one of them is entered by hand
        RuntimeDatabase database;
        for (const Object& object : m_list.objects) {
            QVERIFY(database.add(object));
            QCOMPARE(object.station, QStringLiteral("Water loop"));
            const bool isManual = object.control.kind == ControlSetting::Kind::Manual;
            QCOMPARE(object.staleAfter.count(), qint64(isManual ? 0 : 10000));
            const bool isDigital = object.type == Korvane::ScadaObjectType::DigitalPoint;
            QCOMPARE(object.states.size(), isDigital ? 2 : 0);
            QCOMPARE(object.unit.isEmpty(), isDigital);
        }
        const auto temperature = std::find_if(m_list.objects.begin(), m_list.objects.end(), [](const Object& object) {
            return object.name == QStringLiteral("P101.TEMPERATURE");
        });
        QCOMPARE(temperature->unit, QStringLiteral("\u00B0C"));
    }

    void playsWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QStringList>("unknown");
        const QStringList labels{QStringLiteral("anomaly"), QStringLiteral("changepoint")};
        QTest::newRow("normal") << QStringLiteral("normal.csv") << 9405 << QStringList();
        QTest::newRow("inlet valve closing") << QStringLiteral("inlet-valve-closing.csv") << 1145 << labels;
        QTest::newRow("sudden water increase") << QStringLiteral("sudden-water-increase.csv") << 1190 << labels;
    }

    void playsWhole()
    {
        QFETCH(QString, name);
        QFETCH(int, rows);
        QFETCH(QStringList, unknown);
        const QString path = recordingPath(name);
        if (!QFileInfo::exists(path))
            return skip();
        RecordingOptions options;
        options.zone = QTimeZone("Europe/Moscow"); // UTC+3 the whole year
        RecordingSource source(path, sourcePoints(m_list), options);
        SourceListener heard(source);
        source.start(source.firstTimeMs().value());
        for (qint64 now = source.firstTimeMs().value(); source.state() == ValueSource::State::Running; now += 10000)
            source.advance(now);
        QCOMPARE(source.state(), ValueSource::State::Ended);
        QCOMPARE(source.problemCount(), qint64(0));
        QStringList expectedProblems;
        for (const QString& column : unknown)
            expectedProblems.append(QStringLiteral("%1, line 1: column \"%2\" belongs to no point").arg(path, column));
        QCOMPARE(heard.problems, expectedProblems);
        QCOMPARE(heard.samples.size(), std::size_t(rows) * 8);
        compareWithPlainReading(heard.samples, readPlainly(path));
    }

    void limitsMarkWhatIsUnusual()
    {
        const QString normal = recordingPath(QStringLiteral("normal.csv"));
        if (!QFileInfo::exists(normal))
            return skip();
        const auto marks = [this](const QString& name) {
            RecordingSource source(recordingPath(name), sourcePoints(m_list), {});
            SourceListener heard(source);
            source.start(0);
            source.advance(std::numeric_limits<qint64>::max());
            QStringList marked;
            for (const Object& object : m_list.objects) {
                if (countBeyondLimits(object, heard.samples) > 0)
                    marked.append(object.name);
            }
            return marked;
        };
        QCOMPARE(marks(QStringLiteral("normal.csv")), QStringList());
        QCOMPARE(marks(QStringLiteral("inlet-valve-closing.csv")), QStringList{QStringLiteral("P101.FLOW")});
        QCOMPARE(marks(QStringLiteral("sudden-water-increase.csv")),
                 (QStringList{QStringLiteral("P101.VIBRATION_1"), QStringLiteral("P101.VIBRATION_2")}));
    }

private:
    /// What QSKIP does; the macro lacks an argument by clang's -pedantic.
    static void skip()
    {
        QTest::qSkip("the recordings of the water loop are not beside the project", __FILE__, __LINE__);
    }

    void compareWithPlainReading(const std::vector<Sample>& samples, const std::vector<QStringList>& rows)
    {
        std::size_t at = 0;
        for (std::size_t row = 1; row < rows.size(); ++row) {
            const QDateTime local = QDateTime::fromString(rows[row][0], QStringLiteral("yyyy-MM-dd HH:mm:ss"));
            const QDateTime time(local.date(), local.time(), Qt::OffsetFromUTC, 3 * 3600);
            for (int column = 1; column < 9; ++column, ++at) {
                const auto object = std::find_if(m_list.objects.begin(), m_list.objects.end(),
                                                 [&](const Object& known) { return known.address == rows[0][column]; });
                QCOMPARE(samples[at].object.id, object->id);
                QCOMPARE(samples[at].timeMs, time.toMSecsSinceEpoch());
                QCOMPARE(samples[at].value, rows[row][column].toDouble());
                QCOMPARE(samples[at].quality, 0);
            }
        }
        QCOMPARE(at, samples.size());
    }

    PointList::Result m_list;
};

QTEST_GUILESS_MAIN(tst_WaterLoopRecordings)
#include "tst_waterlooprecordings.moc"
