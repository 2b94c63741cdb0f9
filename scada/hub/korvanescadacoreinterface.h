#pragma once

#include "scada/scadaexport.h"

#include <QDateTime>
#include <QObject>
#include <QStringList>

class AppPropertyManager;
class CanvasScadaActionManagerFactoryInterface;
class DataServiceInterface;
class KorvaneChangeEvent;
class KorvaneCoreInterface;
class KorvaneGeneralMessageProcessorInterface;
class KorvaneNotificationProcessor;
class KorvaneScadaAlarmProcessor;
class KorvaneScadaRuntimManagerInterface;
class KorvaneTTSInterface;
class ScadaRuntimeInterface;
class SystemAlarmManagerInterface;

/// The service hub: the one object through which every part of the SCADA layer reaches the services of the host.
///
/// A registry of pointers that it does not own: no setter checks, announces or deletes anything, and the service before
/// is forgotten. The host makes one concrete hub a process, fills it and hands it out through its core object. Whoever
/// asks for a service must be ready for null and skip the work that needs it. GUI thread only.
class KORVANE_SCADA_EXPORT KorvaneScadaCoreInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScadaCoreInterface)

public:
    /// All services are null but the speech front end, which has no value before setTTSInterface.
    explicit KorvaneScadaCoreInterface(QObject* parent);
    /// Touches none of the services: their lifetime is the host's business.
    ~KorvaneScadaCoreInterface() override;

    // What a concrete hub adds. The layer calls none of these; the host's start, clock and shutdown do.

    /// Puts the hub into service.
    /// \returns false, and changes nothing, while a service is missing or after close().
    virtual bool open() = 0;
    /// Whether the hub is in service: opened and not yet closed.
    virtual bool isOpen() const = 0;
    /// Names of the services that pages can't run without and that are not registered; empty when the hub can open.
    virtual QStringList missingServices() const = 0;
    /// The system's present time in UTC, from the one clock that every service reads: real, replayed or a test's.
    virtual QDateTime currentTime() const = 0;
    /// Takes the hub out of service for good: emits systemAboutTobeClose(), once however often it is called.
    virtual void close() = 0;

    KorvaneScadaAlarmProcessor* alarmProcessor() { return m_alarmProcessor; }
    void setAlarmProcessor(KorvaneScadaAlarmProcessor* processor) { m_alarmProcessor = processor; }

    KorvaneScadaRuntimManagerInterface* runtimeManager() { return m_runtimeManager; }
    void setRuntimeManager(KorvaneScadaRuntimManagerInterface* manager) { m_runtimeManager = manager; }

    SystemAlarmManagerInterface* alarmManager() { return m_alarmManager; }
    void setAlarmManager(SystemAlarmManagerInterface* manager) { m_alarmManager = manager; }

    KorvaneGeneralMessageProcessorInterface* messageProcessor() { return m_messageProcessor; }
    void setMessageProcessor(KorvaneGeneralMessageProcessorInterface* processor) { m_messageProcessor = processor; }

    ScadaRuntimeInterface* scadaRuntime() { return m_scadaRuntime; }
    void setScadaRuntime(ScadaRuntimeInterface* runtime) { m_scadaRuntime = runtime; }

    /// The host's core object. It has no setter: the concrete hub sets it itself.
    KorvaneCoreInterface* core() { return m_core; }

    CanvasScadaActionManagerFactoryInterface* canvasActionManagerFactory() { return m_canvasActionManagerFactory; }
    void setCanvasActionManagerFactory(CanvasScadaActionManagerFactoryInterface* factory)
    {
        m_canvasActionManagerFactory = factory;
    }

    /// The data service; written with setDataServiceInterface.
    DataServiceInterface* controller() { return m_dataService; }
    void setDataServiceInterface(DataServiceInterface* service) { m_dataService = service; }

    KorvaneChangeEvent* changeEventProcessor() { return m_changeEventProcessor; }
    void setChangeEventProcessor(KorvaneChangeEvent* processor) { m_changeEventProcessor = processor; }

    /// The property manager; written with setAppPropertyManager.
    AppPropertyManager* propertyManager() { return m_propertyManager; }
    void setAppPropertyManager(AppPropertyManager* manager) { m_propertyManager = manager; }

    /// The speech front end. Must not be read before setTTSInterface was called, with null where there is none.
    KorvaneTTSInterface* ttsInterface() { return m_tts; }
    void setTTSInterface(KorvaneTTSInterface* tts) { m_tts = tts; }

    /// The notification processor; written with setNotificationProcessor.
    KorvaneNotificationProcessor* notification() { return m_notificationProcessor; }
    void setNotificationProcessor(KorvaneNotificationProcessor* processor) { m_notificationProcessor = processor; }

Q_SIGNALS:
    /// The application is about to close: stop timers, sound and pending requests before the services go. Emitted by
    /// the concrete hub; spelled so because connections by text match it.
    void systemAboutTobeClose();

private:
    [[maybe_unused]] void* m_reserved = nullptr; // kept: never read or written
    KorvaneScadaAlarmProcessor* m_alarmProcessor = nullptr;
    KorvaneScadaRuntimManagerInterface* m_runtimeManager = nullptr;
    SystemAlarmManagerInterface* m_alarmManager = nullptr;
    KorvaneGeneralMessageProcessorInterface* m_messageProcessor = nullptr;
    ScadaRuntimeInterface* m_scadaRuntime = nullptr;

protected:
    KorvaneCoreInterface* m_core = nullptr;

private:
    CanvasScadaActionManagerFactoryInterface* m_canvasActionManagerFactory = nullptr;
    DataServiceInterface* m_dataService = nullptr;
    KorvaneChangeEvent* m_changeEventProcessor = nullptr;
    AppPropertyManager* m_propertyManager = nullptr;
    KorvaneTTSInterface* m_tts; // kept without a value: the host states, with null if need be, whether it can speak
    KorvaneNotificationProcessor* m_notificationProcessor = nullptr;
};
