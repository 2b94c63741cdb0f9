// The demonstration from the recording to the ear: what a sound server hears of its alarms.

#include "tests/support/pulseserver.h"
#include "tests/support/temporaryfiles.h"

#include <QFile>
#include <QProcess>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr int rate = 22050;
constexpr int bytesPerSample = 2;

QString fromUtf8(const char* text)
{
    return QString::fromUtf8(text);
}

QString demoFolder()
{
    return QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
}

/// The samples of one of the demo's sounds, without the silence at its ends.
QByteArray samplesOf(const char* name)
{
    QFile file(demoFolder() + QStringLiteral("/sounds/%1.wav").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is not there", qPrintable(file.fileName()));
    constexpr int headerBytes = 44;
    QByteArray samples = file.readAll().mid(headerBytes);
    while (samples.startsWith(QByteArray(bytesPerSample, '\0')))
        samples.remove(0, bytesPerSample);
    while (samples.endsWith(QByteArray(bytesPerSample, '\0')))
        samples.chop(bytesPerSample);
    return samples;
}

std::vector<qint16> numbers(const QByteArray& samples)
{
    std::vector<qint16> numbers(static_cast<std::size_t>(samples.size() / bytesPerSample));
    std::memcpy(numbers.data(), samples.constData(), numbers.size() * bytesPerSample);
    return numbers;
}

/// The stretches that are not silence, in samples; pauses up to a third of a second belong to them.
std::vector<std::pair<std::size_t, std::size_t>> stretches(const std::vector<qint16>& samples)
{
    constexpr std::size_t longestPause = rate / 3;
    std::vector<std::pair<std::size_t, std::size_t>> found;
    for (std::size_t place = 0; place < samples.size(); ++place) {
        if (samples[place] == 0)
            continue;
        if (found.empty() || place - found.back().second > longestPause)
            found.emplace_back(place, place);
        found.back().second = place;
    }
    return found;
}

/// A recording of a flow that falls below both limits after five seconds, for half a minute.
QByteArray fallingFlow()
{
    QByteArray text = "datetime;P101.FLOW\n";
    const QDateTime begin(QDate(2026, 3, 2), QTime(8, 0), Qt::UTC);
    for (int second = 0; second < 80; ++second) {
        const bool isLow = second >= 5 && second < 35;
        text += begin.addSecs(second).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss;")).toLatin1() +
                (isLow ? "30" : "125") + '\n';
    }
    return text;
}

} // namespace

class tst_HeardAlarms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDemonstrationIsHeard_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("lines");
        const QString made = m_files.write(QStringLiteral("falling.csv"), fallingFlow());
        QTest::newRow("a flow that falls and comes back")
            // Long enough for the sound to come again, should the machine have held up the first.
            << QStringLiteral("recording:%1?speed=16").arg(made) << QStringLiteral("10s")
            << QStringList{fromUtf8("2026-03-02 08:00:15.000  raised  8  P101.FLOW  Flow very low (unacknowledged)"),
                           fromUtf8("2026-03-02 08:00:15.000  raised  5  P101.FLOW  Flow low (unacknowledged)"),
                           fromUtf8("2026-03-02 08:00:45.000  returned  8  P101.FLOW  Flow very low (returned "
                                    "unacknowledged)"),
                           fromUtf8("2026-03-02 08:00:45.000  returned  5  P101.FLOW  Flow low (returned "
                                    "unacknowledged)")};
        const QString recorded =
            QStringLiteral(KORVANE_SOURCE_DIR "/../shared/recordings/water-loop/inlet-valve-closing.csv");
        if (!QFile::exists(recorded))
            return;
        QTest::newRow("the inlet valve closes")
            << QStringLiteral("recording:%1?speed=150").arg(recorded) << QStringLiteral("14s")
            << QStringList{fromUtf8("2020-03-09 10:34:43.000  raised  5  P101.FLOW  Flow low (unacknowledged)"),
                           fromUtf8("2020-03-09 10:45:33.000  raised  8  P101.FLOW  Flow very low (unacknowledged)"),
                           fromUtf8("2020-03-09 10:51:12.000  returned  8  P101.FLOW  Flow very low (returned "
                                    "unacknowledged)")};
    }

    void theDemonstrationIsHeard()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, after);
        QFETCH(const QStringList, lines);
        PulseServer server;
        QVERIFY(server.start());

        QProcess runtime;
        QProcessEnvironment environment = server.environment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        runtime.setProcessEnvironment(environment);
        runtime.start(QStringLiteral(KORVANE_RUNTIME),
                      {demoFolder(), QStringLiteral("--source"), source, QStringLiteral("--after"), after,
                       QStringLiteral("--no-store")});
        // Within an event loop, which takes what the recorder hears.
        QVERIFY(QTest::qWaitFor([&runtime] { return runtime.state() == QProcess::NotRunning; }, 60000));
        QCOMPARE(runtime.exitCode(), 0);
        const QStringList printed = QString::fromUtf8(runtime.readAllStandardOutput()).split(QLatin1Char('\n'));
        for (const QString& line : lines)
            QVERIFY2(printed.contains(line), qPrintable(line + QLatin1Char('\n') + printed.join(QLatin1Char('\n'))));

        const QByteArray heard = server.stop();
        const int tone = heard.indexOf(samplesOf("urgent"));
        QVERIFY2(tone >= 0 && tone % bytesPerSample == 0, "the sound of severity 8 was not heard, sample for sample");
        checkSpeech(numbers(heard.mid(tone + samplesOf("urgent").size())));
    }

private:
    // Behind the tone comes the voice: "Flow very low", and how many more.
    static void checkSpeech(const std::vector<qint16>& behindTone)
    {
        const auto parts = stretches(behindTone);
        QVERIFY2(!parts.empty(), "nothing was spoken");
        const auto [first, last] = parts.front();
        const double seconds = static_cast<double>(last - first) / rate;
        QVERIFY2(seconds > 0.5 && seconds < 5, qPrintable(QString::number(seconds)));
        double sum = 0;
        int peak = 0;
        for (std::size_t place = first; place <= last; ++place) {
            sum += double(behindTone[place]) * behindTone[place];
            peak = std::max(peak, std::abs(int(behindTone[place])));
        }
        QVERIFY(std::sqrt(sum / static_cast<double>(last - first + 1)) > 300); // no hum, no silence
        QVERIFY(peak < 32767);
    }

    TemporaryFiles m_files;
};

QTEST_GUILESS_MAIN(tst_HeardAlarms)

#include "tst_heardalarms.moc"
