#include "host/design/pointfit.h"

#include "host/actions/tagactionfactory.h"
#include "host/shapes/label.h"
#include "host/shapes/readout.h"
#include "host/shapes/shapeproperty.h"
#include "host/shapes/trend.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/tagresolution.h"

#include <QFont>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace {

using Object = RuntimeDatabase::Object;
using FieldType = DataFieldInfo::FieldType;

QString name(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// What a tag gives: one of its object's fields.
struct Source
{
    const Object* object = nullptr;       ///< null for an unknown one
    const DataFieldInfo* field = nullptr; ///< null for the present value

    bool isAnalog() const { return !object || object->type == Korvane::ScadaObjectType::AnalogPoint; }
    /// Whether it is a quantity in the point's own unit.
    bool isQuantity() const { return isAnalog() && (!field || field->unit == DataFieldInfo::FieldUnit::Point); }
    bool isNumber() const { return !field || field->type == FieldType::Number || field->type == FieldType::Count; }
    QString unit() const { return object && isQuantity() ? object->unit : QString(); }
    int decimals() const
    {
        if (!isAnalog() || (field && field->type == FieldType::Count))
            return 0;
        return object ? object->decimals : -1;
    }
    QStringList states() const { return object && !field ? object->states : QStringList(); }
    QString shownName() const
    {
        if (!object)
            return {};
        return object->displayName.isEmpty() ? object->name : object->displayName;
    }
};

Source sourceOf(const QString& tag, const RuntimeDatabase& runtime)
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &runtime);
    return {PointFit::objectOf(tag, runtime), link.field.isEmpty() ? nullptr : DataFieldInfo::find(link.field)};
}

PointFit textFit(const Source& source)
{
    PointFit fit{TagAction::Text};
    if (!source.unit().isEmpty())
        fit.settings.insert(name("Format"), QStringLiteral("%1 ") + source.unit());
    if (source.isNumber())
        fit.settings.insert(name("Decimals"), source.decimals());
    if (!source.states().isEmpty())
        fit.settings.insert(name("Texts"), source.states());
    return fit;
}

PointFit numberFit(const Source& source, const char* property)
{
    PointFit fit{TagAction::Number};
    fit.settings.insert(name("Property"), name(property));
    fit.properties.insert(name("Unit"), source.unit());
    fit.properties.insert(name("Decimals"), source.decimals());
    if (source.object && source.isQuantity() && source.object->scaleLow != source.object->scaleHigh) {
        fit.properties.insert(name("Minimum"), source.object->scaleLow);
        fit.properties.insert(name("Maximum"), source.object->scaleHigh);
    }
    return fit;
}

// The curve's name in the legend, where the curves have names.
PointFit curveFit(const Shape& trend, const Source& source, int place)
{
    PointFit fit{TagAction::Trend};
    QStringList names = trend.namedProperty(name("CurveNames")).toStringList();
    if (place == names.size())
        names.append(source.shownName());
    else if (place < names.size())
        names[place] = source.shownName();
    fit.properties.insert(name("CurveNames"), names);
    return fit;
}

bool has(const Shape& shape, const char* property)
{
    return shape.shapeClass().find(name(property)) != nullptr;
}

// Widths of what may be shown, in the read-out's own units.
double widestText(const Source& source, const PointFit& fit, int fontSize)
{
    QStringList texts = source.states();
    if (fit.type == TagAction::Number) {
        const QVariant lowest = fit.properties.value(name("Minimum"), -88888.8);
        const QVariant highest = fit.properties.value(name("Maximum"), 88888.8);
        for (const QVariant& number : {lowest, highest})
            texts.append(QString::number(number.toDouble(), 'f', std::max(source.decimals(), 0)) + QLatin1Char(' ') +
                         source.unit());
    }
    QFont font;
    font.setPixelSize(fontSize);
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (const QString& text : qAsConst(texts))
        widest = std::max(widest, metrics.horizontalAdvance(text));
    return widest;
}

} // namespace

const Object* PointFit::objectOf(const QString& tag, const RuntimeDatabase& runtime)
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &runtime);
    return link.id == 0 ? nullptr : runtime.object({link.type, link.id});
}

std::optional<PointFit> PointFit::of(const Shape& shape, const QString& tag, const RuntimeDatabase& runtime, int place)
{
    const Source source = sourceOf(tag, runtime);
    if (dynamic_cast<const Trend*>(&shape))
        return curveFit(shape, source, place);
    if (dynamic_cast<const Label*>(&shape))
        return textFit(source);
    if (has(shape, "State"))
        return PointFit{TagAction::State};
    if (dynamic_cast<const ReadOut*>(&shape) && (!source.isNumber() || !source.states().isEmpty()))
        return textFit(source);
    for (const char* property : {"Value", "Flow", "Index"}) {
        if (has(shape, property))
            return numberFit(source, property);
    }
    return {};
}

std::unique_ptr<TagAction> PointFit::makeAction(Shape& shape, const QString& tag) const
{
    std::unique_ptr<TagAction> action = TagActionFactory::make(type, &shape);
    applySettings(*action);
    action->setTags({tag});
    return action;
}

// What does not suit any more, as the names of states, is as with a new action.
void PointFit::applySettings(TagAction& action) const
{
    const auto fresh = TagActionFactory::make(type, nullptr);
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        fresh->setSetting(setting.key(), setting.value());
    const QVariantMap all = fresh->settings();
    for (auto setting = all.begin(); setting != all.end(); ++setting)
        action.setSetting(setting.key(), setting.value());
}

QVariantMap PointFit::propertiesAfter(const Shape& shape, const PointFit& before) const
{
    QVariantMap after;
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        const QVariant held = shape.namedProperty(property.key());
        if (held.isValid() && held != property.value() && held == before.properties.value(property.key()))
            after.insert(property.key(), property.value());
    }
    return after;
}

bool PointFit::isHeldBy(const TagAction& action) const
{
    if (action.type() != type || !action.rules().empty() || action.tags().size() != 1)
        return false;
    const auto fresh = TagActionFactory::make(type, nullptr);
    applySettings(*fresh);
    return action.settings() == fresh->settings();
}

std::unique_ptr<Shape> PointFit::makeReadOut(const QString& tag, const RuntimeDatabase& runtime)
{
    constexpr double height = 28;
    constexpr double narrowest = 60;
    constexpr double widest = 300;
    constexpr double around = 18; // the frame's inset on both sides, and some air
    constexpr double step = 10;   // so that read-outs of like points are of like width
    auto readOut = std::make_unique<ReadOut>();
    const auto fit = *of(*readOut, tag, runtime);
    for (auto property = fit.properties.begin(); property != fit.properties.end(); ++property)
        readOut->setNamedProperty(property.key(), property.value());
    const int fontSize = readOut->namedProperty(name("FontSize")).toInt();
    const double needed = widestText(sourceOf(tag, runtime), fit, fontSize) + around;
    readOut->setPlace({0, 0, std::clamp(std::ceil(needed / step) * step, narrowest, widest), height});
    return readOut;
}
