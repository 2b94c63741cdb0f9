#pragma once

#include "host/actions/actionrule.h"
#include "host/actions/actionsetting.h"
#include "host/hostexport.h"
#include "platform/data/objectkey.h"
#include "scada/binding/objecttarget.h"
#include "scada/binding/scadatagactioninterface.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>
#include <vector>

class CanvasScadaActionManagerInterface;

/// Base of the host's tag actions: the tags that an action reads, as the engineer wrote them, rules of conditions, and
/// settings of its kind.
///
/// Resolving strips prefix and field off a target, so the tags are kept beside the targets, and saving and copying
/// start from them.
class KORVANE_HOST_EXPORT TagAction : public ScadaTagActionInterface
{
public:
    /// Stored numbers of the kinds.
    enum Type {
        Text = 1,
        Number = 2,
        Level = 3,
        Colour = 4,
        Visibility = 5,
        Rotation = 6,
        Position = 7,
        State = 8,
        Trend = 9,
        Unloaded = -1, ///< see UnloadedAction
    };

    explicit TagAction(TesselInterface* shape);
    /// A copy with the same tags, rules and settings, not resolved, whatever this one is.
    TagAction(const TagAction& other);
    TagAction& operator=(const TagAction&) = delete;
    ~TagAction() override;

    /// The table of what is set for actions of this kind.
    virtual const std::vector<ActionSetting>& settingTable() const;
    /// Every setting of the kind by name.
    QVariantMap settings() const;
    /// \returns false, with nothing changed, for a setting that there is not or a value that it can't have.
    bool setSetting(const QString& name, const QVariant& value);

    /// The tags of the action's values in their order, without those of its rules, as the engineer wrote them.
    QStringList tags() const;
    void setTags(const QStringList& tags);
    /// Replaces the tag of the value at \p place, which there must be; what is stored with it besides stays.
    void setTag(int place, const QString& tag);
    /// Takes the value at \p place, which there must be, away; those behind it move up.
    void removeValue(int place);
    /// Adds a value; \p target is taken as it is, with what its stored record said.
    /// \param unknownMembers what is stored with it that this program does not know, kept for saving
    void addTarget(const ObjectTarget& target, const QByteArray& unknownMembers = {});
    /// The unknown members of the value at \p place; empty without one.
    QByteArray unknownTargetMembers(int place) const;

    const std::vector<ActionRule>& rules() const { return m_rules; }
    void setRules(const std::vector<ActionRule>& rules);

    /// Renames points as ObjectTarget::replacePointName does, in the tags as written too; the number of targets renamed.
    int replacePointNames(KorvaneScadaCoreInterface* hub, const QList<QPair<QString, QString>>& renames);

    /// The newest value of the value at \p place; invalid without one.
    QVariant value(int place = 0) const;

    /// Whether what the action reads has failed: the data source as a whole, or the source of one of its objects.
    bool isSourceFailed() const;
    /// Notes from a record whether the source of its object has failed; \p object must be one that the action is bound to.
    /// \returns whether that is news.
    bool noteFailure(ObjectKey object, const QuorixData& record);
    /// Notes the same of all bound objects that are in \p batch, whatever field of them is bound.
    bool noteFailures(const MwDataDepartment& batch);

    /// The condition that holds now, as text, and makes the shape look as it does; empty when none does.
    virtual QString matchedCondition() const { return {}; }
    /// The properties of the shape that the action sets.
    virtual QStringList drivenProperties() const = 0;

    void setShape(TesselInterface* shape) override;
    bool isEqual(const ScadaTagActionInterface& other) const override;
    void toStream(ScadaTagActionStream& stream) const override;
    void fromStream(const ScadaTagActionStream& stream, QMap<QString, QVariant>& values) override;
    void collectTargets(QList<ObjectTarget*>& out) override;
    void copyTargets(QList<ObjectTarget>& out) override;
    void setTagString(const QString& tag) override;
    bool replaceText(const QString& before, const QString& after) override;
    void runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core) override;

    /// The stored members that this program does not know, as the text of a JSON object; empty without one. Kept for
    /// saving.
    const QByteArray& unknownMembers() const { return m_unknownMembers; }
    void setUnknownMembers(const QByteArray& members) { m_unknownMembers = members; }
    /// Likewise the stored settings that it does not know, or whose values it can't use.
    const QByteArray& unknownSettings() const { return m_unknownSettings; }
    void setUnknownSettings(const QByteArray& members) { m_unknownSettings = members; }

protected:
    /// A copy of \p action for \p shape, as clone() makes it.
    template <typename Action>
    static ScadaTagActionInterface* copyFor(TesselInterface* shape, const Action& action)
    {
        auto* copy = new Action(action);
        copy->setShape(shape);
        return copy;
    }
    /// Where the first value lies from \p low to \p high, held to 0 to 1; nothing without a number or a range.
    std::optional<double> share(double low, double high) const;

    /// The page's manager, not owned; null before the page was opened.
    CanvasScadaActionManagerInterface* manager() const { return m_manager; }

private:
    /// A target, and its tag as the engineer wrote it.
    struct Binding
    {
        ObjectTarget target;
        QString tag;
        QByteArray unknownMembers;
    };

    void unbind();

    std::vector<Binding> m_bindings;
    std::vector<ActionRule> m_rules;
    std::vector<ObjectKey> m_failed; ///< of the bound objects, those whose source has failed
    QByteArray m_unknownMembers;
    QByteArray m_unknownSettings;
    CanvasScadaActionManagerInterface* m_manager = nullptr;
};
