#pragma once

#include "host/actions/canvasactionmanagerfactory.h"
#include "host/actions/tagactionfactory.h"
#include "host/canvas/page.h"
#include "host/core/korvanecore.h"
#include "host/core/propertymanager.h"
#include "host/runtime/runtimedatabase.h"
#include "host/scripting/pagescripts.h"
#include "host/scripting/scriptengine.h"
#include "host/shapes/rectangle.h"
#include "scada/binding/objecttarget.h"

#include <QStringList>

#include <memory>

/// A page of 400 by 200 that a test puts shapes and scripts on, with what runs them and some points. Whatever its
/// scripts print is kept, and what they fail with.
///
/// Put everything on the page first, then start().
struct ScriptPage
{
    static constexpr qint64 now = 1700000000000;

    ScriptPage()
        : core([] { return QDateTime::fromMSecsSinceEpoch(now, Qt::UTC); }),
          engine(*core.scadaCoreInterface()),
          managers(core.scadaCoreInterface())
    {
        using Korvane::ScadaObjectType;
        core.scadaCoreInterface()->setScadaRuntime(&database);
        core.scadaCoreInterface()->setAppPropertyManager(&properties);
        core.scadaCoreInterface()->setCanvasActionManagerFactory(&managers);
        core.setScriptInterface(&engine);
        database.setClock([] { return now; });
        add({ScadaObjectType::AnalogPoint, 200001, QStringLiteral("FLOW")});
        add({ScadaObjectType::AnalogPoint, 200002, QStringLiteral("LEVEL")});
        add({ScadaObjectType::RtuObject, 1, QStringLiteral("PLC1")});
        page.canvas = std::make_unique<Canvas>(QStringLiteral("overview"));
        page.canvas->setSize({400, 200});
        page.actions.reset(managers.createActionManager(page.canvas.get(), nullptr));
        page.canvas->addLayer(QStringLiteral("lower"));
        page.canvas->addLayer(QStringLiteral("upper"));
        QObject::connect(&engine, &ScriptEngine::stdOut, [this](const QString& text) { out += text; });
        QObject::connect(&engine, &ScriptEngine::failed, [this](const QString& text) { failures.append(text); });
    }

    void add(const RuntimeDatabase::Object& object)
    {
        if (const auto added = database.add(object); !added)
            qFatal("%s", qPrintable(added.error()));
    }
    /// A rectangle on one of the two layers.
    Shape& addShape(const char* name, const QRectF& place = {0, 0, 20, 20}, std::size_t layer = 0)
    {
        Shape& shape = page.canvas->addShape(*page.canvas->layers()[layer], std::make_unique<Rectangle>());
        shape.setName(QString::fromLatin1(name));
        shape.setPlace(place);
        return shape;
    }
    /// A script of \p shape, of the page itself for null.
    void addScript(const Shape* shape, Korvane::TriggerType trigger, const char* script)
    {
        auto action = std::make_unique<ScadaScriptAction>();
        action->setTriggerType(trigger);
        action->setScript(QString::fromUtf8(script));
        page.events.add(shape, {std::move(action)});
    }
    void bind(Shape& shape, const char* tag)
    {
        auto action = TagActionFactory::make(2, &shape);
        action->addTarget(ObjectTarget::fromTagString(QString::fromLatin1(tag)), {});
        page.actions->addAction(action.release());
    }
    /// Opens the page, but runs nothing yet.
    PageScripts& start()
    {
        page.actions->open(&database);
        scripts = std::make_unique<PageScripts>(page, core, engine, database);
        return *scripts;
    }
    /// Opens the page and runs what is to run then; what that prints is forgotten.
    PageScripts& load()
    {
        start().load();
        out.clear();
        return *scripts;
    }

    /// Runs a script of the page by hand.
    /// \returns what it printed, or what it failed with.
    QString run(const QString& script)
    {
        out.clear();
        engine.runForCanvas(page.canvas.get(), script);
        const QString error = engine.lastError();
        return error.isEmpty() ? printed() : error;
    }
    QString run(const char* script) { return run(QString::fromUtf8(script)); }

    void take(Korvane::ScadaObjectType type, qint32 id, double value)
    {
        database.takeSample({{type, id}, ++sampleMs, value, 0});
    }
    void takeFlow(double value) { take(Korvane::ScadaObjectType::AnalogPoint, 200001, value); }
    void takeLevel(double value) { take(Korvane::ScadaObjectType::AnalogPoint, 200002, value); }

    /// The lines that were printed so far, joined by ", ".
    QString said() const { return out.trimmed().replace(QLatin1Char('\n'), QLatin1String(", ")); }
    /// The same, which are forgotten then.
    QString printed()
    {
        const QString lines = said();
        out.clear();
        return lines;
    }

    QString out;
    QStringList failures;
    RuntimeDatabase database;
    PropertyManager properties;
    KorvaneCore core;
    ScriptEngine engine;
    CanvasActionManagerFactory managers;
    Page page;
    std::unique_ptr<PageScripts> scripts;
    qint64 sampleMs = now - 100000;
};
