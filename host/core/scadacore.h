#pragma once

#include "host/hostexport.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <functional>

/// The reference host's service hub. Starts with no services and no speech front end.
class KORVANE_HOST_EXPORT ScadaCore : public KorvaneScadaCoreInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(ScadaCore)

public:
    /// Gives the present time in UTC.
    using Clock = std::function<QDateTime()>;

    /// \param core the host's core object, not owned; must outlive the hub
    /// \param clock where currentTime() comes from; the machine's clock unless given
    explicit ScadaCore(KorvaneCoreInterface* core, Clock clock = &QDateTime::currentDateTimeUtc,
                       QObject* parent = nullptr);

    bool open() override;
    bool isOpen() const override { return m_state == State::Open; }
    QStringList missingServices() const override;
    QDateTime currentTime() const override { return m_clock(); }
    void close() override;

private:
    enum class State {
        New,    ///< waits for services and open()
        Open,   ///< waits for close()
        Closed, ///< waits for its end
    };

    Clock m_clock;
    State m_state = State::New;
};
