#pragma once

#include "platform/platformexport.h"

#include <QtGlobal>

class KVCanvasManagerInterface;
class KorvaneDataBaseManagerInterface;
class KorvaneProjectManagerInterface;
class KorvaneScadaCoreInterface;
class KorvaneScriptInterface;

/// The host product's core object, one a process: the way from anywhere in the host to its parts. Implemented by the
/// host.
class KORVANE_PLATFORM_EXPORT KorvaneCoreInterface
{
public:
    KorvaneCoreInterface() = default;
    Q_DISABLE_COPY(KorvaneCoreInterface)
    virtual ~KorvaneCoreInterface();

    /// The service hub of the SCADA layer, owned by the core; null in a host without one.
    virtual KorvaneScadaCoreInterface* scadaCoreInterface() = 0;

    /// The open pages, owned by the host; null in a host without pages.
    virtual KVCanvasManagerInterface* canvasManager() = 0;

    /// The front of the script engine, owned by the host; null where scripts can't run.
    virtual KorvaneScriptInterface* scriptInterface() = 0;

    /// The front to the user accounts, owned by the host; null in a host without users.
    virtual KorvaneDataBaseManagerInterface* databaseManager() = 0;

    /// The open project, owned by the host; null in a host without projects.
    virtual KorvaneProjectManagerInterface* projectManager() = 0;
};
