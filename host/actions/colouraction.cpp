#include "host/actions/colouraction.h"

namespace {

const QString& blink()
{
    static const QString name = QStringLiteral("Blink");
    return name;
}

} // namespace

QString ColourAction::name() const
{
    return tr("Colour");
}

QStringList ColourAction::drivenProperties() const
{
    QStringList names = RuleAction::drivenProperties();
    names.removeAll(blink()); // says how, and is no property of a shape
    return names;
}

ScadaTagActionInterface* ColourAction::clone(TesselInterface* shape) const
{
    return copyFor(shape, *this);
}

void ColourAction::applyToShape(bool)
{
    const ActionRule* rule = matchedRule();
    m_isBlinking = rule && rule->set.value(blink()).toBool();
    show(rule && !(m_isBlinking && m_isDark) ? rule->set : QVariantMap());
}

// Every blinking shape of a page counts the same half periods, so they blink together.
void ColourAction::timeOut()
{
    m_isDark = !m_isDark;
    if (m_isBlinking)
        applyToShape(false);
}
