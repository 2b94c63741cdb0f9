#pragma once

#include "host/actions/tagaction.h"

/// Shows a value as text: in a format of its own, or as one of a list of texts, by number.
class KORVANE_HOST_EXPORT TextAction : public TagAction
{
    Q_DECLARE_TR_FUNCTIONS(TextAction)

public:
    explicit TextAction(TesselInterface* shape) : TagAction(shape) {}

    int type() const override { return Text; }
    QString name() const override;
    const std::vector<ActionSetting>& settingTable() const override;
    QStringList drivenProperties() const override;
    ScadaTagActionInterface* clone(TesselInterface* shape) const override;
    void applyToShape(bool force) override;
    void runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core) override;

    /// The text for \p value; empty for an invalid value.
    QString textOf(const QVariant& value) const;

private:
    QString m_property = QStringLiteral("Text");
    QString m_format = QStringLiteral("%1"); ///< "%1" stands for the value
    int m_decimals = -1;                     ///< of real numbers; -1 for as many as needed
    QString m_drawn;                         ///< the text as the page was opened, for when there is no value
    QStringList m_texts;                     ///< for the values 0, 1, ...; numbers beyond them show in the format
};
