#include "apps/runtime/runtimewindow.h"

#include "apps/runtime/explanationdock.h"
#include "apps/runtime/headlessrun.h"
#include "apps/runtime/scriptdock.h"
#include "apps/runtime/tagdock.h"
#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/runtime/livesystem.h"
#include "host/runtime/pagesearch.h"
#include "host/scripting/pageinput.h"
#include "host/scripting/scripttrust.h"
#include "host/scripting/trustbar.h"
#include "host/shapes/shape.h"
#include "platform/data/datalinkinfo.h"

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextStream>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr std::chrono::seconds figureInterval{1};
constexpr double zoomStep = 1.25;

double median(std::vector<double>& values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

RuntimeWindow::RuntimeWindow(LiveSystem& system, const RuntimeOptions& options, QWidget* parent)
    : QMainWindow(parent),
      m_system(system),
      m_options(options),
      m_alarms(system, *this, options.isSilent),
      m_operating(system, *this),
      m_hint(new QLabel(this)),
      m_explanation(new ExplanationDock(system.database(), this)),
      m_tags(new TagDock(system.database(), this)),
      m_scripts(new ScriptDock(system.scripts(), this)),
      m_trust(new TrustBar(system.project().folder, this)),
      m_figures(new QLabel(this)),
      m_problems(new QLabel(this))
{
    setWindowTitle(QStringLiteral("%1 - %2").arg(system.project().name, system.sourceDescription()));
    resize(1280, 800);
    m_tabs.setObjectName(QStringLiteral("pages"));
    m_tabs.setDocumentMode(true);
    m_tabs.setTabsClosable(true);
    m_tabs.setMovable(true);
    auto* content = new QWidget(this);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_trust);
    column->addWidget(m_operating.banner());
    column->addWidget(&m_tabs);
    column->addWidget(m_hint, 1);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->hide();
    column->addWidget(m_alarms.banner());
    setCentralWidget(content);
    addDockWidget(Qt::RightDockWidgetArea, m_explanation);
    addDockWidget(Qt::BottomDockWidgetArea, m_tags);
    m_explanation->hide();
    connect(m_explanation, &QDockWidget::visibilityChanged, this,
            [this] { m_operating.setPaused(m_explanation->isVisible()); });
    m_tags->hide();
    addDockWidget(Qt::BottomDockWidgetArea, m_scripts);
    m_scripts->hide();
    m_trust->hide();
    buildMenus();
    buildStatusBar();
    heedScripts();
    showHint();

    connect(&m_tabs, &QTabWidget::currentChanged, this, &RuntimeWindow::heedTab);
    connect(&m_tabs, &QTabWidget::tabCloseRequested, this, &RuntimeWindow::closeTab);
    connect(&system, &LiveSystem::problemFound, this, &RuntimeWindow::addProblem);
    connect(&m_alarms, &AlarmStation::pageRequested, this, &RuntimeWindow::showObject);
    connect(&m_operating, &OperatorStation::pageRequested, this, &RuntimeWindow::showObject);
    connect(&m_operating, &OperatorStation::sessionChanged, this, &RuntimeWindow::heedSession);
    connect(&system.dataService(), &DataService::batchSent, this, [this] {
        const Page* page = currentPage();
        m_hasNewValues |= page && page->canvas->hasChanged() && m_system.dataService().figures().newestSampleMs > 0;
    });
    connect(&m_figureTimer, &QTimer::timeout, this, &RuntimeWindow::showFigures);
    m_figureTimer.start(figureInterval);
    m_sinceFigures.start();
    m_isPictureDue = !options.screenshot.isEmpty() && !options.after;
    if (options.after)
        QTimer::singleShot(*options.after, this, &RuntimeWindow::end);
}

RuntimeWindow::~RuntimeWindow()
{
    // The tabs' end reports other tabs in front, and the window's hides the docks: nothing is left to show by then.
    m_tabs.disconnect(this);
    m_explanation->disconnect(this);
    m_tags->showPage(nullptr);
    m_alarms.setPage(nullptr);
}

