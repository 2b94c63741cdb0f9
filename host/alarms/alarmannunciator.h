#pragma once

#include "host/alarms/alarmpresentation.h"
#include "host/alarms/alarmtransition.h"
#include "host/hostexport.h"

#include <QAudio>
#include <QLocale>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <vector>

class AlarmManager;
class KorvaneTTSInterface;
class WavePlayer;

/// Makes alarms heard: the sound of the highest severity that waits for an operator, repeated until it is acknowledged or
/// silenced, and each alarm's message, spoken once.
///
/// The sound begins at once; what is spoken follows its end, and the sound goes on after that. Alarms that come while something is spoken are summed
/// up: the newest of the highest severity, and how many more. A higher severity does not wait for that. What nobody acknowledges
/// is announced again after the presentation's time, silenced or not.
///
/// What can't be heard, for want of a device, a file or a voice, is told once and shows as a notice; a sound is tried again
/// with each repetition. Alarms are shown all the same.
class KORVANE_HOST_EXPORT AlarmAnnunciator : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmAnnunciator)

public:
    /// \param manager, player, speech not owned, must outlive the annunciator; speech may be null
    AlarmAnnunciator(AlarmManager& manager, WavePlayer& player, KorvaneTTSInterface* speech,
                     const AlarmPresentation& presentation, QObject* parent = nullptr);
    ~AlarmAnnunciator() override;

    /// Tells of the sounds that are not there, before an alarm needs them.
    void checkSounds();

    /// Stops sound and speech until the next alarm, or the time to remind.
    void silence();
    bool isSilenced() const { return m_isSilenced; }

    /// No sound while muted, for this session.
    void setMuted(bool muted);
    bool isMuted() const { return m_presentation.severities.isMuted(); }
    void setSpeechOn(bool on);
    bool isSpeechOn() const { return m_presentation.severities.isSpeechOn(); }

    /// Severity whose sound is being repeated; -1 for none.
    int soundingSeverity() const { return m_sounding; }
    /// Why alarms can't be heard; empty when they can.
    QString notice() const;
    /// Tells another reason, which lasts; once for each text.
    void addNotice(const QString& text);

Q_SIGNALS:
    void noticeChanged(const QString& text);
    /// Something can't be heard; \p text says what, why and what is done instead.
    void problemFound(const QString& text);
    /// A message was given to the voice.
    void spoken(const QString& text, QLocale::Language language);

private:
    struct Announcement
    {
        quint64 id;
        int severity;
        QString message;
    };

    void take(const AlarmTransition& transition);
    void update();
    void updateOnce();
    int wantedSeverity() const;
    void startSound(int severity);
    void stopSound();
    QString soundProblem(const QString& path, int severity) const;
    void setSoundProblem(const QString& problem);
    void startReminder();
    void heedPlayer(QAudio::State state);
    void pauseSound();
    void speak();
    void dropSettled();
    void remind();
    bool isWaiting(quint64 id) const;

    AlarmManager& m_manager;
    WavePlayer& m_player;
    KorvaneTTSInterface* m_speech;
    AlarmPresentation m_presentation;
    std::vector<Announcement> m_unspoken; ///< in the order in which they came
    QTimer m_update;                      ///< after all that one pass of the event loop changed
    QTimer m_repeat;
    QTimer m_speaking; ///< for the end of what is spoken, which the voice does not tell
    QTimer m_reminder;
    int m_sounding = -1;
    int m_spokenSeverity = -1;
    bool m_isSilenced = false;
    bool m_isRepeatDue = false;    ///< the pause after the sound is over
    bool m_isUpdating = false;     ///< the player delivers events while it starts
    bool m_isUpdateMissed = false; ///< something changed meanwhile
    QLocale::Language m_spokenLanguage = QLocale::English;
    QString m_soundProblem; ///< why the sound that is wanted can't be heard now; empty when it can
    QStringList m_notices;  ///< other reasons, which last
};
