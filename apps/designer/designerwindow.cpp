#include "apps/designer/designerwindow.h"

#include "apps/designer/bindingdock.h"
#include "apps/designer/objectdock.h"
#include "apps/designer/pointdock.h"
#include "host/canvas/canvasview.h"
#include "host/design/accessdialog.h"
#include "host/design/bindpointdialog.h"
#include "host/design/designdocument.h"
#include "host/design/pointdrop.h"
#include "host/scripting/scripttrust.h"
#include "host/scripting/trustbar.h"
#include "scada/actions/korvanescriptoreditor.h"
#include "scada/actions/scriptoperationsetting.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

using Korvane::TriggerType;

constexpr double zoomStep = 1.25;

constexpr TriggerType shapeEvents[] = {
    TriggerType::MousePress,       TriggerType::MouseRelease,
    TriggerType::MouseDoubleClick, TriggerType::MouseRightButtonRelease,
    TriggerType::MouseHover,       TriggerType::MouseLeave,
    TriggerType::KeyPress,         TriggerType::ObjectLoading,
};
constexpr TriggerType pageEvents[] = {
    TriggerType::CanvasLoad,   TriggerType::CanvasUnload,     TriggerType::MousePress,
    TriggerType::MouseRelease, TriggerType::MouseDoubleClick, TriggerType::MouseRightButtonRelease,
    TriggerType::MouseHover,   TriggerType::MouseLeave,       TriggerType::KeyPress,
};

QPair<int, QString> eventType(TriggerType trigger)
{
    ScadaScriptAction action;
    action.setTriggerType(trigger);
    const QString name = action.triggerName();
    // A page of another program may use events that this one has no name for.
    return {static_cast<int>(trigger), name.isEmpty() ? QString::number(static_cast<int>(trigger)) : name};
}

// What a text area makes of a script: its line ends and blanks are of one kind.
QString asShown(const QString& script)
{
    QTextDocument shown;
    shown.setPlainText(script);
    return shown.toPlainText();
}

} // namespace

DesignerWindow::DesignerWindow(DesignSystem& system, QWidget* parent)
    : QMainWindow(parent),
      m_system(system),
      m_objects(new ObjectDock(this)),
      m_points(new PointDock(this)),
      m_binding(new BindingDock(this)),
      m_scriptDock(new QDockWidget(this)),
      m_trust(new TrustBar(system.project().folder, this)),
      m_content(new QWidget(this)),
      m_problems(new QLabel(this))
{
    resize(1280, 900);
    auto* column = new QVBoxLayout(m_content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_trust);
    // Asked once for a folder; whoever refused finds it in the menu.
    m_trust->setVisible(!system.scripts().isEnabled() &&
                        ScriptTrust::answerFor(system.project().folder) == ScriptTrust::Answer::NotAsked);
    connect(m_trust, &TrustBar::trusted, this, &DesignerWindow::trustScripts);
    setCentralWidget(m_content);
    buildDocks();
    buildMenus();
    m_problems->setTextFormat(Qt::PlainText); // pages put their own texts into it
    statusBar()->addWidget(m_problems, 1);
    heedModification();
}

DesignerWindow::~DesignerWindow()
{
    m_objects->showDocument(nullptr);
    m_binding->showShape(nullptr, nullptr);
    delete m_scripts; // they show the document, which goes before the window's children
    delete m_view;
}

void DesignerWindow::buildDocks()
{
    addDockWidget(Qt::LeftDockWidgetArea, m_objects);
    m_scriptDock->setObjectName(QStringLiteral("scripts"));
    m_scriptDock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    addDockWidget(Qt::LeftDockWidgetArea, m_points);
    addDockWidget(Qt::RightDockWidgetArea, m_binding);
    addDockWidget(Qt::BottomDockWidgetArea, m_scriptDock);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    resizeDocks({m_objects, m_binding}, {320, 300}, Qt::Horizontal);
    resizeDocks({m_scriptDock}, {360}, Qt::Vertical);
    resizeDocks({m_objects, m_points}, {400, 400}, Qt::Vertical);
    connect(m_objects, &ObjectDock::selected, this, &DesignerWindow::select);
}

void DesignerWindow::buildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QMenu* pages = file->addMenu(tr("&Open page"));
    for (const QString& name : m_system.project().pages())
        pages->addAction(name, this, [this, name] { openByUser(name); });
    file->addAction(tr("&Save"), this, &DesignerWindow::save, QKeySequence::Save);
    file->addSeparator();
    m_trustAction = file->addAction(tr("&Run this project's scripts..."), m_trust, &QWidget::show);
    m_trustAction->setVisible(!m_system.scripts().isEnabled());
    file->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence::Quit);
    buildEditMenus();
    buildViewMenu();
}

