#pragma once

#include "host/canvas/page.h"
#include "host/canvas/pagereader.h"
#include "host/core/project.h"
#include "host/hostexport.h"
#include "platform/core/kvcanvasmanagerinterface.h"

#include <QObject>

#include <tl/expected.hpp>

#include <memory>
#include <utility>
#include <vector>

class KorvaneScadaCoreInterface;

/// The open pages of a project.
class KORVANE_HOST_EXPORT CanvasManager : public QObject, public KVCanvasManagerInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(CanvasManager)

public:
    /// \param hub not owned, must outlive the manager; has to have a canvas action manager factory
    CanvasManager(const Project& project, KorvaneScadaCoreInterface& hub, QObject* parent = nullptr);
    ~CanvasManager() override;

    /// Says why a page with that access may not be opened now, or that it may; every page may unless set. Asked for an
    /// open page too before it comes to the front.
    void setAccessCheck(PageReader::AccessCheck mayOpen) { m_mayOpen = std::move(mayOpen); }

    /// Opens the page of that name, or hands out the one that is open: its tags are resolved, and it counts as out of
    /// sight until whoever shows it says otherwise (setShown of its actions). It comes to the front.
    /// \returns the page, owned by the manager, or why it can't be opened.
    tl::expected<Page*, QString> open(const QString& name);
    /// Closes a page; false when it is not open.
    bool close(const QString& name);
    /// Brings an open page to the front; null for none.
    void setCurrent(const Page* page);

    const std::vector<std::unique_ptr<Page>>& pages() const { return m_pages; }

    KVCanvasInterface* currentCanvas() const override;
    QList<KVCanvasInterface*> canvases() const override;
    KVCanvasInterface* findCanvas(const QString& name) const override;

Q_SIGNALS:
    void opened(Page* page);
    /// The page is still whole; it goes when every listener has returned.
    void aboutToClose(Page* page);

private:
    Page* find(const QString& name) const;

    const Project& m_project;
    KorvaneScadaCoreInterface& m_hub;
    std::vector<std::unique_ptr<Page>> m_pages;
    PageReader::AccessCheck m_mayOpen;
    const Page* m_current = nullptr;
};