void RuntimeWindow::buildMenus()
{
    QMenu* pages = menuBar()->addMenu(tr("&Page"));
    for (const QString& name : m_system.project().pages())
        pages->addAction(name, this, [this, name] { openPage(name); });
    pages->addSeparator();
    m_trustAction = pages->addAction(tr("&Run this project's scripts..."), m_trust, &QWidget::show);
    pages->addAction(
        tr("&Close"), this, [this] { closeTab(m_tabs.currentIndex()); }, QKeySequence::Close);
    pages->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence::Quit);

    QMenu* view = menuBar()->addMenu(tr("&View"));
    const auto zoom = [this](double factor) {
        if (CanvasView* shown = currentView())
            shown->setZoom(factor > 0 ? shown->zoom() * factor : 1);
    };
    view->addAction(
        tr("Zoom to &fit"), this,
        [this] {
            if (CanvasView* shown = currentView())
                shown->zoomToFit();
        },
        QKeySequence(Qt::CTRL + Qt::Key_0));
    view->addAction(
        tr("&Own size"), this, [zoom] { zoom(0); }, QKeySequence(Qt::CTRL + Qt::Key_1));
    view->addAction(
        tr("Zoom &in"), this, [zoom] { zoom(zoomStep); }, QKeySequence::ZoomIn);
    view->addAction(
        tr("Zoom &out"), this, [zoom] { zoom(1 / zoomStep); }, QKeySequence::ZoomOut);
    QAction* fullScreen = view->addAction(tr("F&ull screen"));
    fullScreen->setCheckable(true);
    fullScreen->setShortcut(Qt::Key_F11);
    connect(fullScreen, &QAction::toggled, this, &RuntimeWindow::toggleFullScreen);
    m_layers = view->addMenu(tr("&Layers"));
    view->addSeparator();
    QAction* explanation = m_explanation->toggleViewAction();
    explanation->setText(tr("&Why does this shape look like this"));
    explanation->setShortcut(Qt::Key_F2);
    QAction* tags = m_tags->toggleViewAction();
    tags->setText(tr("&Tags of the page"));
    tags->setShortcut(Qt::Key_F3);
    QAction* scripts = m_scripts->toggleViewAction();
    scripts->setText(tr("&Output of the scripts"));
    scripts->setShortcut(Qt::Key_F4);
    view->addActions({explanation, tags, scripts});
    QMenu* alarms = menuBar()->addMenu(tr("&Alarms"));
    m_alarms.fillMenu(*alarms);
    QMenu* operating = menuBar()->addMenu(tr("&Operate"));
    m_operating.fillMenu(*operating);
    // Keys work while the menu bar is hidden.
    for (const QMenu* menu : {pages, view, alarms, operating})
        addActions(menu->actions());
}

void RuntimeWindow::heedScripts()
{
    ScriptEngine& scripts = m_system.scripts();
    connect(&scripts, &ScriptEngine::pageRequested, this, &RuntimeWindow::openPage);
    connect(&scripts, &ScriptEngine::closeRequested, this,
            [this](const QString& name) { closeTab(m_tabs.indexOf(viewOf(name))); });
    connect(&scripts, &ScriptEngine::zoomRequested, this, [this](const QString& name, double factor) {
        CanvasView* view = viewOf(name);
        if (view && factor > 0)
            view->setZoom(factor);
        else if (view)
            view->zoomToFit();
    });
    connect(m_trust, &TrustBar::trusted, this, [this] {
        m_system.trustScripts();
        m_trustAction->setVisible(false);
    });
    m_trustAction->setVisible(!scripts.isEnabled());
}

void RuntimeWindow::buildStatusBar()
{
    m_problems->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_problems->setTextFormat(Qt::PlainText); // scripts and pages put their own texts into it
    statusBar()->addWidget(m_problems, 1);
    statusBar()->addPermanentWidget(m_operating.userLabel());
    statusBar()->addPermanentWidget(m_figures);
    if (!m_system.problems().isEmpty())
        addProblem(m_system.problems().constLast());
}

void RuntimeWindow::addProblem(const QString& text)
{
    const QStringList& all = m_system.problems();
    const QString line = text.section(QLatin1Char('\n'), 0, 0); // of a script's failure, without the way there
    m_problems->setText(tr("%n problem(s), the newest: ", nullptr, all.size()) +
                        fontMetrics().elidedText(line, Qt::ElideMiddle, width() / 2));
    constexpr int shownAtMost = 20;
    m_problems->setToolTip(QStringList(all.mid(all.size() - shownAtMost)).join(QLatin1Char('\n')));
}

