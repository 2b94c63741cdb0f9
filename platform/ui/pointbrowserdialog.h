#pragma once

#include "platform/data/broweriteminfo.h"
#include "platform/platformexport.h"

#include <QDialog>
#include <QString>

#include <memory>

class DataServiceInterface;

/// Lists the objects of the registered point directory in a tree by station and lets the user choose one, with a field
/// where fields are shown. Filters while one types: Down goes from the filter to the tree, Return takes what is
/// selected.
///
/// The list is the directory's as of the dialog's making. Without a directory it is empty and says so. What the filter
/// hides is not selected; it is again when it comes back, unless something else was selected meanwhile.
///
/// It remembers its geometry, its columns and the width of the fields from one time to the next, in the application's
/// settings file (Korvane::getSettingPath), group "PointBrowserDialog", keys "Geometry", "Columns", "FieldColumns" and
/// "Splitter".
class KORVANE_PLATFORM_EXPORT PointBrowserDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(PointBrowserDialog)

public:
    /// \param types kinds that are listed
    /// \param dataService what it has of the past hour stands beside the fields that hold past values; not owned; null
    ///        for none
    PointBrowserDialog(QWidget* parent, Qt::WindowFlags flags, Korvane::BrowseTypeFlag types,
                       DataServiceInterface* dataService);
    ~PointBrowserDialog() override;

    /// Whether the fields of the selected object are offered too; false at first. The field chosen for one object is
    /// the chosen one of the next, if that has it.
    void setShowPropertyView(bool shown);
    bool isPropertyViewShown() const;

    /// Selects an object, without a field, and brings it into view; does nothing when it is not listed. A type of Point
    /// stands for either kind of point. The filter is cleared when it hides the object.
    void locateToPoint(Korvane::ScadaObjectType type, int number);
    /// Likewise, with a field by its name; an unknown one selects none.
    void locateToPoint(Korvane::ScadaObjectType type, int number, const QString& property);

    /// What is selected; one of type NoObject when nothing is.
    Korvane::BrowerItemInfo getSelectedItem() const;

Q_SIGNALS:
    /// The user took the selected item: by OK, Return or a double click. The dialog stays open.
    void emitOk();

protected:
    /// The filter has the focus each time the dialog comes up.
    void showEvent(QShowEvent* event) override;

private:
    class Private;
    std::unique_ptr<Private> m_d;
};
