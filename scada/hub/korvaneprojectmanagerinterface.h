#pragma once

#include "scada/scadaexport.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <chrono>

/// The project manager: the open project, its pages and its settings, in a window of its own. Implemented by the host.
///
/// Operations that can fail give false and tell why with lastError().
class KORVANE_SCADA_EXPORT KorvaneProjectManagerInterface : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneProjectManagerInterface)

public:
    explicit KorvaneProjectManagerInterface(QWidget* parent);
    ~KorvaneProjectManagerInterface() override;

    // Project

    /// Opens the project in a folder; the one before is closed. Then projectOpened() follows.
    virtual bool openProject(const QString& folder) = 0;
    /// Makes an empty project in a folder and opens it. Then projectCreated() and projectOpened() follow.
    virtual bool createProject(const QString& folder, const QString& name) = 0;
    /// Closes the project. Then projectClosed() follows.
    virtual bool closeProject() = 0;
    /// Whether the project uses user security: passwords, roles and page rights. False without a project. The fourth
    /// operation: binary compatibility of the confirmation dialogs depends on its place.
    virtual bool isSecurityEnabled() = 0;
    /// Takes effect with the next start of the project.
    virtual bool setSecurityEnabled(bool enabled) = 0;
    /// Whether there is a project.
    virtual bool isOpen() const = 0;
    /// Whether something was changed since the project was opened or saved.
    virtual bool isModified() const = 0;
    /// Writes the project's own file; pages are saved by their canvases.
    virtual bool saveProject() = 0;
    /// Empty without a project.
    virtual QString projectName() const = 0;
    /// Full path; empty without a project.
    virtual QString projectFolder() const = 0;
    /// Why the newest operation failed, for a user's eyes; empty when it did not.
    virtual QString lastError() const = 0;

    // Pages

    /// Names of the project's pages, in its own order.
    virtual QStringList pages() const = 0;
    /// Full path of a page's file; empty for a page that there is not.
    virtual QString pageFile(const QString& page) const = 0;
    /// The page that opens first; empty when the project names none.
    virtual QString startPage() const = 0;
    /// False for a page that there is not.
    virtual bool setStartPage(const QString& page) = 0;
    /// Makes an empty page behind the others; false when the name is taken or no file can have it.
    virtual bool addPage(const QString& page) = 0;
    /// Takes a page out of the project; its file stays.
    virtual bool removePage(const QString& page) = 0;
    /// Renames a page with its file; false when the new name is taken or no file can have it.
    virtual bool renamePage(const QString& page, const QString& newName) = 0;

    // Settings

    /// A setting of the project by name; invalid for one that it does not have.
    virtual QVariant setting(const QString& name) const = 0;
    /// An invalid value takes the setting out.
    virtual bool setSetting(const QString& name, const QVariant& value) = 0;
    /// How often pages get new values.
    virtual std::chrono::milliseconds tick() const = 0;
    /// The sources that the project names, as given to the data service.
    virtual QStringList sources() const = 0;
    /// Full path of a file that the project brings along ("sounds/high.wav"); empty when there is none.
    virtual QString resourceFile(const QString& relativePath) const = 0;

Q_SIGNALS:
    void projectClosed();
    void projectCreated();
    void projectOpened();
};
