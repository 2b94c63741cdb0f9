#pragma once

#include "apps/runtime/alarmstation.h"
#include "apps/runtime/operatorstation.h"
#include "apps/runtime/runtimeoptions.h"

#include <QElapsedTimer>
#include <QHash>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QTabWidget>
#include <QTimer>

#include <vector>

class CanvasView;
class ExplanationDock;
class LiveSystem;
class Shape;
class ScriptDock;
class TagDock;
class TrustBar;
struct Page;

/// The runtime's window: pages in tabs, layers and zoom, what explains a shape, the tags of a page, figures.
class RuntimeWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY(RuntimeWindow)

public:
    /// \param system not owned, must outlive the window
    RuntimeWindow(LiveSystem& system, const RuntimeOptions& options, QWidget* parent = nullptr);
    ~RuntimeWindow() override;

    /// Shows an open page in a tab of its own, in front.
    void showPage(Page& page);
    /// Has a user log on, in a project with user security, and then opens \p page.
    void beginSession(const QString& page);

private:
    void buildMenus();
    void buildStatusBar();
    void heedScripts();
    void openPage(const QString& name);
    void closeTab(int place);
    void dropTab(int place);
    void heedTab();
    void heedSession();
    void showHint();
    void fillLayers();
    void explain(Shape* shape);
    void showObject(ObjectKey object);
    bool select(ObjectKey object);
    void notePaint();
    void showFigures();
    void toggleFullScreen(bool isFull);
    void addProblem(const QString& text);
    void end();
    bool takePicture();
    CanvasView* viewAt(int place) const;
    CanvasView* viewOf(const QString& page) const;
    CanvasView* currentView() const;
    Page* currentPage() const;

    LiveSystem& m_system;
    const RuntimeOptions& m_options;
    AlarmStation m_alarms;
    OperatorStation m_operating;
    QTabWidget m_tabs;
    QLabel* m_hint; ///< in place of the pages while none may be seen
    QString m_firstPage;
    QHash<CanvasView*, Page*> m_pages;
    QMenu* m_layers = nullptr;
    ExplanationDock* m_explanation;
    TagDock* m_tags;
    ScriptDock* m_scripts;
    TrustBar* m_trust;
    QAction* m_trustAction = nullptr;
    QLabel* m_figures;
    QLabel* m_problems;
    QTimer m_figureTimer;
    QElapsedTimer m_sinceFigures;
    std::vector<double> m_lagsMs; ///< of the paints since the figures were shown last
    quint64 m_records = 0;        ///< as of then
    quint64 m_paints = 0;
    quint64 m_paintsShown = 0;
    bool m_hasNewValues = false; ///< a batch waits to be painted
    bool m_isPictureDue = false; ///< once values are on the screen
};
