#include "host/alarms/alarmannunciator.h"

#include "host/alarms/alarmmanager.h"
#include "scada/audio/korvanettsinterface.h"
#include "scada/audio/waveplayer.h"

#include <QAudioDeviceInfo>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// Korean where the text has a syllable or letter of it: messages come in the language of their plant, whatever that of
/// the program is.
QLocale::Language languageOf(const QString& text)
{
    const auto isHangul = [](QChar c) { return c.script() == QChar::Script_Hangul; };
    return std::any_of(text.begin(), text.end(), isHangul) ? QLocale::Korean : QLocale::English;
}

QString summed(const QString& message, int others)
{
    if (others == 0)
        return message;
    const QString pattern =
        languageOf(message) == QLocale::Korean ? QStringLiteral("%1, 외 %2건") : QStringLiteral("%1, and %2 more");
    return pattern.arg(message, QString::number(others));
}

/// How long a voice needs at most, roughly: our own speaks 12 to 15 letters a second, a Korean syllable is about three.
Milliseconds speakingTime(const QString& text)
{
    const int letters = languageOf(text) == QLocale::Korean ? text.size() * 3 : text.size();
    return Milliseconds(500 + letters * 90);
}

} // namespace

AlarmAnnunciator::AlarmAnnunciator(AlarmManager& manager, WavePlayer& player, KorvaneTTSInterface* speech,
                                   const AlarmPresentation& presentation, QObject* parent)
    : QObject(parent), m_manager(manager), m_player(player), m_speech(speech), m_presentation(presentation)
{
    for (QTimer* timer : {&m_update, &m_repeat, &m_speaking, &m_reminder})
        timer->setSingleShot(true);
    m_update.setInterval(0);
    connect(&m_manager, &AlarmManager::transitioned, this, &AlarmAnnunciator::take);
    connect(&m_player, &WavePlayer::stateChanged, this, &AlarmAnnunciator::heedPlayer);
    connect(&m_update, &QTimer::timeout, this, &AlarmAnnunciator::update);
    connect(&m_repeat, &QTimer::timeout, this, [this] {
        m_isRepeatDue = true;
        update();
    });
    connect(&m_speaking, &QTimer::timeout, this, &AlarmAnnunciator::update);
    connect(&m_reminder, &QTimer::timeout, this, &AlarmAnnunciator::remind);
    // What stood when the program began waits for an operator as well.
    if (m_manager.highestUnacknowledgedSeverity() >= 0)
        QTimer::singleShot(0, this, &AlarmAnnunciator::remind);
}

AlarmAnnunciator::~AlarmAnnunciator()
{
    m_player.disconnect(this);
    if (m_sounding >= 0)
        m_player.stop();
}

void AlarmAnnunciator::take(const AlarmTransition& transition)
{
    using Kind = AlarmTransition::Kind;
    const ScadaAlarm& alarm = transition.alarm;
    const bool isNew = alarm.isUnacknowledged() && transition.kind != Kind::Returned && alarm.id != 0;
    if (isNew) {
        m_unspoken.push_back({alarm.id, alarm.severity, alarm.message});
        m_isSilenced = false;
    }
    if (!m_update.isActive())
        m_update.start();
}

void AlarmAnnunciator::silence()
{
    m_isSilenced = true;
    m_unspoken.clear();
    update();
}

void AlarmAnnunciator::setMuted(bool muted)
{
    m_presentation.severities.setMuted(muted);
    update();
}

void AlarmAnnunciator::setSpeechOn(bool on)
{
    m_presentation.severities.setSpeechOn(on);
    update();
}

// The player delivers events while it starts and stops: what they change is seen to afterwards, not within.
void AlarmAnnunciator::update()
{
    if (m_isUpdating) {
        m_isUpdateMissed = true;
        return;
    }
    m_isUpdating = true;
    do {
        m_isUpdateMissed = false;
        updateOnce();
    } while (m_isUpdateMissed);
    m_isUpdating = false;
}

void AlarmAnnunciator::updateOnce()
{
    dropSettled();
    const int wanted = wantedSeverity();
    if (wanted < 0)
        stopSound();
    else if (wanted != m_sounding || m_isRepeatDue)
        startSound(wanted);
    if (m_manager.highestUnacknowledgedSeverity() < 0)
        m_reminder.stop();
    else if (!m_reminder.isActive())
        m_reminder.start(m_presentation.remindAfter);
    speak();
}

