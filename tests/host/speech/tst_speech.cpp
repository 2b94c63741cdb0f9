#include "host/speech/espeak_p.h"
#include "host/speech/speechlibraries.h"
#include "scada/audio/korvanettsinterface.h"
#include "tests/host/speech/ownlength.h"
#include "tests/host/speech/speechengine.h"
#include "tests/support/heardspeech.h"

#include <QProcess>
#include <QtTest>

#include <clocale>

using namespace SpeechEntryPoints;

namespace {

const QByteArray english = "Pump one has tripped";
const QByteArray korean = "\xED\x8E\x8C\xED\x94\x84 28"; // pump 28: Hangul alone would be Korean in any voice
const QByteArray other = "Level high";

/// Minutes of speech.
QByteArray longText()
{
    return QByteArray("The water level of the northern basin is above its limit. ").repeated(40);
}

} // namespace

class tst_Speech : public QObject
{
    Q_OBJECT

public:
    explicit tst_Speech(const HeardSpeech& heard) : m_heard(heard) {}

private Q_SLOTS:
    void initTestCase()
    {
        std::setlocale(LC_CTYPE, "C");
        for (const SpeechLibraries::Found& found : SpeechLibraries::prepare())
            QCOMPARE(found.problem, QString());
        m_english = std::make_unique<SpeechEngine>("vt_ENG", "ENG");
        m_korean = std::make_unique<SpeechEngine>("vt_kor", "KOR");
        init(); // whoever found the libraries, espeak-ng runs from here on
        cleanup();
        QCOMPARE(std::setlocale(LC_CTYPE, nullptr), "C"); // espeak-ng's own stays its own
    }

    void init()
    {
        QCOMPARE(m_english->load(nullptr, -1, nullptr, nullptr), std::int16_t(Success));
        QCOMPARE(m_korean->load(nullptr, -1, nullptr, nullptr), std::int16_t(Success));
        m_heard.forget();
    }

    void cleanup()
    {
        m_english->unload(-1);
        m_korean->unload(-1);
    }

    void aMessageIsHeard_data()
    {
        QTest::addColumn<bool>("isKorean");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("English") << false << english;
        QTest::newRow("Korean") << true << korean;
        QTest::newRow("two sentences") << false << QByteArray("Pump one has tripped. Level high.");
        QTest::newRow("a word") << false << QByteArray("no");
    }

    void aMessageIsHeard()
    {
        QFETCH(bool, isKorean);
        QFETCH(QByteArray, text);
        QCOMPARE((isKorean ? m_korean : m_english)->say(text), std::int16_t(Success));
        const int wanted = ownLength(isKorean ? "ko" : "en", text);
        QTRY_VERIFY2(isAbout(m_heard.newestLength(), wanted), qPrintable(QString::number(wanted)));

        const QVector<HeardSpeech::Recording> heard = m_heard.recordings();
        QCOMPARE(heard.size(), 1);
        QVERIFY(peakOf(heard.first()) < 32767);
        QVERIFY(loudnessOf(heard.first()) > 1000);
    }

