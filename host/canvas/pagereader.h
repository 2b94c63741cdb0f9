#pragma once

#include "host/canvas/page.h"
#include "host/hostexport.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

#include <functional>
#include <utility>

class CanvasScadaActionManagerFactoryInterface;
class ScadaRuntimeInterface;

/// Reads page files (.pws): JSON, a format and a version, layers of shapes, each with its actions.
///
/// A file as a whole is refused when it can't be read, is no page or of a newer version. Anything smaller that can't be
/// loaded is a problem of the page: the object shows as a marked placeholder, the action does nothing, the value keeps its
/// default; all of it stays in the file when the page is saved, as do members that are not known.
class KORVANE_HOST_EXPORT PageReader
{
public:
    static constexpr int version = 1;
    static constexpr qint64 mostBytes = qint64(64) * 1024 * 1024;

    /// \param managers makes the page's action manager
    /// \param runtime where tags that name nothing are looked up, for a problem each; null leaves them alone
    explicit PageReader(CanvasScadaActionManagerFactoryInterface& managers,
                        const ScadaRuntimeInterface* runtime = nullptr)
        : m_managers(managers), m_runtime(runtime)
    {
    }

    /// Says why a page with that access may not be opened, or that it may.
    using AccessCheck = std::function<tl::expected<void, QString>(const PageAccess&)>;
    /// Asked before anything of a page is made; without one every page may be opened.
    void setAccessCheck(AccessCheck mayOpen) { m_mayOpen = std::move(mayOpen); }

    /// The page in \p fileName, named after the file without its suffix. Not opened yet: its tags are not resolved.
    tl::expected<Page, QString> readFile(const QString& fileName) const;
    /// \param fileName stands in texts of errors and problems
    tl::expected<Page, QString> read(const QByteArray& text, const QString& fileName) const;

    /// Who may open the page in \p fileName, without making anything of the rest of it; nobody where that can't be read.
    static tl::expected<PageAccess, QString> readAccess(const QString& fileName);

private:
    static tl::expected<QByteArray, QString> textOf(const QString& fileName);
    CanvasScadaActionManagerFactoryInterface& m_managers;
    const ScadaRuntimeInterface* m_runtime;
    AccessCheck m_mayOpen;
};
