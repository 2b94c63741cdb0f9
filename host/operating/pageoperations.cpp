#include "host/operating/pageoperations.h"

#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/canvas/page.h"
#include "host/control/operationnames.h"
#include "host/operating/commandtext.h"
#include "host/operating/operatorinputdialog.h"
#include "host/runtime/runtimedatabase.h"
#include "host/runtime/runtimemanager.h"
#include "host/shapes/choice.h"
#include "host/shapes/inputfield.h"
#include "platform/data/tagresolution.h"
#include "platform/data/valuemarks.h"

#include <QKeySequence>
#include <QPointer>
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
    : QObject(&view), m_view(view), m_page(page), m_services(services)
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
    connectKeys();
}

PageOperations::~PageOperations() = default;

void PageOperations::connectKeys()
{
    for (const auto& [shape, operation] : m_page.operations.all()) {
        if (operation.key.isEmpty())
            continue;
        auto* shortcut = new QShortcut(QKeySequence(operation.key, QKeySequence::PortableText), &m_view);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        shortcut->setAutoRepeat(false); // a key that sticks gives one command
        connect(shortcut, &QShortcut::activated, this, [this, pushed = shape] { push(*pushed); });
    }
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

void PageOperations::takeAct(const Shape& shape, const QString& handler, const QVariantList& arguments)
{
    const Operation* operation = m_page.operations.of(&shape);
    if (!operation || !Operation::hasValue(operation->kind))
        return;
    if (handler == QLatin1String("onReturnPressed"))
        enterText(shape, *operation);
    else if (handler == QLatin1String("onCurrentIndexChanged"))
        enterChoice(shape, *operation, arguments.value(0).toInt());
}

void PageOperations::enterText(const Shape& shape, const Operation& operation)
{
    const auto* field = dynamic_cast<const InputField*>(&shape);
    const auto number = field ? numberOf(field->shownText()) : std::nullopt;
    const auto& limits = operation.input.numberInputParam;
    if (!number) {
        Q_EMIT refused(tr("%1: what was entered is no number").arg(operation.tag));
        return;
    }
    if (limits && !limits->isEmpty() && (*number < limits->minValue || *number > limits->maxValue)) {
        Q_EMIT refused(
            tr("%1: enter a number from %2 to %3").arg(operation.tag).arg(limits->minValue).arg(limits->maxValue));
        return;
    }
    const bool isScaled = limits && limits->useScale && limits->scale != 0;
    request(operation, isScaled ? *number * limits->scale : *number);
}

// An entry stands for the value of that place; without values, for its place.
void PageOperations::enterChoice(const Shape& shape, const Operation& operation, int index)
{
    if (index < 0 || !dynamic_cast<const Choice*>(&shape))
        return;
    const auto& choices = operation.input.enumInputParam;
    const bool isNamed = choices && index < choices->enumValues.size();
    request(operation, isNamed ? choices->enumValues[index].second : index);
}

void PageOperations::request(const Operation& operation, std::optional<double> value)
{
    const RuntimeDatabase::Object* object = m_services.database.object(objectOf(operation));
    if (!object) {
        Q_EMIT refused(tr("%1: there is no such object").arg(operation.tag));
        return;
    }
    OperatorInputDialog::Question question;
    question.isValueNeeded = Operation::hasValue(operation.kind) && !value;
    question.isReasonNeeded = object->control.isReasonNeeded;
    if (!question.isValueNeeded && !question.isReasonNeeded) {
        send(operation, value.value_or(0), {});
        return;
    }
    ScadaOperationMessage message;
    message.operation = operationOf(operation.kind);
    message.objectType = object->type;
    message.objectId = object->id;
    message.tag = operation.tag;
    message.value = value ? QVariant(*value) : QVariant();
    question.command = CommandText::command(message, m_services.database);
    question.input = operation.input;
    question.present = m_services.manager.value({object->type, object->id});
    // The page may be closed while the operator thinks.
    auto* dialog = new OperatorInputDialog(*object, question, &m_view);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog, operation, value] { send(operation, value ? *value : dialog->value(), dialog->reason()); });
    dialog->open();
}

void PageOperations::send(const Operation& operation, double value, const QString& reason)
{
    const RuntimeManager::Origin origin(m_services.manager, m_page.canvas->canvasName());
    RuntimeManager& manager = m_services.manager;
    const ObjectKey object = objectOf(operation);
    switch (operation.kind) {
    case Kind::Select:
        manager.select(object, reason);
        return;
    case Kind::Operate:
        manager.operate(object, value, reason);
        return;
    case Kind::SetPoint:
        manager.setPoint(object, value, reason);
        return;
    case Kind::Raise:
        manager.raise(object, reason);
        return;
    case Kind::Lower:
        manager.lower(object, reason);
        return;
    case Kind::EnterValue:
        manager.enterValue(object, value, reason);
        return;
    }
}
