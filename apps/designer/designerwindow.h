#pragma once

#include "host/design/designsystem.h"
#include "scada/actions/scadascriptaction.h"

#include <QLabel>
#include <QMainWindow>
#include <QUndoGroup>

#include <memory>

class BindingDock;
class CanvasView;
class DesignDocument;
class ObjectDock;
class PointDock;
class QMenu;
class ScriptOperationSetting;
class Shape;
class TrustBar;

/// The designer's window: a page, its objects in a tree, the points that can be dropped on it, and the tags, the command
/// and the scripts of the object that is selected.
class DesignerWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY(DesignerWindow)

public:
    /// \param system not owned, must outlive the window
    explicit DesignerWindow(DesignSystem& system, QWidget* parent = nullptr);
    ~DesignerWindow() override;

    /// Opens a page in place of the one before, with whatever was not saved of that.
    /// \returns why it can't be opened; the one before stays then.
    tl::expected<void, QString> openPage(const QString& name);
    /// Null before the first page.
    DesignDocument* document() const { return m_document.get(); }

    /// Selects a shape, or the page for null; what was edited of the one before is kept.
    void select(Shape* shape);
    Shape* selected() const { return m_selected; }

    /// Lets scripts be tried.
    void trustScripts();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void buildEditMenus();
    void buildViewMenu();
    void buildDocks();
    void showDocument();
    void showSelected(Shape* shape);
    void showScripts();
    QList<ScadaScriptAction> editedScripts() const;
    void keepScripts();
    void keepEdits();
    void bindPoint();
    void editAccess();
    void heedBinding();
    bool save();
    bool mayLeave();
    void openByUser(const QString& name);
    void heedModification();
    QList<QPair<int, QString>> eventTypes() const;

    DesignSystem& m_system;
    std::unique_ptr<DesignDocument> m_document;
    Shape* m_selected = nullptr;
    CanvasView* m_view = nullptr;
    ObjectDock* m_objects;
    PointDock* m_points;
    BindingDock* m_binding;
    QDockWidget* m_scriptDock;
    ScriptOperationSetting* m_scripts = nullptr; ///< of the selected object
    TrustBar* m_trust;
    QAction* m_trustAction = nullptr;
    QAction* m_bindAction = nullptr;
    QUndoGroup m_undo;
    QWidget* m_content;
    QLabel* m_problems;
    bool m_isEdited = false; ///< the editor's text is another than that of the document
};
