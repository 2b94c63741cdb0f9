#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

class ProjectManager;

namespace Ui {
class ProjectPanel;
}

/// What the project manager's window shows, and the buttons for its operations.
class ProjectPanel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ProjectPanel)

public:
    /// \param manager not owned, must outlive the panel
    ProjectPanel(ProjectManager& manager, QWidget* parent);
    ~ProjectPanel() override;

private:
    using Then = std::function<void()>;
    using ThenWith = std::function<void(const QString&)>;

    void connectPages();
    void refresh();
    void refreshPages();
    void refreshButtons();
    QString selectedPage() const;
    void selectPage(const QString& page);
    /// Goes on once there is nothing left to save, or the user wants it dropped.
    void settleChanges(const Then& then);
    void askFolder(const QString& title, const ThenWith& then);
    void askName(const QString& title, const QString& label, const QString& name, const ThenWith& then);
    void createIn(const QString& folder);

    ProjectManager& m_manager;
    std::unique_ptr<Ui::ProjectPanel> m_form;
};