void DesignerWindow::buildEditMenus()
{
    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = m_undo.createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = m_undo.createRedoAction(this, tr("&Redo"));
    redo->setShortcuts({QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_Z), QKeySequence(Qt::CTRL + Qt::Key_Y)});
    edit->addActions({undo, redo});
    edit->addSeparator();
    m_bindAction =
        edit->addAction(tr("&Bind point..."), this, &DesignerWindow::bindPoint, QKeySequence(Qt::CTRL + Qt::Key_B));
    m_bindAction->setEnabled(false);

    QMenu* page = menuBar()->addMenu(tr("&Page"));
    page->addAction(tr("&Access rights..."), this, &DesignerWindow::editAccess);
}

void DesignerWindow::buildViewMenu()
{
    QMenu* view = menuBar()->addMenu(tr("&View"));
    const auto zoom = [this](double factor) {
        if (m_view)
            m_view->setZoom(factor > 0 ? m_view->zoom() * factor : 1);
    };
    view->addAction(
        tr("Zoom to &fit"), this,
        [this] {
            if (m_view)
                m_view->zoomToFit();
        },
        QKeySequence(Qt::CTRL + Qt::Key_0));
    view->addAction(
        tr("&Own size"), this, [zoom] { zoom(0); }, QKeySequence(Qt::CTRL + Qt::Key_1));
    view->addAction(
        tr("Zoom &in"), this, [zoom] { zoom(zoomStep); }, QKeySequence::ZoomIn);
    view->addAction(
        tr("Zoom &out"), this, [zoom] { zoom(1 / zoomStep); }, QKeySequence::ZoomOut);
    view->addSeparator();
    view->addAction(tr("Select the &page"), this, [this] { select(nullptr); });
    for (const QDockWidget* dock : {static_cast<QDockWidget*>(m_objects), static_cast<QDockWidget*>(m_points),
                                    static_cast<QDockWidget*>(m_binding)})
        view->addAction(dock->toggleViewAction());
}

void DesignerWindow::openByUser(const QString& name)
{
    if (!mayLeave())
        return;
    if (const auto opened = openPage(name); !opened)
        QMessageBox::warning(this, tr("Designer"), tr("The page can't be opened: %1").arg(opened.error()));
}

tl::expected<void, QString> DesignerWindow::openPage(const QString& name)
{
    auto opened = m_system.openPage(name);
    if (!opened)
        return tl::make_unexpected(opened.error());
    m_objects->showDocument(nullptr);
    m_binding->showShape(nullptr, nullptr);
    delete m_scripts;
    m_scripts = nullptr;
    delete m_view;
    m_selected = nullptr;
    m_document = std::move(*opened);
    showDocument();
    return {};
}

void DesignerWindow::showDocument()
{
    connect(m_document.get(), &DesignDocument::modifiedChanged, this, &DesignerWindow::heedModification);
    m_view = new CanvasView(m_document->canvas());
    m_view->setOperated(false);
    m_content->layout()->addWidget(m_view);
    connect(m_view, &CanvasView::clicked, this, &DesignerWindow::select);
    const auto* drop = new PointDrop(*m_view, *m_document, m_view);
    connect(drop, &PointDrop::dropped, this, &DesignerWindow::select);
    connect(m_document.get(), &DesignDocument::bindingsChanged, this, &DesignerWindow::heedBinding);
    // Its scripts are kept with it, as they stand in the editor.
    connect(m_document.get(), &DesignDocument::shapeAboutToGo, this, [this](const Shape* shape) {
        if (shape != m_selected)
            return;
        keepScripts();
        showSelected(nullptr);
    });
    m_undo.addStack(&m_document->undoStack());
    m_undo.setActiveStack(&m_document->undoStack());
    m_objects->showDocument(m_document.get());
    const QStringList problems = m_system.problems() + m_document->page().problems;
    m_problems->setText(problems.isEmpty()
                            ? QString()
                            : tr("%n problem(s), the first: ", nullptr, problems.size()) + problems.constFirst());
    m_problems->setToolTip(problems.join(QLatin1Char('\n')));
    heedModification();
    showSelected(nullptr);
}

void DesignerWindow::select(Shape* shape)
{
    if (!m_document || shape == m_selected)
        return;
    keepEdits();
    showSelected(shape);
}

void DesignerWindow::showSelected(Shape* shape)
{
    m_selected = shape;
    showScripts();
    heedBinding();
}

void DesignerWindow::heedBinding()
{
    m_bindAction->setEnabled(m_selected && m_document->canBind(*m_selected));
}

void DesignerWindow::bindPoint()
{
    BindPointDialog(*m_document, *m_selected, this).exec();
}

