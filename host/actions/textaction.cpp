#include "host/actions/textaction.h"

#include "platform/core/tesselinterface.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace {
constexpr int mostDecimals = 15; // a double has no more
}

QString TextAction::name() const
{
    return tr("Text");
}

const std::vector<ActionSetting>& TextAction::settingTable() const
{
    static const std::vector<ActionSetting> table = {
        ActionSettings::of<&TextAction::m_property>("Property"),
        ActionSettings::of<&TextAction::m_format>("Format"),
        ActionSettings::of<&TextAction::m_decimals>("Decimals"),
        ActionSettings::of<&TextAction::m_texts>("Texts"),
    };
    return table;
}

QStringList TextAction::drivenProperties() const
{
    return {m_property};
}

ScadaTagActionInterface* TextAction::clone(TesselInterface* shape) const
{
    return copyFor(shape, *this);
}

QString TextAction::textOf(const QVariant& value) const
{
    if (!value.isValid())
        return {};
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (isNumber && number >= 0 && number < m_texts.size() && number == std::floor(number))
        return m_texts.at(static_cast<int>(number));
    QString text = value.toString();
    if (value.userType() == QMetaType::Double)
        text = m_decimals < 0 ? QString::number(number, 'g', 6)
                              : QString::number(number, 'f', std::min(m_decimals, mostDecimals));
    else if (value.userType() == QMetaType::QDateTime)
        text = value.toDateTime().toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    QString shown = m_format;
    return shown.replace(QLatin1String("%1"), text);
}

void TextAction::runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface* core)
{
    TagAction::runItSelf(manager, core);
    if (shape())
        m_drawn = shape()->namedProperty(m_property).toString();
}

void TextAction::applyToShape(bool)
{
    if (shape())
        shape()->setNamedProperty(m_property, value().isValid() ? textOf(value()) : m_drawn);
}
