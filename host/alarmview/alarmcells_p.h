#pragma once

#include <QColor>
#include <QDateTime>
#include <QString>
#include <QVariant>
#include <Qt>

/// How cells of the alarm list and the log show what they hold.
namespace AlarmCells {

/// Local time with milliseconds; empty for an invalid one.
QString timeText(const QDateTime& time);
/// A number with ten digits at most, so that no rounding shows, a local time, or a text on one line.
QString text(const QVariant& value);
/// Numbers stand to the right.
Qt::Alignment alignment(const QVariant& value);
/// A tool tip of exactly that text, whatever it looks like.
QString plainToolTip(const QString& text);
/// What lies behind an alarm that waits for an operator, on light and dark palettes.
QColor waitingBackground();

} // namespace AlarmCells
