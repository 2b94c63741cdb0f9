#pragma once

#include "platform/core/triggertype.h"
#include "platform/platformexport.h"

#include <QObject>
#include <QString>

class KVCanvasInterface;
class QPlainTextEdit;
class QWidget;
class TesselInterface;

/// The front of the host's script engine: runs scripts and makes the widgets in which they are written. Implemented by
/// the host.
///
/// Scripts run to their end, or are stopped, before the operation that runs them returns. What they print comes by
/// stdOut() and stdErr() in pieces of any length, while they run; a script that fails tells it by stdErr() too. GUI
/// thread only.
class KORVANE_PLATFORM_EXPORT KorvaneScriptInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(KorvaneScriptInterface)

public:
    explicit KorvaneScriptInterface(QObject* parent = nullptr);
    ~KorvaneScriptInterface() override;

    /// Runs the script of an event action.
    /// \param canvas the page it belongs to, not null
    /// \param shape the shape on it that the event came to; null for an event of the page itself
    virtual void runAction(KVCanvasInterface* canvas, TesselInterface* shape, const QString& script,
                           Korvane::TriggerType trigger) = 0;
    /// Runs a script in the context of \p canvas, without shape and event.
    virtual void runForCanvas(KVCanvasInterface* canvas, const QString& script) = 0;
    /// Runs a script by itself, without a page.
    virtual void run(const QString& script) = 0;
    /// Why the newest run failed, as stdErr() told it; empty when it succeeded.
    virtual QString lastError() const = 0;

    /// Makes a widget to write scripts of \p canvas in: a QPlainTextEdit, owned by the caller.
    virtual QWidget* createScriptEditor(KVCanvasInterface* canvas) = 0;
    /// Has \p editor know what there is on \p canvas now: names of shapes and whatever else it offers while one types.
    /// \param editor made by createScriptEditor()
    /// \param canvas null for none
    virtual void refreshEditingContext(QPlainTextEdit* editor, KVCanvasInterface* canvas) = 0;

Q_SIGNALS:
    void stdOut(const QString& text);
    void stdErr(const QString& text);
};
