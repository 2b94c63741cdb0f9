#include "apps/designer/pointdock.h"

#include "host/design/pointtree.h"

PointDock::PointDock(QWidget* parent) : QDockWidget(tr("Points"), parent)
{
    setObjectName(QStringLiteral("points"));
    setWidget(new PointTree(this));
}

PointDock::~PointDock() = default;
