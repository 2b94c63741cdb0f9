#pragma once

#include "host/canvas/canvas.h"
#include "host/canvas/eventactions.h"
#include "host/canvas/operation.h"
#include "host/canvas/pageaccess.h"
#include "host/hostexport.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"

#include <QString>
#include <QStringList>

#include <memory>

/// An open page: the canvas, its event actions and its tag actions, which go before it.
struct KORVANE_HOST_EXPORT Page
{
    std::unique_ptr<Canvas> canvas;
    EventActions events;
    Operations operations;
    PageAccess access;
    std::unique_ptr<CanvasScadaActionManagerInterface> actions;
    QString fileName;
    /// What could not be loaded and what stands in its place, each with file, line and object.
    QStringList problems;
};
