#pragma once

#include "platform/core/korvanecoreinterface.h"
#include "platform/core/kvcanvasinterface.h"
#include "platform/core/kvcanvasmanagerinterface.h"

/// A canvas without shapes, for tests; it counts how often it is asked for its name.
class TestCanvas : public KVCanvasInterface
{
public:
    QString canvasName() const override
    {
        ++namesAsked;
        return QStringLiteral("overview");
    }
    TesselInterface* shapeNamed(const QString&) const override { return nullptr; }
    QStringList shapeNames() const override { return {}; }

    mutable int namesAsked = 0;
};

/// Open canvases for tests: the one in front alone.
class TestCanvasManager : public KVCanvasManagerInterface
{
public:
    KVCanvasInterface* currentCanvas() const override { return inFront; }
    QList<KVCanvasInterface*> canvases() const override
    {
        return inFront ? QList<KVCanvasInterface*>{inFront} : QList<KVCanvasInterface*>();
    }
    KVCanvasInterface* findCanvas(const QString& name) const override
    {
        return inFront && inFront->canvasName() == name ? inFront : nullptr;
    }

    KVCanvasInterface* inFront = nullptr;
};

/// A core for tests: whatever it is given.
class TestCore : public KorvaneCoreInterface
{
public:
    KorvaneScadaCoreInterface* scadaCoreInterface() override { return hub; }
    KVCanvasManagerInterface* canvasManager() override { return manager; }
    KorvaneScriptInterface* scriptInterface() override { return scripts; }
    KorvaneDataBaseManagerInterface* databaseManager() override { return users; }
    KorvaneProjectManagerInterface* projectManager() override { return project; }

    KorvaneScadaCoreInterface* hub = nullptr;
    KVCanvasManagerInterface* manager = nullptr;
    KorvaneScriptInterface* scripts = nullptr;
    KorvaneDataBaseManagerInterface* users = nullptr;
    KorvaneProjectManagerInterface* project = nullptr;
};
