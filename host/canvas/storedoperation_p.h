#pragma once

#include "host/canvas/jsonvalues_p.h"
#include "host/canvas/operation.h"
#include "host/canvas/pageaccess.h"

#include <QString>

#include <tl/expected.hpp>

/// How operations stand in page files: an object with the texts "kind" and "tag" and, as needed, the number "value", the
/// object "input" (what InputInfoParam writes) and the text "key". And the page's access: an object with "protected" and
/// the account numbers "users".
namespace StoredOperation {

tl::expected<Operation, QString> read(const rapidjson::Value& stored);
void write(JsonValues::Writer& writer, const Operation& operation);

/// \returns why it can't be read.
tl::expected<PageAccess, QString> readAccess(const rapidjson::Value& stored);
void write(JsonValues::Writer& writer, const PageAccess& access);

} // namespace StoredOperation
