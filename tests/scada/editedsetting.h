#pragma once

#include "scada/actions/korvanescriptoreditor.h"
#include "scada/actions/scriptoperationsetting.h"
#include "tests/scada/latintext.h"
#include "tests/support/testcore.h"
#include "tests/support/testscriptinterface.h"

#include <QComboBox>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

/// A widget with the event types 8, 1, 5 and 3, in this order, with nothing loaded.
struct Setting
{
    Setting() { widget.init({{8, text("Press")}, {1, text("Release")}, {5, text("Key")}, {3, text("Hover")}}); }

    QComboBox& eventTypes() const { return *widget.findChild<QComboBox*>(text("comboBox")); }
    QComboBox& handlers() const { return *widget.findChild<QComboBox*>(text("eventHandlerCombo")); }
    QPushButton& clearButton() const { return *widget.findChild<QPushButton*>(text("clearBtn")); }
    QToolButton& addButton() const { return *widget.findChild<QToolButton*>(text("addHandlerBtn")); }
    KorvaneScriptorEditor& editor() const { return *widget.findChild<KorvaneScriptorEditor*>(text("widget")); }
    QPlainTextEdit& textArea() const { return *editor().scriptEditor(); }
    void write(const char* script) const { textArea().setPlainText(text(script)); }
    bool showInFront()
    {
        widget.show();
        return QTest::qWaitForWindowActive(&widget);
    }

    TestCanvas canvas;
    TestScriptInterface scripts;
    ScriptOperationSetting widget{&canvas, &scripts, nullptr};
    QSignalSpy dirtyed{&widget, &ScriptOperationSetting::dirtyed};
};
