#pragma once

#include <QString>

#include <rapidjson/document.h>

/// How records read the JSON texts they are stored as: whatever the text, silently.
namespace JsonReading {

/// The text's document when its root is an object; an empty object when the text is malformed or its root something
/// else.
rapidjson::Document parseObject(const QString& text);

/// Any value as an integer: of a 64-bit number its low 32 bits, of a number with a fraction or exponent (or beyond 64
/// bits) its whole part, which stays at the end of the range that it lies beyond; 0 of everything that is no number.
qint32 integerOf(const rapidjson::Value& value);

/// Any number as a double; 0 of everything that is no number.
double numberOf(const rapidjson::Value& value);

/// The low byte of the value's integer, as records hold flags and small numbers: 256 is 0.
qint8 lowByteOf(const rapidjson::Value& value);

/// A member's name as a number, as QString::toInt reads it; 0 for a name that is none.
qint32 numberOfName(const rapidjson::Value& name);

} // namespace JsonReading
