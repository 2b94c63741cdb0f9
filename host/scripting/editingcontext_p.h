#pragma once

#include "host/scriptediting/scriptvocabulary.h"

#include <QStringList>

class KVCanvasInterface;

/// What the script editor offers for a page: Python's words, the module and its parts, the page's shapes and their
/// properties, pages, and the tags of the registered point directory.
namespace EditingContext {

/// \param canvas null for none
/// \param pages names of the project's pages
ScriptVocabulary vocabulary(const KVCanvasInterface* canvas, const QStringList& pages);

} // namespace EditingContext
