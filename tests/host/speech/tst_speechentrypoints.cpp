#include "host/speech/espeak_p.h"
#include "host/speech/speechlibraries.h"
#include "tests/host/speech/ownlength.h"
#include "tests/host/speech/speechengine.h"
#include "tests/support/heardspeech.h"

#include <QtTest>

using namespace SpeechEntryPoints;

namespace {

const QByteArray english = "Pump one has tripped";

} // namespace

class tst_SpeechEntryPoints : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        SpeechLibraries::prepare();
        m_english = std::make_unique<SpeechEngine>("vt_ENG", "ENG");
        QCOMPARE(m_english->load(nullptr, -1, nullptr, nullptr), std::int16_t(Success));
    }

    void cleanupTestCase() { m_english->unload(-1); }

    void informationIsGiven()
    {
        std::int32_t value = 7;
        QCOMPARE(m_english->info(1, nullptr, &value, 4), 0);
        QCOMPARE(value, 1);
        QCOMPARE(m_english->info(4, nullptr, &value, 4), 0);
        QCOMPARE(value, 0);
        value = 7;
        QCOMPARE(m_english->info(2, nullptr, &value, 4), -1);
        QCOMPARE(m_english->info(1, nullptr, &value, 2), -1);
        QCOMPARE(m_english->info(1, nullptr, nullptr, 4), -1);
        QCOMPARE(value, 7);
    }

    void aTextComesInPieces()
    {
        const QByteArray sound = fetch(english, 1000);
        QVERIFY(isAbout(sound.size() / 2, ownLength("en", english)));
    }

    void aTextBegunIsDropped()
    {
        std::array<char, 100> buffer{};
        std::int32_t size = buffer.size();
        QCOMPARE(piece(english, buffer.data(), &size, FirstPiece), std::int16_t(Success));
        QCOMPARE(size, 100);
        QCOMPARE(piece(nullptr, nullptr, nullptr, NoMorePiece), std::int16_t(Success));
        QCOMPARE(piece(nullptr, buffer.data(), &size, NextPiece), std::int16_t(Success));
        QCOMPARE(size, 0);
    }

    void piecesNeedRoom()
    {
        std::array<char, 8> buffer{};
        std::int32_t size = 1;
        QCOMPARE(piece(english, buffer.data(), &size, FirstPiece), std::int16_t(BadArgument));
        size = 3;
        QCOMPARE(piece(english, buffer.data(), &size, FirstPiece), std::int16_t(BadArgument));
        size = 8;
        QCOMPARE(piece(english, nullptr, &size, FirstPiece), std::int16_t(BadArgument));
        QCOMPARE(piece(english, buffer.data(), nullptr, FirstPiece), std::int16_t(BadArgument));
        QCOMPARE(piece(english, buffer.data(), &size, 3), std::int16_t(BadArgument));
    }

    void aTextIsWrittenAsAFile()
    {
        const TemporaryFiles files;
        const QString path = files.write(QStringLiteral("\uC18C\uB9AC.wav"), "before");
        QCOMPARE(write(english, path.toLocal8Bit()), std::int16_t(Success));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const int samples = (bytes.size() - 44) / 2;
        QVERIFY(isAbout(samples, ownLength("en", english)));
        // RIFF, length of the rest, WAVE, "fmt ", 16 bytes: PCM, mono, 22050 Hz, 44100 bytes a second, 2 a sample, 16 bits
        QCOMPARE(bytes.left(4).toHex(), QByteArray("52494646"));
        QCOMPARE(bytes.mid(4, 4), lengthBytes(bytes.size() - 8));
        QCOMPARE(bytes.mid(8, 32).toHex(), QByteArray("57415645666d7420100000000100010022560000"
                                                      "44ac00000200100064617461"));
        QCOMPARE(bytes.mid(40, 4), lengthBytes(samples * 2));
        HeardSpeech::Recording recording(samples);
        std::memcpy(recording.data(), bytes.constData() + 44, std::size_t(samples) * 2);
        QVERIFY(loudnessOf(recording) > 1000);
    }

    void aFileThatCantBeWrittenIsTold()
    {
        const TemporaryFiles files;
        QCOMPARE(write(english, files.path(QStringLiteral("none/a.wav")).toLocal8Bit()), std::int16_t(NotWritten));
        QCOMPARE(write(english, nullptr), std::int16_t(BadArgument));
    }

    void settingsAreHeard()
    {
        const QByteArray text = "Pump one has tripped. Level high. Pump two has tripped.";
        const QByteArray plain = fetch(text, 4096);
        const QByteArray fast = fetch(text, 4096, {-1, 200, -1, -1});
        const QByteArray quiet = fetch(text, 4096, {-1, -1, 25, -1});
        const QByteArray high = fetch(text, 4096, {200, -1, -1, -1});
        const QByteArray apart = fetch(text, 4096, {-1, -1, -1, 500});
        const QByteArray given = fetch(text, 4096, {100, 100, 100, 0});

        QVERIFY(fast.size() < plain.size() * 7 / 10);
        QVERIFY(loudnessOf(samplesOf(quiet)) < loudnessOf(samplesOf(plain)) / 2);
        QVERIFY(loudnessOf(samplesOf(quiet)) > 100);
        QVERIFY(crossings(high) > crossings(plain));
        QVERIFY(isAbout(given.size() / 2, plain.size() / 2));
        // twice half a second, between three sentences
        QVERIFY(isAbout(apart.size() / 2, plain.size() / 2 + 22050));
        QVERIFY(longestSilence(plain) < 11025);
        QVERIFY(longestSilence(apart) >= 11025);
    }

    void settingsOutOfTheirRangeAreRefused_data()
    {
        QTest::addColumn<QVector<int>>("settings");
        QTest::newRow("too low a voice") << QVector<int>{-2, -1, -1, -1, -1, -1, -1};
        QTest::newRow("too high a voice") << QVector<int>{201, -1, -1, -1, -1, -1, -1};
        QTest::newRow("too slow") << QVector<int>{-1, 49, -1, -1, -1, -1, -1};
        QTest::newRow("too fast") << QVector<int>{-1, 251, -1, -1, -1, -1, -1};
        QTest::newRow("too loud") << QVector<int>{-1, -1, 101, -1, -1, -1, -1};
        QTest::newRow("negative volume") << QVector<int>{-1, -1, -2, -1, -1, -1, -1};
        QTest::newRow("too long a pause") << QVector<int>{-1, -1, -1, 60001, -1, -1, -1};
        QTest::newRow("another dictionary") << QVector<int>{-1, -1, -1, -1, 1, -1, -1};
        QTest::newRow("another kind of text") << QVector<int>{-1, -1, -1, -1, -1, 1, -1};
        QTest::newRow("another speaker") << QVector<int>{-1, -1, -1, -1, -1, -1, 1};
    }

    void settingsOutOfTheirRangeAreRefused()
    {
        QFETCH(QVector<int>, settings);
        const auto play = [this](const char* text, const QVector<int>& s) {
            return m_english->play(nullptr, 0, text, s[0], s[1], s[2], s[3], s[4], s[5], s[6]);
        };
        QCOMPARE(play("a", settings), std::int16_t(BadArgument));
        for (int& setting : settings)
            setting = -1;
        QCOMPARE(play(nullptr, settings), std::int16_t(BadArgument));
        QCOMPARE(play("a", settings), std::int16_t(Success));
    }

    void aSynthesisIsGivenUp()
    {
        int asked = 0;
        const SpeechRequest request{SpeechLanguage::English,
                                    QString::fromUtf8(QByteArray("The water level is above its limit. ").repeated(40))};
        const QByteArray begun = Espeak::instance().synthesise(request, [&asked] { return ++asked < 3; });
        QVERIFY(!begun.isEmpty());
        QVERIFY(begun.size() / 2 <= 3 * oneBuffer);
    }

