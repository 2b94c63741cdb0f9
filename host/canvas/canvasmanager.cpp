#include "host/canvas/canvasmanager.h"

#include "host/canvas/pagereader.h"
#include "scada/hub/canvasscadaactionmanagerfactoryinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <algorithm>

CanvasManager::CanvasManager(const Project& project, KorvaneScadaCoreInterface& hub, QObject* parent)
    : QObject(parent), m_project(project), m_hub(hub)
{
}

CanvasManager::~CanvasManager() = default;

Page* CanvasManager::find(const QString& name) const
{
    const auto found = std::find_if(m_pages.begin(), m_pages.end(),
                                    [&name](const auto& page) { return page->canvas->canvasName() == name; });
    return found == m_pages.end() ? nullptr : found->get();
}

tl::expected<Page*, QString> CanvasManager::open(const QString& name)
{
    if (Page* page = find(name)) {
        if (const auto allowed = m_mayOpen ? m_mayOpen(page->access) : tl::expected<void, QString>(); !allowed)
            return tl::make_unexpected(QStringLiteral("%1: %2").arg(page->fileName, allowed.error()));
        setCurrent(page);
        return page;
    }
    // A name is no path: a page can't lead out of its project.
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return tl::make_unexpected(QStringLiteral("\"%1\" is no name of a page").arg(name));
    PageReader reader(*m_hub.canvasActionManagerFactory(), m_hub.scadaRuntime());
    reader.setAccessCheck(m_mayOpen);
    auto read = reader.readFile(m_project.pageFile(name));
    if (!read)
        return tl::make_unexpected(read.error());
    m_pages.push_back(std::make_unique<Page>(std::move(*read)));
    Page* page = m_pages.back().get();
    page->actions->setShown(false);
    page->actions->open(m_hub.scadaRuntime());
    setCurrent(page);
    Q_EMIT opened(page);
    return page;
}

bool CanvasManager::close(const QString& name)
{
    Page* page = find(name);
    if (!page)
        return false;
    if (m_current == page)
        m_current = nullptr;
    page->actions->close();
    Q_EMIT aboutToClose(page);
    m_pages.erase(
        std::find_if(m_pages.begin(), m_pages.end(), [page](const auto& open) { return open.get() == page; }));
    return true;
}

void CanvasManager::setCurrent(const Page* page)
{
    m_current = page;
}

KVCanvasInterface* CanvasManager::currentCanvas() const
{
    return m_current ? m_current->canvas.get() : nullptr;
}

QList<KVCanvasInterface*> CanvasManager::canvases() const
{
    QList<KVCanvasInterface*> all;
    for (const auto& page : m_pages)
        all.append(page->canvas.get());
    return all;
}

KVCanvasInterface* CanvasManager::findCanvas(const QString& name) const
{
    const Page* page = find(name);
    return page ? page->canvas.get() : nullptr;
}
