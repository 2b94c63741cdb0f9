#pragma once

#include "scada/scadaexport.h"

#include <QLabel>
#include <QList>
#include <QPair>
#include <QPoint>
#include <QPointF>
#include <QString>

/// A tool tip that names points. It looks and stands like the platform's own but doesn't time out: it goes with the next
/// change of focus or of the active window, turn of the wheel or leaving of a widget, anywhere in the application. Keys,
/// presses and moves leave it up.
///
/// Each showTip() makes another tip, which deletes itself when it goes, or earlier with its parent: keep no pointer to it
/// past that without watching destroyed().
class KORVANE_SCADA_EXPORT PointToolTipWidget : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY(PointToolTipWidget)

public:
    explicit PointToolTipWidget(QWidget* parent = nullptr);
    ~PointToolTipWidget() override;

    /// Shows a tip for one point. An empty description has no line.
    /// \param pos on the screen; rounded to whole pixels
    /// \param w the tip's parent; says on which screen it comes up where screens are separate desktops
    static PointToolTipWidget* showTip(const QString& name, const QString& description, const QPointF& pos, QWidget* w);
    /// Likewise for several points by name and description; of each the name alone is shown.
    static PointToolTipWidget* showTip(const QList<QPair<QString, QString>>& points, const QPointF& pos, QWidget* w);

    /// Gives the tip another text and place. Does not show it.
    void showText(const QPoint& pos, const QString& text, QWidget* w);
    /// Gives the tip another text and the size for it.
    void reuseTip(const QString& text);
    /// Moves the tip next to \p pos: below and to the right, or above and to the left where it would leave the screen.
    void placeTip(const QPoint& pos, QWidget* w);
    /// The number of the screen: that of \p pos on one large desktop, else that of \p w.
    int getTipScreen(const QPoint& pos, QWidget* w);

    /// Closes the tip when the event is one that ends it. Consumes nothing.
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    static PointToolTipWidget* showTextTip(const QString& text, const QPointF& pos, QWidget* w);
};