void RuntimeWindow::openPage(const QString& name)
{
    if (const auto page = m_system.openPage(name))
        showPage(**page);
}

void RuntimeWindow::showPage(Page& page)
{
    CanvasView* view = m_pages.key(&page);
    if (!view) {
        view = new CanvasView(*page.canvas);
        m_pages.insert(view, &page);
        new PageInput(*view, *m_system.scriptsOf(page));
        m_operating.attach(*view, page);
        connect(view, &CanvasView::clicked, this, &RuntimeWindow::explain);
        connect(view, &CanvasView::painted, this, &RuntimeWindow::notePaint);
        m_tabs.addTab(view, page.canvas->title());
    }
    m_tabs.setCurrentWidget(view);
    heedTab();
    // Asked once for a folder; whoever refused finds it in the menu.
    if (m_system.hasUntrustedScripts() &&
        ScriptTrust::answerFor(m_system.project().folder) == ScriptTrust::Answer::NotAsked)
        m_trust->show();
}

void RuntimeWindow::closeTab(int place)
{
    if (!viewAt(place))
        return;
    dropTab(place);
    heedTab();
}

void RuntimeWindow::dropTab(int place)
{
    CanvasView* view = viewAt(place);
    Page* page = m_pages.take(view);
    m_explanation->forget();
    m_tags->showPage(nullptr);
    m_alarms.setPage(nullptr);
    m_tabs.removeTab(place);
    delete view;
    m_system.pages().close(page->canvas->canvasName());
}

void RuntimeWindow::beginSession(const QString& page)
{
    m_firstPage = page;
    showHint();
    m_operating.begin();
}

// What the one before could see goes before the next one sees anything.
void RuntimeWindow::heedSession()
{
    {
        // None of them comes to the front for a moment while others go.
        const QSignalBlocker blocker(m_tabs);
        m_tabs.hide();
        for (int place = m_tabs.count() - 1; place >= 0; --place) {
            const Page* page = m_pages.value(viewAt(place));
            if (!m_system.control().mayOpen(page->access))
                dropTab(place);
        }
    }
    heedTab();
    if (m_tabs.count() == 0 && m_system.control().users().currentAccount())
        openPage(m_firstPage.isEmpty() ? m_system.project().startPage : m_firstPage);
    showHint();
}

void RuntimeWindow::showHint()
{
    const bool isNobodyHere = m_system.project().isSecured && !m_system.control().users().currentAccount();
    m_hint->setText(isNobodyHere ? tr("Log on to see the plant's pages (Ctrl+L).") : tr("No page is open."));
    m_hint->setVisible(m_tabs.count() == 0);
    m_tabs.setVisible(m_tabs.count() > 0);
    // Scripts print what they know of the plant.
    m_scripts->toggleViewAction()->setDisabled(isNobodyHere);
    if (isNobodyHere) {
        m_scripts->hide();
        m_scripts->clear();
    }
}

// Only the page in front takes batches and paints.
void RuntimeWindow::heedTab()
{
    CanvasView* front = currentView();
    for (auto page = m_pages.begin(); page != m_pages.end(); ++page) {
        page.value()->actions->setShown(page.key() == front);
        if (page.key() != front)
            page.key()->setSelected(nullptr);
    }
    Page* page = currentPage();
    m_system.pages().setCurrent(page);
    m_alarms.setPage(page);
    m_explanation->forget();
    m_tags->showPage(page);
    fillLayers();
    showHint();
}

/// Selects the first shape that shows the object on the page in front; false when none does.
bool RuntimeWindow::select(ObjectKey object)
{
    const Page* page = currentPage();
    const auto bound = page ? page->actions->actionsBoundTo(object) : QList<ScadaTagActionInterface*>();
    if (bound.isEmpty())
        return false;
    currentView()->setSelected(dynamic_cast<Shape*>(bound.constFirst()->shape()));
    return true;
}

