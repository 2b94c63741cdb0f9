#pragma once

#include "host/hostexport.h"
#include "host/sources/sample.h"

#include <QObject>
#include <QString>

#include <tl/expected.hpp>

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
    /// A command to the process.
    struct Command
    {
        quint32 requestId = 0; ///< by which commandAnswered() names it
        ObjectKey object;
        double value = 0; ///< in the point's unit; the number of the state of a digital point
    };

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

    /// Whether there is anything that it could lose: pages are told that data has failed once all such sources have.
    virtual bool canFail() const { return true; }
    /// Whether commands to \p object can go through this source.
    virtual bool takesCommands(ObjectKey object) const;
    /// Asks for the value of \p object anew; it comes as a sample.
    /// \returns false when the source can't be asked for it.
    virtual bool readAgain(ObjectKey object);
    /// Closes the connection to what it reads from and opens it again.
    /// \returns why it can't be.
    virtual tl::expected<void, QString> reconnect(qint64 nowMs);

    State state() const { return m_state; }
    /// Why it failed; empty in any other state.
    QString failure() const { return m_failure; }

Q_SIGNALS:
    /// Samples in the order of their times, object by object.
    void delivered(const std::vector<Sample>& samples);
    /// The state changed to another one.
    void stateChanged();
    /// A command was taken or, with the reason in \p refusal, refused. Comes once for each command, maybe before write()
    /// has returned.
    void commandAnswered(quint32 requestId, const QString& refusal);
    /// Something in what it reads was skipped; \p text says what and where (file, line, column).
    void problemFound(const QString& text);

protected:
    void setState(State state, const QString& failure = {});

private:
    /// The one way by which a value leaves for the process: whoever else wants to write makes a control request, where
    /// rights, interlocks and confirmation stand.
    friend class CommandGate;
    /// Sends \p command; the answer is commandAnswered(). A source that takes no commands refuses it.
    virtual void write(const Command& command);

    State m_state = State::Stopped;
    QString m_failure;
};
