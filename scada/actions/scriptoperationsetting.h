#pragma once

#include "scada/actions/scadascriptaction.h"
#include "scada/scadaexport.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QWidget>

#include <memory>

class KVCanvasInterface;
class KorvaneScriptInterface;

namespace Ui {
class CanvasOperationSetting;
}

/// The widget in which an engineer edits the scripts that run on the events of a canvas or a shape: one event type at a
/// time, and handler functions inserted by name.
///
/// Make it, call init() once with the event types that the object has, then setScript() with its present actions; read
/// scriptActions() when the user is done. The text of the event type that is shown lives in the editor alone until then,
/// or until another one is chosen. Without a script interface no script is held.
class KORVANE_SCADA_EXPORT ScriptOperationSetting : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptOperationSetting)

public:
    /// \param canvas the page that the scripts belong to, null for none; not owned
    /// \param scriptInterface not owned; must outlive the widget
    ScriptOperationSetting(KVCanvasInterface* canvas, KorvaneScriptInterface* scriptInterface, QWidget* parent);
    ~ScriptOperationSetting() override;

    /// Offers event types by pairs: the number of a Korvane::TriggerType and its name for the user's eyes. Call it once.
    void init(const QList<QPair<int, QString>>& eventTypes);

    /// Loads \p actions in place of all there are, and shows the first one with a script, or else the first event type
    /// and no script.
    ///
    /// Of several actions with one trigger the last is kept. An action whose trigger is not offered is shown with no
    /// event type chosen. dirtyed() is not emitted.
    /// \param canvas the page that the scripts belong to, null for none; not owned
    void setScript(const QList<ScadaScriptAction>& actions, KVCanvasInterface* canvas);

    /// Every action by ascending trigger, those with an empty script too. The editor's text is that of the event type
    /// that is shown, or of trigger 0 when none is chosen.
    QList<ScadaScriptAction> scriptActions();

Q_SIGNALS:
    /// The user chose another event type. Don't ask for scriptActions() meanwhile: the editor still shows the script of
    /// the type before. The name's spelling is part of the interface.
    void dirtyed();

public Q_SLOTS:
    /// Keeps the editor's text for the event type shown before, unless it is empty, and shows that of item \p index.
    void slotIndexChanged(int index);
    /// Drops the script of the event type that is shown, and empties the editor.
    void slotClear();
    /// Inserts a function with the chosen handler name and the arguments that the runtime passes to it.
    void addHandler();

private:
    int eventType(int index) const;

    std::unique_ptr<Ui::CanvasOperationSetting> m_ui;
    QMap<int, ScadaScriptAction> m_actionMap; ///< by the number of their trigger
    int m_lastIndex = 1;                      ///< the event type, by its place, whose script the editor shows
};
