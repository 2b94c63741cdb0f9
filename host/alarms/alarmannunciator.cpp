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
    const ScadaAlarm& alarm = transition.alarm;
    if (transition.isAnnouncement()) {
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
    if (m_speech && m_speaking.isActive())
        m_speech->playMessage({}, m_spokenLanguage); // takes the place of what is spoken
    m_speaking.stop();
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
    const int wanted = wantedSeverity();
    if (wanted < 0)
        stopSound();
    else if (wanted != m_sounding || m_isRepeatDue)
        startSound(wanted);
    if (m_manager.highestUnacknowledgedSeverity() < 0)
        m_reminder.stop();
    else if (!m_reminder.isActive())
        startReminder();
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
    if (m_player.state() == QAudio::ActiveState)
        m_player.stop(); // a file that can't be read would leave the sound before as it is
    if (QFileInfo(path).isFile()) {
        m_player.play(path);
        if (m_player.state() == QAudio::ActiveState) {
            setSoundProblem({});
            return;
        }
        // Else the next play of the path would bring the sound that was played last.
        m_player.reset();
    }
    setSoundProblem(soundProblem(path, severity));
    pauseSound(); // and tried again: a device may come back
}

QString AlarmAnnunciator::soundProblem(const QString& path, int severity) const
{
    if (QAudioDeviceInfo::defaultOutputDevice().isNull())
        return tr("There is no sound device: alarms are shown, not heard");
    const QString file = QDir::toNativeSeparators(path);
    const QString number = QString::number(severity);
    if (!QFileInfo(path).isFile())
        return tr("%1: there is no such sound file; alarms of severity %2 are shown, not heard").arg(file, number);
    return tr("%1: can't be played; alarms of severity %2 are shown, not heard").arg(file, number);
}

// It is tried again and again: told when it is another problem than before.
void AlarmAnnunciator::setSoundProblem(const QString& problem)
{
    if (problem == m_soundProblem)
        return;
    m_soundProblem = problem;
    if (!problem.isEmpty())
        Q_EMIT problemFound(problem);
    Q_EMIT noticeChanged(notice());
}

void AlarmAnnunciator::checkSounds()
{
    for (const AlarmSeverityData& each : m_presentation.severities.severities()) {
        if (!each.soundPath.isEmpty() && !QFileInfo(each.soundPath).isFile())
            Q_EMIT problemFound(tr("%1: there is no such sound file; alarms of severity %2 are shown, not heard")
                                    .arg(QDir::toNativeSeparators(each.soundPath), QString::number(each.severity)));
    }
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
    // Stopped by itself, the device is lost.
    const bool isOver = state == QAudio::IdleState || (state == QAudio::StoppedState && !m_isUpdating);
    if (m_sounding < 0 || !isOver)
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
    const bool isSounding = m_sounding >= 0 && m_player.state() == QAudio::ActiveState;
    if (isSounding)
        return;
    dropSettled();
    if (m_unspoken.empty())
        return;
    const Announcement first = *std::max_element(m_unspoken.begin(), m_unspoken.end(), isLower);
    if (m_speaking.isActive() && first.severity <= m_spokenSeverity)
        return;
    const QString text = summed(first.message, static_cast<int>(m_unspoken.size()) - 1);
    m_unspoken.clear();
    m_spokenSeverity = first.severity;
    m_spokenLanguage = languageOf(text);
    m_speaking.start(speakingTime(text));
    if (m_repeat.isActive())
        pauseSound();
    startReminder();
    m_speech->playMessage(text, m_spokenLanguage);
    Q_EMIT spoken(text, m_spokenLanguage);
}

void AlarmAnnunciator::startReminder()
{
    if (m_presentation.remindAfter.count() > 0)
        m_reminder.start(m_presentation.remindAfter);
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
    if (m_notices.contains(text))
        return;
    m_notices.append(text);
    Q_EMIT problemFound(text);
    Q_EMIT noticeChanged(notice());
}

QString AlarmAnnunciator::notice() const
{
    QStringList all = m_notices;
    if (!m_soundProblem.isEmpty())
        all.prepend(m_soundProblem);
    return all.join(QLatin1Char('\n'));
}
