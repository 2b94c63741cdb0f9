#pragma once

#include "host/hostexport.h"
#include "host/sources/sample.h"

#include <QObject>
#include <QString>

#include <vector>

/// Where samples come from: a recording, a simulation, a field protocol.
///
/// A source keeps no timer and reads no clock: the data service calls advance() with every tick, and the source then
/// delivers what is due. One that is fed from outside (standard input, a socket) may deliver at any other moment too.
/// GUI thread only.
class KORVANE_HOST_EXPORT ValueSource : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ValueSource)

public:
    /// What the source is waiting for.
    enum class State {
        Stopped, ///< start()
        Running, ///< samples that become due
        Failed,  ///< the return of what it reads from
        Ended,   ///< nothing: all samples were delivered; that is no failure
    };

    explicit ValueSource(QObject* parent = nullptr);
    ~ValueSource() override;

    /// What it reads from, for an engineer's eyes ("recording normal.csv").
    virtual QString description() const = 0;
    /// The objects that it delivers samples of.
    virtual std::vector<ObjectKey> objects() const = 0;
    /// Begins; what is due by \p nowMs comes with the first advance().
    virtual void start(qint64 nowMs) = 0;
    /// Delivers the samples due by \p nowMs, milliseconds since 1970-01-01 UTC of the system's clock.
    virtual void advance(qint64 nowMs) = 0;

    State state() const { return m_state; }
    /// Why it failed; empty in any other state.
    QString failure() const { return m_failure; }

Q_SIGNALS:
    /// Samples in the order of their times, object by object.
    void delivered(const std::vector<Sample>& samples);
    /// The state changed to another one.
    void stateChanged();
    /// Something in what it reads was skipped; \p text says what and where (file, line, column).
    void problemFound(const QString& text);

protected:
    void setState(State state, const QString& failure = {});

private:
    State m_state = State::Stopped;
    QString m_failure;
};