/// The highest severity that waits and has a sound.
int AlarmAnnunciator::wantedSeverity() const
{
    if (m_isSilenced || m_presentation.severities.isMuted())
        return -1;
    for (int severity = ScadaAlarm::highestSeverity; severity >= ScadaAlarm::lowestSeverity; --severity) {
        if (m_manager.waitingCount(severity) > 0 &&
            !m_presentation.severities.severityData(severity).soundPath.isEmpty())
            return severity;
    }
    return -1;
}

void AlarmAnnunciator::startSound(int severity)
{
    m_repeat.stop();
    m_isRepeatDue = false;
    m_sounding = severity;
    const QString path = m_presentation.severities.severityData(severity).soundPath;
    const QString file = QDir::toNativeSeparators(path);
    QString problem;
    if (QAudioDeviceInfo::defaultOutputDevice().isNull()) {
        problem = tr("There is no sound device: alarms are shown, not heard");
    } else if (!QFileInfo(path).isFile()) {
        problem = tr("%1: there is no such sound file; alarms of severity %2 are shown, not heard")
                      .arg(file, QString::number(severity));
    } else if (!m_unheard.contains(path)) {
        m_player.stop(); // a file that can't be read would leave the sound before as it is
        m_player.play(path);
        if (m_player.state() == QAudio::ActiveState || m_sounding != severity)
            return;
        // Else the next play of the path would bring the sound that was played last.
        m_player.reset();
        m_unheard.insert(path);
        problem =
            tr("%1: can't be played; alarms of severity %2 are shown, not heard").arg(file, QString::number(severity));
    }
    if (!problem.isEmpty())
        addNotice(problem);
}

void AlarmAnnunciator::stopSound()
{
    m_repeat.stop();
    m_isRepeatDue = false;
    if (m_sounding < 0)
        return;
    m_sounding = -1;
    m_player.stop();
}

void AlarmAnnunciator::heedPlayer(QAudio::State state)
{
    if (m_sounding < 0 || state != QAudio::IdleState)
        return;
    pauseSound();
    if (!m_update.isActive())
        m_update.start();
}

/// Sound and speech take turns.
void AlarmAnnunciator::pauseSound()
{
    const Milliseconds speaking = m_speaking.isActive() ? m_speaking.remainingTimeAsDuration() : Milliseconds(0);
    m_repeat.start(speaking + m_presentation.repeatAfter);
}

bool AlarmAnnunciator::isWaiting(quint64 id) const
{
    return m_manager.alarm(id).isUnacknowledged();
}

void AlarmAnnunciator::dropSettled()
{
    const auto isSettled = [this](const Announcement& each) { return !isWaiting(each.id); };
    m_unspoken.erase(std::remove_if(m_unspoken.begin(), m_unspoken.end(), isSettled), m_unspoken.end());
}

void AlarmAnnunciator::speak()
{
    if (!m_speech || !m_presentation.severities.isSpeechOn() || m_unspoken.empty()) {
        m_unspoken.clear();
        return;
    }
    const auto isLower = [](const Announcement& a, const Announcement& b) { return a.severity <= b.severity; };
    const Announcement first = *std::max_element(m_unspoken.begin(), m_unspoken.end(), isLower);
    const bool isSounding = m_sounding >= 0 && m_player.state() == QAudio::ActiveState;
    if (isSounding || (m_speaking.isActive() && first.severity <= m_spokenSeverity))
        return;
    const QString text = summed(first.message, static_cast<int>(m_unspoken.size()) - 1);
    m_unspoken.clear();
    m_spokenSeverity = first.severity;
    m_speaking.start(speakingTime(text));
    if (m_repeat.isActive())
        pauseSound();
    m_reminder.start(m_presentation.remindAfter);
    m_speech->playMessage(text, languageOf(text));
    Q_EMIT spoken(text, languageOf(text));
}

// As if all that waits had just come.
void AlarmAnnunciator::remind()
{
    m_unspoken.clear();
    const QList<ScadaAlarm> standing = m_manager.activeAlarms();
    for (auto alarm = standing.rbegin(); alarm != standing.rend(); ++alarm) {
        if (alarm->isUnacknowledged())
            m_unspoken.push_back({alarm->id, alarm->severity, alarm->message});
    }
    m_isSilenced = m_unspoken.empty();
    update();
}

void AlarmAnnunciator::addNotice(const QString& text)
{
    if (m_notice.split(QLatin1Char('\n')).contains(text))
        return;
    m_notice += m_notice.isEmpty() ? text : QLatin1Char('\n') + text;
    Q_EMIT problemFound(text);
    Q_EMIT noticeChanged(m_notice);
}
