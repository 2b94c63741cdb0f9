#pragma once

#include "platform/data/broweriteminfo.h"
#include "scada/scadaexport.h"

#include <QString>
#include <QWidget>

#include <memory>

class PointBrowserDialog;

namespace Ui {
class PointSelectWidget;
}

/// One line in which an engineer names the point that something is bound to: typed, dropped from a tree of points, or
/// chosen in the point browser, which "..." opens at the point that is typed.
///
/// What the line says is getTagString(), valid tag or not; linkInfoChanged() tells each change of it, whoever made it.
/// The browser is modeless, one a widget, and goes with it.
class KORVANE_SCADA_EXPORT PointSelectWidget : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PointSelectWidget)

public:
    explicit PointSelectWidget(QWidget* parent = nullptr);
    ~PointSelectWidget() override;

    QString getTagString() const;
    void setTagString(const QString& tag);

    void setLabel(const QString& text);
    void setShowLabel(bool shown);
    /// Hides the label.
    void hideName();
    /// Takes the gap at the right end out of the layout. Kept: it is not deleted, not with the widget either.
    void removeSpacer();

    /// Which kinds of objects the browser offers, from the next one that is opened; all of them at first.
    void setBrowserType(Korvane::BrowseTypeFlag types);
    /// Whether a field is chosen along with the object; false at first. An open browser follows at once.
    void setShowProperty(bool shown);

Q_SIGNALS:
    void linkInfoChanged(const QString& text);
    /// The user chose \p source by drop or in the browser. The line shows it already.
    void browserItemSelected(const Korvane::BrowerItemInfo& source);

public Q_SLOTS:
    /// Forgets the browser.
    void dlgDestroyed(QObject* obj);
    /// Opens the browser at the point that is typed. One that is open is only shown again, where it stands.
    void slotBrowsePoint();
    /// Empties the line.
    void reset();
    /// Takes what is selected in the open browser, which stays open. Does nothing when none is open.
    void updateBrowserItem();
    /// Emits linkInfoChanged().
    void handleTextChange(const QString& text);

protected:
    /// Writes a chosen object into the line: its tag as it is, or with the field where fields are chosen too.
    void updateLinkSource(const Korvane::BrowerItemInfo& item);

    /// Welcomes whatever is dragged; only the drop decides.
    void dragEnterEvent(QDragEnterEvent* event) override;
    /// Takes a KVPointMimeData and nothing else.
    void dropEvent(QDropEvent* event) override;

private:
    void openBrowser();

    std::unique_ptr<Ui::PointSelectWidget> m_ui;
    PointBrowserDialog* m_browser = nullptr; ///< deletes itself when it is closed
    Korvane::BrowseTypeFlag m_browserType;
    [[maybe_unused]] bool m_reserved = false; // kept: never read or written
    bool m_showProperty = false;
};
