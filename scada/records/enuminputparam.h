#pragma once

#include "scada/scadaexport.h"

#include <QList>
#include <QPair>
#include <QString>

/// Named values among which an operator may choose.
class KORVANE_SCADA_EXPORT EnumInputParam
{
public:
    EnumInputParam() = default;

    /// Text shown and value sent, in the engineer's order; names need not be unique.
    QList<QPair<QString, double>> enumValues;

    /// The record as the text of a JSON object.
    QString toStream() const;
    /// Appends the values that \p text has to those that are there. Malformed text changes nothing.
    void fromStream(const QString& text);

    bool isEmpty() const { return enumValues.isEmpty(); }
    /// Compares name by name, case included, and the values exactly.
    bool isEqual(const EnumInputParam& other) const;
};