private:
    using Settings = std::array<int, 4>;
    static constexpr Settings defaults{-1, -1, -1, -1};

    std::int16_t piece(const char* text, char* buffer, std::int32_t* size, int which,
                       const Settings& settings = defaults) const
    {
        return m_english->textToBuffer(-1, text, buffer, size, which, settings[0], settings[1], settings[2],
                                       settings[3], -1, -1, -1);
    }

    QByteArray fetch(const QByteArray& text, int room, const Settings& settings = defaults) const
    {
        QByteArray all;
        std::vector<char> buffer(static_cast<std::size_t>(room));
        std::int32_t size = room;
        for (int which = FirstPiece; size == room; which = NextPiece) {
            if (piece(which == FirstPiece ? text.constData() : nullptr, buffer.data(), &size, which, settings) !=
                Success)
                qFatal("piece %d was not given", which);
            all.append(buffer.data(), size);
        }
        return all;
    }

    std::int16_t write(const QByteArray& text, const char* fileName) const
    {
        return m_english->textToFile(-1, text.constData(), fileName, -1, -1, -1, -1, -1, -1, -1);
    }

    static QByteArray lengthBytes(int length)
    {
        QByteArray bytes;
        for (int shift = 0; shift < 32; shift += 8)
            bytes.append(static_cast<char>(length >> shift & 0xff));
        return bytes;
    }

    static HeardSpeech::Recording samplesOf(const QByteArray& sound)
    {
        HeardSpeech::Recording samples(sound.size() / 2);
        std::memcpy(samples.data(), sound.constData(), std::size_t(samples.size()) * 2);
        return samples;
    }

    static int longestSilence(const QByteArray& sound)
    {
        int longest = 0;
        int now = 0;
        for (const qint16 sample : samplesOf(sound)) {
            now = sample == 0 ? now + 1 : 0;
            longest = qMax(longest, now);
        }
        return longest;
    }

    /// How often the sound crosses zero: more often when it is higher.
    static int crossings(const QByteArray& sound)
    {
        int count = 0;
        qint16 before = 0;
        for (const qint16 sample : samplesOf(sound)) {
            if ((sample < 0) != (before < 0))
                ++count;
            before = sample;
        }
        return count;
    }

    std::unique_ptr<SpeechEngine> m_english;
};

int main(int argc, char** argv)
{
    const HeardSpeech card;
    const QCoreApplication application(argc, argv);
    tst_SpeechEntryPoints test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_speechentrypoints.moc"
