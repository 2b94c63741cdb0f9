#include "scada/widgets/pointtooltipwidget.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QEvent>
#include <QFontMetrics>
#include <QStyle>
#include <QStyleHintReturnMask>
#include <QStyleOptionFrame>
#include <QStylePainter>
#include <QTextDocument>
#include <QToolTip>

namespace {

constexpr QPoint besidePointer(2, 16);
constexpr QPoint acrossPointer(4, 24); ///< how far back a tip goes, beyond its own size, that opens to the other side

bool isEndOfTip(QEvent::Type type)
{
    switch (type) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::Leave:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
    case QEvent::Wheel:
        return true;
    default: // kept: keys, presses and moves among them, unlike for the platform's tips
        return false;
    }
}

QString labelName()
{
    return QStringLiteral("qtooltip_label"); // that style sheets address the platform's tips by
}

// Only the desktop widget knows screens by their numbers.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
int screenNumberOf(const QPoint& pos, const QWidget* w)
{
    const QDesktopWidget* desktop = QApplication::desktop();
    return desktop->isVirtualDesktop() ? desktop->screenNumber(pos) : desktop->screenNumber(w);
}

QRect screenGeometryOf(int number)
{
    return QApplication::desktop()->screenGeometry(number);
}
QT_WARNING_POP

} // namespace

PointToolTipWidget::PointToolTipWidget(QWidget* parent) : QLabel(parent, Qt::ToolTip | Qt::BypassGraphicsProxyWidget)
{
    setStyleSheet(QString());
    setForegroundRole(QPalette::ToolTipText);
    setBackgroundRole(QPalette::ToolTipBase);
    setPalette(QToolTip::palette());
    ensurePolished();
    setMargin(style()->pixelMetric(QStyle::PM_ToolTipLabelFrameWidth, nullptr, this) + 1);
    setFrameStyle(QFrame::NoFrame);
    setAlignment(Qt::AlignLeft);
    setIndent(1);
    QCoreApplication::instance()->installEventFilter(this);
    setWindowOpacity(style()->styleHint(QStyle::SH_ToolTipLabel_Opacity, nullptr, this) / 255.0);
    setMouseTracking(true);
}

PointToolTipWidget::~PointToolTipWidget() = default;

PointToolTipWidget* PointToolTipWidget::showTip(const QString& name, const QString& description, const QPointF& pos,
                                                QWidget* w)
{
    QString text = tr("Name: ") + name;
    if (!description.isEmpty())
        text += QLatin1Char('\n') + tr("Discription: ") + description; // kept: spelled so
    return showTextTip(text, pos, w);
}

PointToolTipWidget* PointToolTipWidget::showTip(const QList<QPair<QString, QString>>& points, const QPointF& pos,
                                                QWidget* w)
{
    QString text;
    for (const auto& point : points) {
        if (!text.isEmpty())
            text += QLatin1Char('\n');
        text += tr("Name: ") + point.first; // kept: the description stays out of it
    }
    return showTextTip(text, pos, w);
}

PointToolTipWidget* PointToolTipWidget::showTextTip(const QString& text, const QPointF& pos, QWidget* w)
{
    auto* tip = new PointToolTipWidget(w);
    tip->setAttribute(Qt::WA_DeleteOnClose);
    tip->showText(pos.toPoint(), text, w);
    tip->show();
    return tip;
}

void PointToolTipWidget::showText(const QPoint& pos, const QString& text, QWidget* w)
{
    reuseTip(text);
    placeTip(pos, w);
    setObjectName(labelName());
}

void PointToolTipWidget::reuseTip(const QString& text)
{
    setWordWrap(Qt::mightBeRichText(text));
    setText(text);
    const QFontMetrics metrics(font());
    const bool isLow = metrics.descent() == 2 && metrics.ascent() >= 11; // letters would touch the lower edge
    resize(sizeHint() + QSize(1, isLow ? 1 : 0));
}

void PointToolTipWidget::placeTip(const QPoint& pos, QWidget* w)
{
    const QRect screen = screenGeometryOf(getTipScreen(pos, w));
    const int rightEnd = screen.x() + screen.width();
    const int lowerEnd = screen.y() + screen.height();
    QPoint p = pos + besidePointer;
    if (rightEnd < p.x() + width())
        p.rx() -= acrossPointer.x() + width();
    if (lowerEnd < p.y() + height())
        p.ry() -= acrossPointer.y() + height();
    if (p.y() < screen.y())
        p.setY(screen.y());
    if (rightEnd < p.x() + width())
        p.setX(rightEnd - width());
    if (p.x() < screen.x())
        p.setX(screen.x());
    if (lowerEnd < p.y() + height())
        p.setY(lowerEnd - height());
    move(p);
}

int PointToolTipWidget::getTipScreen(const QPoint& pos, QWidget* w)
{
    return screenNumberOf(pos, w);
}

bool PointToolTipWidget::eventFilter(QObject*, QEvent* event)
{
    if (isEndOfTip(event->type()))
        close();
    return false;
}

void PointToolTipWidget::paintEvent(QPaintEvent* event)
{
    QStylePainter painter(this);
    QStyleOptionFrame option;
    option.initFrom(this);
    painter.drawPrimitive(QStyle::PE_PanelTipLabel, option);
    painter.end(); // the label paints its text with one of its own
    QLabel::paintEvent(event);
}

void PointToolTipWidget::resizeEvent(QResizeEvent* event)
{
    QStyleOption option;
    option.initFrom(this);
    QStyleHintReturnMask mask;
    if (style()->styleHint(QStyle::SH_ToolTip_Mask, &option, this, &mask))
        setMask(mask.region);
    QWidget::resizeEvent(event);
}
