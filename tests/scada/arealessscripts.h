#pragma once

#include "tests/support/testscriptinterface.h"

/// A script interface whose widget is none to write scripts in: a plain one, or none at all.
class AreaLessScripts : public TestScriptInterface
{
public:
    explicit AreaLessScripts(QWidget* made) : m_made(made) {}

    QWidget* createScriptEditor(KVCanvasInterface*) override { return m_made; }

private:
    QWidget* m_made;
};
