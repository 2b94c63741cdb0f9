#pragma once

#include <QDockWidget>

/// The project's points in a tree, from which one is dragged onto the page.
class PointDock : public QDockWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PointDock)

public:
    explicit PointDock(QWidget* parent);
    ~PointDock() override;
};