void DesignerWindow::editAccess()
{
    if (!m_document)
        return;
    AccessDialog dialog(m_system.core(), m_document->page().access, this);
    if (dialog.exec() == QDialog::Accepted)
        m_document->setAccess(dialog.access());
}

// An editor of its own for each object, which so has its own history of changes.
void DesignerWindow::showScripts()
{
    delete m_scripts;
    m_view->setSelected(m_selected);
    m_objects->select(m_selected);
    m_binding->showShape(m_document.get(), m_selected);
    m_scriptDock->setWindowTitle(tr("Scripts of %1").arg(ObjectDock::nameOf(*m_document, m_selected)));
    m_scripts = new ScriptOperationSetting(&m_document->trialCanvas(), &m_system.scripts(), m_scriptDock);
    m_scripts->init(eventTypes());
    m_scripts->setScript(m_document->scripts(m_selected), &m_document->trialCanvas());
    m_scripts->setEnabled(DesignDocument::canHaveScripts(m_selected));
    m_scriptDock->setWidget(m_scripts);
    m_scripts->show();
    const auto* editor = m_scripts->findChild<KorvaneScriptorEditor*>();
    m_isEdited = false;
    // textChanged() comes for new colours too.
    connect(editor->scriptEditor()->document(), &QTextDocument::contentsChange, this, [this] {
        m_isEdited = true;
        heedModification();
    });
    // What was written for the event before is in the widget only when the switch is over.
    connect(m_scripts, &ScriptOperationSetting::dirtyed, this, &DesignerWindow::keepScripts, Qt::QueuedConnection);
    heedModification();
}

// What the object can have, and what it has.
QList<QPair<int, QString>> DesignerWindow::eventTypes() const
{
    QList<QPair<int, QString>> types;
    if (m_selected) {
        for (const TriggerType trigger : shapeEvents)
            types.append(eventType(trigger));
    } else {
        for (const TriggerType trigger : pageEvents)
            types.append(eventType(trigger));
    }
    QList<ScadaScriptAction> scripts = m_document->scripts(m_selected);
    for (ScadaScriptAction& script : scripts) {
        const QPair<int, QString> type = eventType(script.triggetType());
        if (!types.contains(type))
            types.append(type);
    }
    return types;
}

// As the widget has them. One that only stands there as the text area shows it was not changed, and stays as it was.
QList<ScadaScriptAction> DesignerWindow::editedScripts() const
{
    QList<ScadaScriptAction> edited = m_scripts->scriptActions();
    QList<ScadaScriptAction> kept = m_document->scripts(m_selected);
    for (ScadaScriptAction& script : edited) {
        for (ScadaScriptAction& before : kept) {
            if (before.triggetType() == script.triggetType() && asShown(before.script()) == script.script())
                script = before;
        }
    }
    return edited;
}

void DesignerWindow::keepScripts()
{
    if (!m_document || !m_scripts)
        return;
    m_document->setScripts(m_selected, editedScripts());
    m_isEdited = false;
    heedModification();
}

void DesignerWindow::keepEdits()
{
    keepScripts();
    m_binding->commit();
}

bool DesignerWindow::save()
{
    if (!m_document)
        return true;
    keepEdits();
    if (m_document->isFileChanged()) {
        const auto answer = QMessageBox::question(
            this, tr("Designer"),
            tr("%1 was changed by someone else since it was opened. Save over that?").arg(m_document->page().fileName));
        if (answer != QMessageBox::Yes)
            return false;
    }
    if (const auto saved = m_document->save(); !saved) {
        QMessageBox::warning(this, tr("Designer"), tr("The page could not be saved: %1").arg(saved.error()));
        return false;
    }
    statusBar()->showMessage(tr("Saved."), 3000);
    return true;
}

// Whether the page may be left: saved, unchanged, or given up by the user.
bool DesignerWindow::mayLeave()
{
    keepEdits();
    if (!m_document || !m_document->isModified())
        return true;
    const auto answer =
        QMessageBox::question(this, tr("Designer"), tr("Save the changes of %1?").arg(m_document->canvas().title()),
                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

// What stands in the editor counts before it is kept.
void DesignerWindow::heedModification()
{
    const QString page = m_document ? m_document->canvas().title() : QString();
    setWindowTitle(QStringLiteral("%1[*] - %2").arg(page, m_system.project().name));
    setWindowModified(m_isEdited || (m_document && m_document->isModified()));
}

void DesignerWindow::trustScripts()
{
    m_system.scripts().setEnabled(true);
    m_trust->hide();
    m_trustAction->setVisible(false);
}

void DesignerWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(mayLeave());
}
