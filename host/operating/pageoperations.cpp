#include "host/operating/pageoperations.h"

#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/canvas/page.h"
#include "host/control/operationnames.h"
#include "host/operating/commandtext.h"
#include "host/operating/operatorinputdialog.h"
#include "host/runtime/runtimemanager.h"
#include "host/shapes/choice.h"
#include "host/shapes/inputfield.h"
#include "platform/data/tagresolution.h"
#include "platform/data/valuemarks.h"

#include <QShortcut>

#include <algorithm>

namespace {

using Kind = Operation::Kind;

ScadaOperationMessage::Operation operationOf(Kind kind)
{
    using Named = ScadaOperationMessage::Operation;
    switch (kind) {
    case Kind::Select:
        return Named::Select;
    case Kind::Operate:
        return Named::Operate;
    case Kind::SetPoint:
        return Named::SetPoint;
    case Kind::Raise:
        return Named::Raise;
    case Kind::Lower:
        return Named::Lower;
    case Kind::EnterValue:
        return Named::EnterValue;
    }
    return Named::Operate;
}

/// A shape that can't be seen or pushed has no key either.
bool canBePushed(const Shape& shape, const Canvas& canvas)
{
    const auto isOnIt = [&shape](const auto& each) { return each.get() == &shape; };
    for (const auto& layer : canvas.layers()) {
        const auto& shapes = layer->shapes();
        if (!layer->isVisible() && std::any_of(shapes.begin(), shapes.end(), isOnIt))
            return false;
    }
    return shape.isVisible() && shape.namedProperty(QStringLiteral("Enabled")) != QVariant(false);
}

bool isWrittenInto(const Shape& shape)
{
    return dynamic_cast<const InputField*>(&shape) || dynamic_cast<const Choice*>(&shape);
}

/// What an operator wrote as a number, in his own way or the plain one.
std::optional<double> numberOf(const QString& text)
{
    bool isNumber = false;
    double number = QLocale().toDouble(text.trimmed(), &isNumber);
    if (!isNumber)
        number = QLocale::c().toDouble(text.trimmed(), &isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace

PageOperations::PageOperations(CanvasView& view, const Page& page, const Services& services)
    : QObject(&view), m_view(view), m_page(page), m_services(services), m_entered(page)
{
    connect(&view, &CanvasView::clicked, this, [this](Shape* shape) {
        const bool isOperating = !m_services.isOperating || m_services.isOperating();
        if (shape && isOperating && !isWrittenInto(*shape))
            push(*shape);
    });
    connect(page.canvas.get(), &Canvas::acted, this,
            [this](Shape* shape, const QString& handler, const QVariantList& arguments) {
                takeAct(*shape, handler, arguments);
            });
    connect(&services.manager, &RuntimeManager::remoteControlFinished, this,
            [this](const ScadaOperationMessage& message) {
                m_entered.end(message.requestId, message.outcome == ScadaOperationMessage::Outcome::Done);
            });
    connectKeys();
}

PageOperations::~PageOperations() = default;

void PageOperations::connectKeys()
{
    // In the order of the page, so that the first of two shapes has the key.
    for (const Shape* shape : m_page.canvas->shapes()) {
        const Operation* operation = m_page.operations.of(shape);
        if (!operation || operation->key.isEmpty())
            continue;
        const QKeySequence key(operation->key, QKeySequence::PortableText);
        if (const QString reason = whyKeyIsTaken(key); !reason.isEmpty()) {
            m_problems.append(tr("%1: \"%2\": its key does nothing: %3").arg(m_page.fileName, shape->name(), reason));
            continue;
        }
        m_keys.insert(key, shape->name());
        auto* shortcut = new QShortcut(key, &m_view);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        shortcut->setAutoRepeat(false); // a key that sticks gives one command
        connect(shortcut, &QShortcut::activated, this, [this, shape] { push(*shape); });
    }
}

// Of two keys that begin alike the shorter one would be nobody's.
QString PageOperations::whyKeyIsTaken(const QKeySequence& key) const
{
    const QString name = key.toString(QKeySequence::NativeText);
    const auto meets = [&key](const QKeySequence& taken) {
        return key.matches(taken) != QKeySequence::NoMatch || taken.matches(key) != QKeySequence::NoMatch;
    };
    for (auto taken = m_keys.constBegin(); taken != m_keys.constEnd(); ++taken) {
        if (meets(taken.key()))
            return tr("%1 is that of \"%2\"").arg(name, taken.value());
    }
    const bool isWindows = std::any_of(m_services.takenKeys.begin(), m_services.takenKeys.end(), meets);
    return isWindows ? tr("%1 is a key of the window").arg(name) : QString();
}

ObjectKey PageOperations::objectOf(const Operation& operation) const
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(operation.tag, &m_services.database);
    return {link.type, link.id};
}

void PageOperations::push(const Shape& shape)
{
    const Operation* operation = m_page.operations.of(&shape);
    if (operation && canBePushed(shape, *m_page.canvas))
        request(*operation, operation->value);
}

void PageOperations::takeAct(Shape& shape, const QString& handler, const QVariantList& arguments)
{
    const Operation* operation = m_page.operations.of(&shape);
    if (!operation || !Operation::hasValue(operation->kind))
        return;
    if (handler == QLatin1String("onReturnPressed"))
        enterText(shape, *operation);
    else if (handler == QLatin1String("onCurrentIndexChanged"))
        enterChoice(shape, *operation, arguments.value(0).toInt());
}

void PageOperations::enterText(Shape& shape, const Operation& operation)
{
    const auto* field = dynamic_cast<const InputField*>(&shape);
    const auto number = field ? numberOf(field->shownText()) : std::nullopt;
    const auto& limits = operation.input.numberInputParam;
    const Entered entered = EnteredValues::in(shape);
    if (!number) {
        refuse(tr("%1: what was entered is no number").arg(operation.tag), entered);
        return;
    }
    if (limits && !limits->isEmpty() && (*number < limits->minValue || *number > limits->maxValue)) {
        refuse(tr("%1: enter a number from %2 to %3").arg(operation.tag).arg(limits->minValue).arg(limits->maxValue),
               entered);
        return;
    }
    const bool isScaled = limits && limits->useScale && limits->scale != 0;
    request(operation, isScaled ? *number * limits->scale : *number, entered);
}

// An entry stands for the value of that place; without values, for its place.
void PageOperations::enterChoice(Shape& shape, const Operation& operation, int index)
{
    if (index < 0 || !dynamic_cast<const Choice*>(&shape))
        return;
    const auto& choices = operation.input.enumInputParam;
    const bool isNamed = choices && index < choices->enumValues.size();
    request(operation, isNamed ? choices->enumValues[index].second : index, EnteredValues::in(shape));
}

void PageOperations::refuse(const QString& text, const Entered& entered)
{
    if (entered.shape)
        m_entered.takeBack(entered);
    Q_EMIT refused(text);
}

void PageOperations::request(const Operation& operation, std::optional<double> value, const Entered& entered)
{
    const RuntimeDatabase::Object* object = m_services.database.object(objectOf(operation));
    if (!object) {
        refuse(tr("%1: there is no such object").arg(operation.tag), entered);
        return;
    }
    const bool isValueNeeded = Operation::hasValue(operation.kind) && !value;
    if (isValueNeeded || object->control.isReasonNeeded)
        ask(operation, value, *object, entered);
    else
        send(operation, value.value_or(0), {}, entered);
}

void PageOperations::ask(const Operation& operation, std::optional<double> value, const RuntimeDatabase::Object& object,
                         const Entered& entered)
{
    ScadaOperationMessage message;
    message.operation = operationOf(operation.kind);
    message.objectType = object.type;
    message.objectId = object.id;
    message.tag = operation.tag;
    message.value = value ? QVariant(*value) : QVariant();
    OperatorInputDialog::Question question;
    question.isValueNeeded = Operation::hasValue(operation.kind) && !value;
    question.isReasonNeeded = object.control.isReasonNeeded;
    question.command = CommandText::command(message, m_services.database);
    question.input = operation.input;
    question.present = m_services.manager.value({object.type, object.id});
    // The page may be closed while the operator thinks.
    auto* dialog = new OperatorInputDialog(object, question, &m_view);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, operation, value, entered] {
        send(operation, value ? *value : dialog->value(), dialog->reason(), entered);
    });
    if (entered.shape)
        connect(dialog, &QDialog::rejected, this, [this, entered] { m_entered.takeBack(entered); });
    dialog->open();
}

void PageOperations::send(const Operation& operation, double value, const QString& reason, const Entered& entered)
{
    const quint32 requestId = begin(operation, value, reason);
    if (requestId == 0)
        refuse(tr("%1: there is no such object").arg(operation.tag), entered);
    else if (entered.shape)
        m_entered.follow(entered, requestId);
}

/// \returns the request's number
quint32 PageOperations::begin(const Operation& operation, double value, const QString& reason)
{
    const RuntimeManager::Origin origin(m_services.manager, m_page.canvas->canvasName());
    RuntimeManager& manager = m_services.manager;
    const ObjectKey object = objectOf(operation);
    switch (operation.kind) {
    case Kind::Select:
        return manager.select(object, reason);
    case Kind::Operate:
        return manager.operate(object, value, reason);
    case Kind::SetPoint:
        return manager.setPoint(object, value, reason);
    case Kind::Raise:
        return manager.raise(object, reason);
    case Kind::Lower:
        return manager.lower(object, reason);
    case Kind::EnterValue:
        return manager.enterValue(object, value, reason);
    }
    return 0;
}
