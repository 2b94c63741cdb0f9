#include "host/alarmview/alarmcells_p.h"

#include <QGuiApplication>
#include <QPalette>
#include <QTextDocument>

namespace {

constexpr QRgb waitingTint = 0xffff9500;
constexpr double tintShare = 0.2;

bool isNumber(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

int blended(int base, int tint)
{
    return qRound(base * (1 - tintShare) + tint * tintShare);
}

} // namespace

QString AlarmCells::timeText(const QDateTime& time)
{
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")) : QString();
}

QString AlarmCells::text(const QVariant& value)
{
    constexpr int digits = 10;
    if (value.userType() == QMetaType::QDateTime)
        return timeText(value.toDateTime());
    if (value.userType() == QMetaType::Double || value.userType() == QMetaType::Float)
        return QString::number(value.toDouble(), 'g', digits);
    return value.toString().simplified();
}

Qt::Alignment AlarmCells::alignment(const QVariant& value)
{
    return (isNumber(value) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

QString AlarmCells::plainToolTip(const QString& text)
{
    return text.isEmpty() ? QString() : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}

QColor AlarmCells::waitingBackground()
{
    const QColor base = QGuiApplication::palette().color(QPalette::Base);
    const QColor tint(waitingTint);
    return {blended(base.red(), tint.red()), blended(base.green(), tint.green()), blended(base.blue(), tint.blue())};
}
