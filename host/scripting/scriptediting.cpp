#include "host/scripting/scriptengine.h"
#include <QPlainTextEdit>
QWidget* ScriptEngine::createScriptEditor(KVCanvasInterface*) { return new QPlainTextEdit; }
void ScriptEngine::refreshEditingContext(QPlainTextEdit*, KVCanvasInterface*) {}
