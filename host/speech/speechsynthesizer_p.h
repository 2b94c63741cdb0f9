#pragma once

#include "host/speech/speechrequest_p.h"

#include <QObject>
#include <QThread>

#include <atomic>

/// Turns texts into sound on a thread of its own, one at a time: a new text takes the place of the one at work.
class SpeechSynthesizer : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(SpeechSynthesizer)

public:
    SpeechSynthesizer();
    /// Ends the synthesis at work.
    ~SpeechSynthesizer() override;

    /// Returns at once; synthesised() follows unless another start() or cancel() comes first.
    void start(const SpeechRequest& request);
    void cancel();

Q_SIGNALS:
    /// The whole sound of the newest text, on the thread of this object.
    void synthesised(const QByteArray& sound);

private:
    void work(quint64 number, const SpeechRequest& request);
    bool isWanted(quint64 number) const { return m_wanted.load() == number; }

    std::atomic<quint64> m_wanted{0}; ///< number of the newest text
    QThread m_thread;
    QObject m_worker; ///< lives in the thread
};