    void theSpeechFrontEndIsHeard()
    {
        KorvaneTTSInterface speech(nullptr);
        speech.playMessage(QString::fromUtf8(korean), QLocale::Korean);
        const int wanted = ownLength("ko", korean);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
        speech.playMessage(QString::fromUtf8(english), QLocale::English);
        const int wantedThen = ownLength("en", english);
        QTRY_COMPARE(m_heard.recordings().size(), 2);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wantedThen));
    }

    void aMessageTakesThePlaceOfTheOneSpoken_data()
    {
        QTest::addColumn<bool>("isKorean");
        QTest::newRow("in its language") << false;
        QTest::newRow("in the other language") << true;
    }

    void aMessageTakesThePlaceOfTheOneSpoken()
    {
        QFETCH(bool, isKorean);
        m_english->say(longText());
        QTRY_VERIFY(m_heard.newestLength() > 0);
        (isKorean ? m_korean : m_english)->say(isKorean ? korean : other);
        const int wanted = isKorean ? ownLength("ko", korean) : ownLength("en", other);
        QTRY_COMPARE(m_heard.recordings().size(), 2);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
        QVERIFY(m_heard.recordings().first().size() < ownLength("en", longText()) / 2);
    }

    void ofMessagesAtOnceTheLastIsHeard()
    {
        m_english->say(longText());
        m_korean->say(korean);
        m_english->say(other);
        const int wanted = ownLength("en", other);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
        QCOMPARE(m_heard.recordings().size(), 1);
    }

    void playReturnsBeforeTheSynthesisBegins()
    {
        // espeak-ng is at work, and play would wait for it if it needed it to return.
        bool hasReturned = false;
        const auto playMeanwhile = [this, &hasReturned] {
            if (!hasReturned)
                m_english->say(other);
            hasReturned = true;
            return true;
        };
        QVERIFY(
            !Espeak::instance().synthesise({SpeechLanguage::English, QStringLiteral("one")}, playMeanwhile).isEmpty());
        QVERIFY(hasReturned);
        QCOMPARE(m_heard.newestLength(), 0);
        const int wanted = ownLength("en", other);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
    }

    void aTextForABufferLeavesWhatIsSpoken()
    {
        m_english->say(other);
        std::array<char, 64> buffer{};
        std::int32_t size = buffer.size();
        QCOMPARE(m_english->textToBuffer(-1, english, buffer.data(), &size, FirstPiece, -1, -1, -1, -1, -1, -1, -1),
                 std::int16_t(Success));
        const int wanted = ownLength("en", other);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
        QCOMPARE(m_heard.recordings().size(), 1);
    }

    void whatIsSpokenIsEnded_data()
    {
        QTest::addColumn<QString>("by");
        QTest::newRow("by stop") << QStringLiteral("stop");
        QTest::newRow("by an empty text") << QStringLiteral("empty");
        QTest::newRow("by blanks") << QStringLiteral("blanks");
        QTest::newRow("by unload") << QStringLiteral("unload");
        QTest::newRow("by an empty text in the other language") << QStringLiteral("other empty");
    }

    void whatIsSpokenIsEnded()
    {
        QFETCH(QString, by);
        m_english->say(longText());
        QTRY_VERIFY(m_heard.newestLength() > 0);
        end(by);
        const int before = m_heard.newestLength();
        waitForOtherSpeech();
        QCOMPARE(m_heard.newestLength(), before);
        sayKoreanToTheEnd();
        const QVector<HeardSpeech::Recording> heard = m_heard.recordings();
        QCOMPARE(heard.size(), 2);
        QVERIFY(heard.first().size() < ownLength("en", longText()) / 2);
        if (by == QLatin1String("unload"))
            m_english->load(nullptr, -1, nullptr, nullptr);
    }

    void whatIsNotHeardYetIsEndedToo_data() { whatIsSpokenIsEnded_data(); }

    void whatIsNotHeardYetIsEndedToo()
    {
        QFETCH(QString, by);
        m_english->say(english);
        end(by);
        waitForOtherSpeech();
        QCOMPARE(m_heard.newestLength(), 0);
        sayKoreanToTheEnd();
        QCOMPARE(m_heard.recordings().size(), 1);
        if (by == QLatin1String("unload"))
            m_english->load(nullptr, -1, nullptr, nullptr);
    }

    void theOtherLanguageIsLeftAlone()
    {
        m_english->say(english);
        m_korean->stop();
        m_korean->pause();
        m_korean->unload(-1);
        const int wanted = ownLength("en", english);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
        m_korean->load(nullptr, -1, nullptr, nullptr);
    }

    void aHeldMessageGoesOnWhereItWasHeld()
    {
        const QByteArray text = longText().left(180);
        const int wanted = ownLength("en", text);
        m_english->say(text);
        QTRY_VERIFY(m_heard.newestLength() > 0);
        m_english->pause();
        const int before = m_heard.newestLength();
        m_korean->restart(); // not its message
        waitForOtherSpeech();
        QCOMPARE(m_heard.newestLength(), before);
        QVERIFY(before < wanted / 2);

        m_english->restart();
        QTRY_VERIFY_WITH_TIMEOUT(isAbout(m_heard.newestLength(), wanted), 30000);
        QCOMPARE(m_heard.recordings().size(), 1);
    }

    void aMessageIsHeldBeforeItsFirstSound()
    {
        m_english->say(english);
        m_english->pause();
        waitForOtherSpeech();
        QCOMPARE(m_heard.newestLength(), 0);
        m_english->restart();
        const int wanted = ownLength("en", english);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
    }

    void aMessageAfterAHeldOneIsSpoken()
    {
        m_english->say(english);
        m_english->pause();
        m_english->say(other);
        const int wanted = ownLength("en", other);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
        m_english->restart(); // nothing is held any more
        waitForOtherSpeech();
        QCOMPARE(m_heard.recordings().size(), 1);
    }

    void eachLoadWantsItsUnload()
    {
        QCOMPARE(m_english->load(nullptr, 0, nullptr, nullptr), std::int16_t(Success));
        m_english->unload(-1);
        QCOMPARE(m_english->say(other), std::int16_t(Success));
        m_english->unload(-1);
        QCOMPARE(m_english->say(other), std::int16_t(NotLoaded));
        m_english->unload(-1); // one too many
        QCOMPARE(m_english->load(nullptr, -1, nullptr, nullptr), std::int16_t(Success));
        QCOMPARE(m_english->say(other), std::int16_t(Success));
        QCOMPARE(m_english->load(nullptr, 1, nullptr, nullptr), std::int16_t(BadArgument));
    }

    void controlsWithoutALoadDoNothing()
    {
        cleanup();
        m_english->stop();
        m_english->pause();
        m_english->restart();
        QCOMPARE(m_english->say(other), std::int16_t(NotLoaded));
        init();
    }

private:
    void end(const QString& by) const
    {
        if (by == QLatin1String("stop"))
            m_english->stop();
        else if (by == QLatin1String("unload"))
            m_english->unload(-1);
        else if (by == QLatin1String("other empty"))
            m_korean->say("");
        else
            m_english->say(by == QLatin1String("blanks") ? " \n" : "");
    }

    void sayKoreanToTheEnd() const
    {
        const int before = m_heard.recordings().size();
        m_korean->say(korean);
        const int wanted = ownLength("ko", korean);
        QTRY_COMPARE(m_heard.recordings().size(), before + 1);
        QTRY_VERIFY(isAbout(m_heard.newestLength(), wanted));
    }

    /// Lets the events of this program come while another one speaks a long text.
    static void waitForOtherSpeech()
    {
        QProcess program;
        program.start(QStringLiteral(KORVANE_OWN_SYNTHESIS),
                      {QStringLiteral("en"), QString::fromUtf8(longText().repeated(4))});
        QTRY_VERIFY_WITH_TIMEOUT(program.state() == QProcess::NotRunning, 20000);
        QCOMPARE(program.exitCode(), 0);
    }

    const HeardSpeech& m_heard;
    std::unique_ptr<SpeechEngine> m_english;
    std::unique_ptr<SpeechEngine> m_korean;
};

int main(int argc, char** argv)
{
    const HeardSpeech heard;
    const QCoreApplication application(argc, argv);
    tst_Speech test(heard);
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_speech.moc"
