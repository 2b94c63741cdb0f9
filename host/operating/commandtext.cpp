#include "host/operating/commandtext.h"

#include "host/control/operationnames.h"

#include <QCoreApplication>
#include <QLocale>

QString CommandText::valueText(const RuntimeDatabase::Object& object, const QVariant& value)
{
    if (!value.isValid())
        return {};
    if (object.type != Korvane::ScadaObjectType::AnalogPoint) {
        const QString name = object.states.value(value.toInt());
        return name.isEmpty() ? value.toString() : name;
    }
    const QString number = object.decimals >= 0
                               ? QString::number(value.toDouble(), 'f', object.decimals)
                               : QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    return object.unit.isEmpty() ? number : number + QLatin1Char(' ') + object.unit;
}

QString CommandText::command(const ScadaOperationMessage& message, const RuntimeDatabase& database)
{
    const RuntimeDatabase::Object* object = database.object({message.objectType, message.objectId});
    QString subject = message.tag;
    if (object && !object->description.isEmpty())
        subject = QStringLiteral("%1 (%2)").arg(object->description, message.tag);
    QString what = OperationNames::textOf(message.operation);
    if (object && message.value.isValid())
        what += QLatin1Char(' ') + valueText(*object, message.value);
    return QStringLiteral("%1: %2").arg(subject, what);
}

QString CommandText::outcome(const ScadaOperationMessage& message)
{
    const QString outcome = OperationNames::textOf(message.outcome);
    return message.text.isEmpty() ? outcome : QStringLiteral("%1: %2").arg(outcome, message.text);
}
