#pragma once

#include "host/shapes/shapeproperty.h"
#include "platform/data/conditiondata.h"

#include <QVariant>
#include <QVariantMap>

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <optional>

/// How values of properties and settings stand in page files.
///
/// Numbers, flags and texts as such; colours as "#rrggbb", "#aarrggbb" or "" for none; points and sizes as pairs,
/// rectangles as four numbers, lines as arrays of pairs.
namespace JsonValues {

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

/// The value as a property of that kind has it; invalid for a value of another kind.
QVariant read(const rapidjson::Value& stored, ShapeProperty::Kind kind);
/// A flag, number, text or list of texts; invalid for anything else.
QVariant readAny(const rapidjson::Value& stored);
QVariantMap readMap(const rapidjson::Value& object);

void write(Writer& writer, const QVariant& value);
void write(Writer& writer, const QString& text);
/// Whole numbers without a fraction.
void write(Writer& writer, double number);

std::optional<Korvane::OpType> operatorOf(const QString& text);
/// "&&", "||", anything else for none.
Korvane::LogicType linkOf(const QString& text);

} // namespace JsonValues
