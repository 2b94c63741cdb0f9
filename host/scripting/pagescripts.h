#pragma once

#include "host/hostexport.h"
#include "host/scripting/scriptengine.h"
#include "host/shapes/table.h"
#include "platform/data/objectkey.h"

#include <QObject>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

class KorvaneCoreInterface;
class RuntimeDatabase;
class Shape;
struct Page;

/// Brings the events of an open page to its scripts: runs its event actions and calls its handlers.
///
/// An event comes to the topmost shape under the pointer that has event actions, or to the page itself. First its event
/// actions run, in their order, then the handler for it. Nothing happens before load().
class KORVANE_HOST_EXPORT PageScripts : public QObject, private TableRows
{
    Q_OBJECT
    Q_DISABLE_COPY(PageScripts)

public:
    /// \param page, core, engine, database not owned, must outlive this
    PageScripts(Page& page, KorvaneCoreInterface& core, ScriptEngine& engine, const RuntimeDatabase& database,
                QObject* parent = nullptr);
    /// The page's namespace ends.
    ~PageScripts() override;

    Page& page() const { return m_page; }

    /// Runs what is to run when the page is opened: the shapes' loading scripts and handlers from the bottom up, then
    /// the page's. Does nothing the second time.
    void load();
    /// Runs what is to run when the page is closed.
    void unload();

    /// The shape that an event at \p position comes to; null for the page itself.
    Shape* targetAt(const QPointF& position) const;

    /// Something happened to \p shape, or to the page for null.
    /// \param event what the operator did; nothing where nobody did anything
    void fire(Korvane::TriggerType trigger, Shape* shape, const std::optional<ScriptEvent>& event);
    /// \p shape, or the page for null, was clicked: comes after MousePress and MouseRelease.
    void click(Shape* shape, const ScriptEvent& event);
    /// The page is shown at another zoom.
    void noteZoom(double zoom);
    /// Somebody logged on or off: \p handler is Logon or Logout.
    void noteSession(ScriptHandler handler);
    /// Values may be others than before.
    void noteValues();

private:
    void runActions(Korvane::TriggerType trigger, Shape* shape);
    void call(Shape* shape, ScriptHandler handler, const QVariantList& arguments = {});
    void noteAct(Shape* shape, const QString& handler, const QVariantList& arguments);
    QStringList tableRow(Table& table, int row) override;
    void serveTables();
    void keepValues();
    void noteChangedPoints();
    void noteLoadedShapes();
    QVariant valueOf(ObjectKey object) const;

    Page& m_page;
    KorvaneCoreInterface& m_core;
    ScriptEngine& m_engine;
    const RuntimeDatabase& m_database;
    std::vector<Shape*> m_heeding; ///< shapes with event actions, from the bottom up
    struct ServedTable
    {
        Table* table;
        bool isServed; ///< a handler fills its rows
    };
    std::vector<ServedTable> m_tables;
    std::vector<std::pair<ObjectKey, QVariant>> m_values; ///< of the page's points, while a handler heeds them
    std::vector<std::pair<Shape*, std::vector<ObjectKey>>> m_loading; ///< shapes without all of their values
    bool m_isLoaded = false;
};
