#pragma once

#include "scada/scadaexport.h"

#include <QString>
#include <QtGlobal>

/// A number that an operator may enter: its limits, the spin control's step and decimals, and a scale. Nothing is checked
/// here: a minimum above the maximum stands as it was given.
class KORVANE_SCADA_EXPORT NumberInputParam
{
public:
    NumberInputParam() = default;

    double minValue = 0;
    double maxValue = 0;
    double scale = 0; ///< factor while useScale is on
    double singleStep = 0;
    qint8 decimals = 0; ///< shown
    bool useScale = false;

    /// The record as the text of a JSON object.
    QString toStream() const;
    /// Takes the members that \p text has. Malformed text changes nothing.
    void fromStream(const QString& text);

    /// Whether every field has its default.
    bool isEmpty() const;
    /// Compares the numbers exactly.
    bool isEqual(const NumberInputParam& other) const;
};
