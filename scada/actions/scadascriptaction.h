#pragma once

#include "scada/actions/scadaeventactioninterface.h"

/// An event action that runs a script.
///
/// It keeps the script twice: as it was last set or loaded, which is where renaming points starts from, and the one in
/// force, which is run, stored, searched and compared. Only replaceText() and replacePointName() make them differ.
class KORVANE_SCADA_EXPORT ScadaScriptAction : public ScadaEventActionInterface
{
    Q_DECLARE_TR_FUNCTIONS(ScadaScriptAction)

public:
    /// No trigger and no script.
    ScadaScriptAction();
    /// Copies trigger and script in force, and takes this for the loaded one too: a rename of the copy starts from it.
    ScadaScriptAction(const ScadaScriptAction& other);
    /// Copies trigger, script in force and loaded script as they are.
    ScadaScriptAction& operator=(const ScadaScriptAction& other);
    ~ScadaScriptAction() override;

    /// The script in force.
    QString script() const { return m_script; }
    /// Sets both the script in force and the loaded one.
    void setScript(const QString& script);

    /// 1001.
    int type() const override;
    /// Hands the script in force to the script interface of \p core; does nothing without one or without a page.
    ///
    /// The script may change or destroy the action itself, not \p canvas: a page that it closes goes later. A script
    /// that fails is ignored.
    void runAction(KorvaneCoreInterface* core, TesselInterface* shape, KVCanvasInterface* canvas) override;
    /// Empty or Filled, as the script in force is.
    State state() override;
    QString name() override;
    /// Sets the script in force to the loaded one, renamed by each pair in turn: every occurrence of the old name, also
    /// inside longer words. Another call starts from the loaded script again; one without pairs takes back what
    /// replaceText() did.
    /// \param core not used
    void replacePointName(KorvaneScadaCoreInterface* core, const QList<QPair<QString, QString>>& renames) override;
    /// Changes the script in force alone.
    bool replaceText(const QString& before, const QString& after) override;
    /// Writes trigger, type and, as data, the script in force. See docs/stored-records.md.
    void toStream(ScadaEventActionStream& stream) const override;
    /// Reads trigger and script; the type is not looked at. Data that hold no whole script leave the script as it was.
    ///
    /// Named values: "triggerType", a number, and "script", as PythonStringConverter turns it.
    void fromStream(const ScadaEventActionStream& stream, QMap<QString, QVariant>& values) override;
    void fromStream(const ScadaEventActionStream& stream) override;
    /// Whether \p other is a script action with the same script in force; the triggers do not count.
    bool isEqual(const ScadaEventActionInterface& other) override;
    /// Searches the script in force.
    bool containText(const QString& text) override;

private:
    void readScript(const ScadaEventActionStream& stream);

    QString m_loadedScript;
    QString m_script;
};
