#include "host/actions/tagactionfactory.h"

#include "host/actions/actioneditor.h"
#include "host/actions/colouraction.h"
#include "host/actions/levelaction.h"
#include "host/actions/numberaction.h"
#include "host/actions/positionaction.h"
#include "host/actions/rotationaction.h"
#include "host/actions/stateaction.h"
#include "host/actions/textaction.h"
#include "host/actions/trendaction.h"
#include "host/actions/visibilityaction.h"
#include "host/shapes/trend.h"
#include "platform/core/tesselinterface.h"

#include <algorithm>

namespace {

template <typename Action>
std::unique_ptr<TagAction> makeAction(TesselInterface* shape)
{
    return std::make_unique<Action>(shape);
}

struct Kind
{
    int type;
    std::unique_ptr<TagAction> (*make)(TesselInterface* shape);
};

// In the order in which editors offer them.
constexpr Kind kinds[] = {
    {TagAction::Number, makeAction<NumberAction>},     {TagAction::Text, makeAction<TextAction>},
    {TagAction::Level, makeAction<LevelAction>},       {TagAction::State, makeAction<StateAction>},
    {TagAction::Colour, makeAction<ColourAction>},     {TagAction::Visibility, makeAction<VisibilityAction>},
    {TagAction::Rotation, makeAction<RotationAction>}, {TagAction::Position, makeAction<PositionAction>},
    {TagAction::Trend, makeAction<TrendAction>},
};

} // namespace

TagActionFactory::TagActionFactory(QObject* parent) : KorvaneScadaActionFactoryInterface(parent)
{
}

TagActionFactory::~TagActionFactory() = default;

std::unique_ptr<TagAction> TagActionFactory::make(int type, TesselInterface* shape)
{
    for (const Kind& kind : kinds) {
        if (kind.type == type)
            return kind.make(shape);
    }
    return nullptr;
}

QList<int> TagActionFactory::actionTypes() const
{
    QList<int> types;
    for (const Kind& kind : kinds)
        types.append(kind.type);
    return types;
}

QString TagActionFactory::actionName(int type) const
{
    const auto action = make(type, nullptr);
    return action ? action->name() : QString();
}

bool TagActionFactory::canDrive(int type, const TesselInterface* shape) const
{
    const auto action = make(type, nullptr);
    if (!action || !shape)
        return false;
    if (type == TagAction::Trend)
        return dynamic_cast<const Trend*>(shape) != nullptr;
    const QStringList properties = action->drivenProperties();
    const auto* drawn = dynamic_cast<const Shape*>(shape);
    return std::all_of(properties.begin(), properties.end(), [&](const QString& name) {
        return drawn ? drawn->shapeClass().find(name) != nullptr : shape->namedProperty(name).isValid();
    });
}

QStringList TagActionFactory::drivenProperties(int type) const
{
    const auto action = make(type, nullptr);
    return action ? action->drivenProperties() : QStringList();
}

ScadaTagActionInterface* TagActionFactory::createAction(int type, TesselInterface* shape) const
{
    return make(type, shape).release();
}

ScadaTagActionInterface* TagActionFactory::loadAction(int type, const ScadaTagActionStream& stream,
                                                      TesselInterface* shape) const
{
    auto action = make(type, shape);
    if (!action)
        return nullptr;
    QMap<QString, QVariant> values;
    action->fromStream(stream, values);
    return action.release();
}

QWidget* TagActionFactory::createEditor(ScadaTagActionInterface* action, QWidget* parent) const
{
    auto* known = dynamic_cast<TagAction*>(action);
    return known && make(known->type(), nullptr) ? new ActionEditor(*known, parent) : nullptr;
}
