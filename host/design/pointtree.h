#pragma once

#include "host/hostexport.h"
#include "platform/ui/pointtreemodel.h"

#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QWidget>

/// The points of the registered point directory in a tree by station, filtered while one types. One is dragged to where
/// it is to be shown, as KVPointMimeData.
///
/// The tree has the directory's objects as of its making.
class KORVANE_HOST_EXPORT PointTree : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PointTree)

public:
    explicit PointTree(QWidget* parent = nullptr);
    ~PointTree() override;

    /// The object that the tree's cursor is on; one of type NoObject for a station and for none.
    Korvane::BrowerItemInfo currentItem() const;

private:
    void setFilter(const QString& text);
    void goToTree();
    void showCount();

    PointTreeModel m_model;
    QLineEdit m_filter;
    QTreeView m_view;
    QLabel m_count;
    std::vector<int> m_openStations; ///< rows of those that were open before there was a filter
};
