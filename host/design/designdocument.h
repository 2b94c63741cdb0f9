#pragma once

#include "host/canvas/page.h"
#include "host/hostexport.h"
#include "scada/actions/scadascriptaction.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <tl/expected.hpp>

#include <memory>

class CanvasScadaActionManagerFactoryInterface;
class RuntimeDatabase;
class ScriptEngine;

/// A page that is being edited, and the file that it comes from.
///
/// Scripts that the user tries run on a copy of the page, so that what they do is never saved with it.
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
    /// The copy of the page as it was opened, on which scripts are tried.
    Canvas& trialCanvas() const { return *m_trial.canvas; }

    QList<ScadaScriptAction> scripts(const Shape* shape) const { return m_page.events.scripts(shape); }
    /// False for an object that could not be loaded: it is saved as it was read, with the scripts that it has there.
    static bool canHaveScripts(const Shape* shape);
    /// Replaces the scripts of \p shape, of the page itself for null; the same ones change nothing, and neither does
    /// an object that can't have any.
    void setScripts(const Shape* shape, const QList<ScadaScriptAction>& scripts);

    bool isModified() const { return m_isModified; }
    /// Whether the file is another than the one that was opened or saved last.
    bool isFileChanged() const;
    /// Writes the page into its file, whatever that holds by now.
    /// \returns why it could not; the file is as it was then.
    tl::expected<void, QString> save();

Q_SIGNALS:
    void modifiedChanged(bool isModified);
    /// The scripts of a shape, of the page itself for null, are others now.
    void scriptsChanged(const Shape* shape);

private:
    DesignDocument(Page page, Page trial, ScriptEngine& scripts);
    void setModified(bool modified);

    Page m_page;
    Page m_trial;
    ScriptEngine& m_scripts;
    QByteArray m_fileHash;
    bool m_isModified = false;
};
