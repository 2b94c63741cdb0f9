#pragma once

#include "scada/hub/korvanescadacoreinterface.h"

/// A concrete hub for tests of the library: registers nothing by itself.
class TestHub : public KorvaneScadaCoreInterface
{
public:
    explicit TestHub(KorvaneCoreInterface* core = nullptr, QObject* parent = nullptr)
        : KorvaneScadaCoreInterface(parent)
    {
        m_core = core;
    }

    bool open() override { return m_open = true; }
    bool isOpen() const override { return m_open; }
    QStringList missingServices() const override { return {}; }
    QDateTime currentTime() const override { return QDateTime::fromMSecsSinceEpoch(0, Qt::UTC); }
    void close() override
    {
        m_open = false;
        Q_EMIT systemAboutTobeClose();
    }

private:
    bool m_open = false;
};
