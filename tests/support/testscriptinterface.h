#pragma once

#include "platform/core/korvanescriptinterface.h"

#include <QList>
#include <QPlainTextEdit>

#include <functional>

/// A script engine for tests: runs nothing, makes plain text areas, and keeps what it was asked for, in order.
class TestScriptInterface : public KorvaneScriptInterface
{
public:
    enum class Operation { RunAction, RunForCanvas, Run, LastError, CreateEditor, Refresh };

    /// What an operation was called with; what it does not take stays as it is.
    struct Call
    {
        Operation operation;
        KVCanvasInterface* canvas = nullptr;
        TesselInterface* shape = nullptr;
        QString script = {}; ///< of a refresh, the editor's text at that time
        Korvane::TriggerType trigger = Korvane::TriggerType::None;
        QPlainTextEdit* editor = nullptr;

        friend bool operator==(const Call& a, const Call& b)
        {
            return a.operation == b.operation && a.canvas == b.canvas && a.shape == b.shape && a.script == b.script &&
                   a.trigger == b.trigger && a.editor == b.editor;
        }
    };

    void runAction(KVCanvasInterface* canvas, TesselInterface* shape, const QString& script,
                   Korvane::TriggerType trigger) override
    {
        whileRunning();
        calls.append({Operation::RunAction, canvas, shape, script, trigger, nullptr});
    }
    void runForCanvas(KVCanvasInterface* canvas, const QString& script) override
    {
        whileRunning();
        calls.append({Operation::RunForCanvas, canvas, nullptr, script, {}, nullptr});
    }
    void run(const QString& script) override
    {
        whileRunning();
        calls.append({Operation::Run, nullptr, nullptr, script, {}, nullptr});
    }
    QString lastError() const override
    {
        calls.append({Operation::LastError, nullptr, nullptr, {}, {}, nullptr});
        return error;
    }
    QWidget* createScriptEditor(KVCanvasInterface* canvas) override
    {
        auto* editor = new QPlainTextEdit;
        calls.append({Operation::CreateEditor, canvas, nullptr, {}, {}, editor});
        return editor;
    }
    void refreshEditingContext(QPlainTextEdit* editor, KVCanvasInterface* canvas) override
    {
        calls.append({Operation::Refresh, canvas, nullptr, editor->toPlainText(), {}, editor});
    }

    mutable QList<Call> calls;
    QString error;                              ///< what the newest run failed with
    std::function<void()> whileRunning = [] {}; ///< what a script does
};
