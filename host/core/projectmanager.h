#pragma once

#include "host/core/project.h"
#include "host/hostexport.h"
#include "scada/hub/korvaneprojectmanagerinterface.h"

#include <tl/expected.hpp>

#include <functional>
#include <optional>

/// The reference host's project manager.
///
/// Settings are changed in memory until the project is saved; closing it, or opening another one, drops what was not
/// saved (the window asks before). What makes or renames a page's file is kept at once, with its own change of project.json,
/// so that the two never disagree. A project.json that another program changed meanwhile is not written over.
///
/// Files are all that it changes: whoever runs the project, or has a page open, goes on with what was read.
class KORVANE_HOST_EXPORT ProjectManager : public KorvaneProjectManagerInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(ProjectManager)

public:
    explicit ProjectManager(QWidget* parent = nullptr);
    ~ProjectManager() override;

    /// Takes a project as it was read, as openProject() does: for a system that runs it already.
    void setProject(const Project& project);

    /// When that fails, the project that was open stays open.
    bool openProject(const QString& folder) override;
    /// The folder may be missing, or empty.
    bool createProject(const QString& folder, const QString& name) override;
    bool closeProject() override;
    bool isSecurityEnabled() override;
    bool setSecurityEnabled(bool enabled) override;
    bool isOpen() const override;
    bool isModified() const override;
    bool saveProject() override;
    QString projectName() const override;
    QString projectFolder() const override;
    QString lastError() const override;

    QStringList pages() const override;
    QString pageFile(const QString& page) const override;
    QString startPage() const override;
    bool setStartPage(const QString& page) override;
    /// The name of a page that was taken out is free once its file is gone.
    bool addPage(const QString& page) override;
    /// The start page's going leaves the project without one.
    bool removePage(const QString& page) override;
    /// The start page stays the start page. Scripts that open the page by its old name are left as they are.
    bool renamePage(const QString& page, const QString& newName) override;

    /// As it will be saved; the names of an object's members are joined by dots ("alarms.repeatMs").
    QVariant setting(const QString& name) const override;
    /// False for a value with which the project could not be opened, or that JSON can't hold.
    bool setSetting(const QString& name, const QVariant& value) override;
    std::chrono::milliseconds tick() const override;
    QStringList sources() const override;
    QString resourceFile(const QString& relativePath) const override;

Q_SIGNALS:
    /// Anything of the project, or lastError(), may be another one now.
    void changed();

private:
    using Done = tl::expected<void, QString>;

    bool finish(const Done& done);
    void close();
    bool change(const QString& setting, const QVariant& value);
    Done checkPage(const QString& page) const;
    Done checkNewPage(const QString& name, const QString& exceptFile) const;
    Done store(const Project& project);
    using Change = std::function<tl::expected<Project, QString>(const Project&)>;
    Done changeFiles(const Change& change, const std::function<Done()>& act, const std::function<void()>& takeBack);
    Done makePage(const QString& page);
    Done takeOutPage(const QString& page);
    Done giveNewName(const QString& page, const QString& newName);

    std::optional<Project> m_project; ///< as it will be saved
    std::optional<Project> m_stored;  ///< as its file is
    bool m_isSecured = false;         ///< as it was opened
    QString m_lastError;
};
