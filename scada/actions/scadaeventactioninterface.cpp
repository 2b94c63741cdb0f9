#include "scada/actions/scadaeventactioninterface.h"

#include "platform/data/scadaeventactionstream.h"

namespace {

using Korvane::TriggerType;

struct TriggerText
{
    TriggerType trigger;
    const char* text; ///< also the translation's key
};

constexpr TriggerText triggerTexts[] = {
    {TriggerType::None, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "none")},
    {TriggerType::MouseRelease, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Mouse Release")},
    {TriggerType::MouseDoubleClick, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Mouse Double Click")},
    {TriggerType::MouseHover, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Mouse Hover")},
    {TriggerType::MouseLeave, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Mouse Leave")},
    {TriggerType::KeyPress, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Key Press")},
    {TriggerType::CanvasLoad, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Canvas Load")},
    {TriggerType::CanvasUnload, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Canvas Unload")},
    {TriggerType::MousePress, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Mouse Press")},
    {TriggerType::MouseRightButtonRelease,
     QT_TRANSLATE_NOOP("ScadaEventActionInterface", "Mouse Right Button Release")},
    {TriggerType::ObjectLoading, QT_TRANSLATE_NOOP("ScadaEventActionInterface", "On Object Loading")},
};

} // namespace

ScadaEventActionInterface::ScadaEventActionInterface() = default;

ScadaEventActionInterface::ScadaEventActionInterface(const ScadaEventActionInterface& other) = default;

ScadaEventActionInterface& ScadaEventActionInterface::operator=(const ScadaEventActionInterface& other) = default;

ScadaEventActionInterface::~ScadaEventActionInterface() = default;

Korvane::TriggerType ScadaEventActionInterface::triggetType()
{
    return m_trigger;
}

void ScadaEventActionInterface::setTriggerType(Korvane::TriggerType trigger)
{
    m_trigger = trigger;
}

void ScadaEventActionInterface::replacePointName(KorvaneScadaCoreInterface*, const QList<QPair<QString, QString>>&)
{
}

bool ScadaEventActionInterface::replaceText(const QString&, const QString&)
{
    return false;
}

QString ScadaEventActionInterface::triggerName()
{
    for (const TriggerText& row : triggerTexts) {
        if (row.trigger == m_trigger)
            return tr(row.text);
    }
    return {};
}

void ScadaEventActionInterface::toStream(ScadaEventActionStream& stream) const
{
    stream.setTrigger(m_trigger);
}

void ScadaEventActionInterface::fromStream(const ScadaEventActionStream& stream, QMap<QString, QVariant>& values)
{
    m_trigger = stream.trigger();
    values.insert(QStringLiteral("triggerType"), static_cast<int>(m_trigger));
}

void ScadaEventActionInterface::fromStream(const ScadaEventActionStream& stream)
{
    m_trigger = stream.trigger();
}

void ScadaEventActionInterface::setTagString(const QString&)
{
}

bool ScadaEventActionInterface::containText(const QString&)
{
    return false;
}