// The page in front, else the first of those that name it.
void RuntimeWindow::showObject(ObjectKey object)
{
    const RuntimeDatabase::Object* found = m_system.database().object(object);
    if (!found || select(object))
        return;
    const QStringList pages = pagesNaming(m_system.project(), object, m_system.database());
    if (pages.isEmpty()) {
        m_system.addProblem(tr("No page shows %1").arg(Korvane::tagPrefix(found->type) + found->name));
        return;
    }
    openPage(pages.constFirst());
    select(object);
}

void RuntimeWindow::fillLayers()
{
    m_layers->clear();
    Page* page = currentPage();
    if (!page)
        return;
    for (const auto& layer : page->canvas->layers()) {
        QAction* action = m_layers->addAction(layer->name());
        action->setCheckable(true);
        action->setChecked(layer->isVisible());
        connect(action, &QAction::toggled, this,
                [page, shown = layer.get()](bool isOn) { page->canvas->setLayerVisible(*shown, isOn); });
    }
}

void RuntimeWindow::explain(Shape* shape)
{
    if (!m_explanation->isVisible())
        return; // the click is for the plant
    currentView()->setSelected(shape);
    if (shape)
        m_explanation->explain(*currentPage(), *shape);
    else
        m_explanation->forget();
}

// How old the newest value on the screen is, counted from its sample.
void RuntimeWindow::notePaint()
{
    ++m_paints;
    const qint64 newest = m_system.dataService().figures().newestSampleMs;
    if (!m_hasNewValues || newest == 0)
        return;
    m_hasNewValues = false;
    m_lagsMs.push_back(static_cast<double>(m_system.nowMs() - newest) / m_system.speed());
    if (m_isPictureDue) {
        m_isPictureDue = false;
        QTimer::singleShot(0, this, &RuntimeWindow::takePicture); // not while a view is being painted
    }
}

void RuntimeWindow::showFigures()
{
    const double seconds = static_cast<double>(m_sinceFigures.restart()) / 1000;
    const quint64 records = m_system.dataService().figures().records;
    const double values = static_cast<double>(records - m_records) / seconds;
    const double paints = static_cast<double>(m_paints - m_paintsShown) / seconds;
    m_records = records;
    m_paintsShown = m_paints;
    QString lag = QStringLiteral("-");
    if (!m_lagsMs.empty()) {
        const double worst = *std::max_element(m_lagsMs.begin(), m_lagsMs.end());
        lag = tr("%1 ms, worst %2 ms").arg(median(m_lagsMs), 0, 'f', 0).arg(worst, 0, 'f', 0);
        m_lagsMs.clear();
    }
    m_figures->setText(tr("%1 values/s   %2 paints/s   lag %3   %4 points failed")
                           .arg(values, 0, 'f', 0)
                           .arg(paints, 0, 'f', 0)
                           .arg(lag)
                           .arg(m_system.dataService().failedPoints()));
    m_explanation->refresh();
    m_tags->refresh();
}

void RuntimeWindow::toggleFullScreen(bool isFull)
{
    menuBar()->setVisible(!isFull);
    statusBar()->setVisible(!isFull);
    m_tabs.tabBar()->setVisible(!isFull);
    setWindowState(isFull ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
}

void RuntimeWindow::end()
{
    HeadlessRun::printReport(m_system);
    QApplication::exit(m_options.screenshot.isEmpty() || takePicture() ? 0 : 1);
}

bool RuntimeWindow::takePicture()
{
    if (grab().save(m_options.screenshot))
        return true;
    QTextStream(stderr) << QStringLiteral("%1: can't be written\n").arg(m_options.screenshot);
    return false;
}

CanvasView* RuntimeWindow::currentView() const
{
    return viewAt(m_tabs.currentIndex());
}

CanvasView* RuntimeWindow::viewAt(int place) const
{
    return qobject_cast<CanvasView*>(m_tabs.widget(place));
}

CanvasView* RuntimeWindow::viewOf(const QString& page) const
{
    for (auto each = m_pages.begin(); each != m_pages.end(); ++each) {
        if (each.value()->canvas->canvasName() == page)
            return each.key();
    }
    return nullptr;
}

Page* RuntimeWindow::currentPage() const
{
    return m_pages.value(currentView());
}
