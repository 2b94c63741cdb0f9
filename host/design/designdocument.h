#pragma once

#include "host/canvas/page.h"
#include "host/design/shapebinding.h"
#include "host/hostexport.h"
#include "scada/actions/scadascriptaction.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUndoStack>
#include <QVariantMap>

#include <tl/expected.hpp>

#include <memory>
#include <optional>
#include <vector>

class CanvasScadaActionManagerFactoryInterface;
class RuntimeDatabase;
class ScriptEngine;

namespace Korvane {
struct BrowerItemInfo;
}

/// A page that is being edited, and the file that it comes from.
///
/// Scripts that the user tries run on a copy of the page, so that what they do is never saved with it.
///
/// All edits but those of scripts, whose editor has a history of its own, can be undone. A shape that is taken back keeps
/// its scripts for when it comes again.
class KORVANE_HOST_EXPORT DesignDocument : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DesignDocument)

public:
    /// \param managers, database, scripts not owned, must outlive the document
    /// \returns why the file can't be opened.
    static tl::expected<std::unique_ptr<DesignDocument>, QString>
    open(const QString& fileName, CanvasScadaActionManagerFactoryInterface& managers, RuntimeDatabase& database,
         ScriptEngine& scripts);
    ~DesignDocument() override;

    const Page& page() const { return m_page; }
    Canvas& canvas() const { return *m_page.canvas; }
    /// The copy of the page as it was opened, with the shapes that were added since, on which scripts are tried.
    Canvas& trialCanvas() const { return *m_trial.canvas; }

    QList<ScadaScriptAction> scripts(const Shape* shape) const { return m_page.events.scripts(shape); }
    /// False for an object that could not be loaded: it is saved as it was read, with the scripts that it has there.
    static bool canHaveScripts(const Shape* shape);
    /// Replaces the scripts of \p shape, of the page itself for null; the same ones change nothing, and neither does
    /// an object that can't have any.
    void setScripts(const Shape* shape, const QList<ScadaScriptAction>& scripts);

    /// What \p shape is bound to; holds until the next edit.
    std::vector<ShapeBinding> bindings(const Shape& shape) const;
    /// Whether \p shape can be bound to one tag more: it is bound to none and suits one, or it is a trend with room for
    /// another curve. False for an object that could not be loaded.
    bool canAddBinding(const Shape& shape) const;
    /// Whether \p shape has bindings or can have one.
    bool canBind(const Shape& shape) const { return canAddBinding(shape) || !bindings(shape).empty(); }
    /// Binds \p shape, which must be able to take one, to one tag more: by the tag action that suits it, with what the
    /// shape takes from the point unless it was drawn otherwise, as its unit and scale.
    void addBinding(Shape& shape, const QString& tag);
    void addBinding(Shape& shape, const Korvane::BrowerItemInfo& item);
    /// Puts another tag in the place of a binding's. What action and shape have from the point before follows.
    void setBinding(const ShapeBinding& binding, const QString& tag);
    /// The objects that \p shape is bound to, as tags without a field, each once.
    QStringList boundObjects(const Shape& shape) const;
    /// Puts \p item in the place of \p object in all bindings of \p shape, as one edit. A field that is bound stays
    /// where \p item names none and has it too.
    void replaceObject(Shape& shape, const QString& object, const Korvane::BrowerItemInfo& item);
    /// Takes away a value and, with its last, its action; a tag of rules stays.
    /// \returns whether it could.
    bool removeBinding(const ShapeBinding& binding);
    /// Where addReadOut() puts the read-out: around \p middle, but on the page.
    QRectF readOutPlace(const QString& tag, const QPointF& middle) const;
    /// Puts a read-out that is bound to \p tag and named after its object on the topmost visible layer, which is made
    /// where there is none.
    Shape& addReadOut(const QString& tag, const QPointF& middle);

    /// Null for a shape without one.
    const Operation* operation(const Shape& shape) const { return m_page.operations.of(&shape); }
    /// Likewise nothing. The same one changes nothing, and neither does an object that could not be loaded.
    void setOperation(const Shape& shape, const std::optional<Operation>& operation);
    void setAccess(const PageAccess& access);

    QUndoStack& undoStack() { return m_undo; }
    /// The points that tags name.
    RuntimeDatabase& database() const { return m_database; }

    bool isModified() const { return m_areScriptsModified || !m_undo.isClean(); }
    /// Whether the file is another than the one that was opened or saved last.
    bool isFileChanged() const;
    /// Writes the page into its file, whatever that holds by now.
    /// \returns why it could not; the file is as it was then.
    tl::expected<void, QString> save();

Q_SIGNALS:
    void modifiedChanged(bool isModified);
    /// The scripts of a shape, of the page itself for null, are others now.
    void scriptsChanged(const Shape* shape);
    void bindingsChanged(const Shape* shape);
    void operationChanged(const Shape* shape);
    void accessChanged();
    /// A shape was added, perhaps again.
    void shapeAdded(Shape* shape);
    /// An added shape is about to be taken back.
    void shapeAboutToGo(Shape* shape);
    /// It is gone.
    void shapeGone();

private:
    friend class DesignCommand;

    DesignDocument(Page page, Page trial, RuntimeDatabase& database, ScriptEngine& scripts);
    void tellModified();
    void bind(const QString& text, Shape& shape, TagAction* before, std::unique_ptr<TagAction> after,
              const QVariantMap& properties = {});
    QString freeName(const QString& wanted) const;
    std::size_t topmostVisibleLayer() const;

    Page m_page;
    Page m_trial;
    RuntimeDatabase& m_database;
    ScriptEngine& m_scripts;
    QByteArray m_fileHash;
    bool m_areScriptsModified = false;
    bool m_isModifiedTold = false;
    QUndoStack m_undo; ///< goes before the page
};
