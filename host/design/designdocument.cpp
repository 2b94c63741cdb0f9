#include "host/design/designdocument.h"

#include "host/canvas/pagereader.h"
#include "host/canvas/pagewriter.h"
#include "host/design/designcommands_p.h"
#include "host/design/pointfit.h"
#include "host/runtime/runtimedatabase.h"
#include "host/scripting/scriptengine.h"
#include "host/shapes/placeholder.h"
#include "host/shapes/trend.h"
#include "platform/data/broweriteminfo.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/tagresolution.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Empty for a file that can't be read.
QByteArray hashOfFile(const QString& fileName)
{
    QFile file(fileName);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

bool areSame(const QList<ScadaScriptAction>& before, const QList<ScadaScriptAction>& after)
{
    const auto isSame = [](ScadaScriptAction a, ScadaScriptAction b) {
        return a.triggetType() == b.triggetType() && a.isEqual(b);
    };
    return std::equal(before.begin(), before.end(), after.begin(), after.end(), isSame);
}

// A tag without its field.
QString objectOf(const QString& tag)
{
    Korvane::DataLinkInfo link = Korvane::quickResolveFromString(tag);
    link.field.clear();
    return link.absoluteName();
}

// With the field that stands in the tag before where the item names none itself and its kind of object has that.
QString tagOf(const Korvane::BrowerItemInfo& item, const QString& before)
{
    QString field = item.property;
    if (field.isEmpty()) {
        const Korvane::DataLinkInfo link = Korvane::quickResolveFromString(before);
        const DataFieldInfo* info = DataFieldInfo::find(link.field);
        if (info && info->isFieldOf(item.type))
            field = link.field;
    }
    return field.isEmpty() ? item.tag : QStringLiteral("%1:%2").arg(item.tag, field);
}

// As many curves as actions give values, since a curve of any action has the number of its value.
int curveCount(const std::vector<ShapeBinding>& bindings)
{
    return static_cast<int>(std::count_if(bindings.begin(), bindings.end(), [](const ShapeBinding& binding) {
        return binding.isValue() && binding.action->type() == TagAction::Trend;
    }));
}

} // namespace

tl::expected<std::unique_ptr<DesignDocument>, QString>
DesignDocument::open(const QString& fileName, CanvasScadaActionManagerFactoryInterface& managers,
                     RuntimeDatabase& database, ScriptEngine& scripts)
{
    const QByteArray hash = hashOfFile(fileName);
    auto page = PageReader(managers, &database).readFile(fileName);
    if (!page)
        return tl::make_unexpected(page.error());
    auto trial = PageReader(managers).read(PageWriter::write(*page), fileName);
    if (!trial)
        return tl::make_unexpected(trial.error());
    std::unique_ptr<DesignDocument> document(
        new DesignDocument(std::move(*page), std::move(*trial), database, scripts));
    document->m_fileHash = hash;
    return document;
}

DesignDocument::DesignDocument(Page page, Page trial, RuntimeDatabase& database, ScriptEngine& scripts)
    : m_page(std::move(page)), m_trial(std::move(trial)), m_database(database), m_scripts(scripts)
{
    connect(&m_undo, &QUndoStack::cleanChanged, this, &DesignDocument::tellModified);
}

DesignDocument::~DesignDocument()
{
    m_undo.disconnect(this);
    m_scripts.forgetCanvas(m_trial.canvas.get());
}

bool DesignDocument::canHaveScripts(const Shape* shape)
{
    return !dynamic_cast<const Placeholder*>(shape);
}

void DesignDocument::setScripts(const Shape* shape, const QList<ScadaScriptAction>& scripts)
{
    if (!canHaveScripts(shape))
        return;
    QList<ScadaScriptAction> filled;
    for (const ScadaScriptAction& script : scripts) {
        if (!script.script().isEmpty())
            filled.append(script);
    }
    if (areSame(m_page.events.scripts(shape), filled))
        return;
    m_page.events.setScripts(shape, filled);
    m_areScriptsModified = true;
    tellModified();
    Q_EMIT scriptsChanged(shape);
}

bool DesignDocument::isFileChanged() const
{
    return hashOfFile(m_page.fileName) != m_fileHash;
}

tl::expected<void, QString> DesignDocument::save()
{
    if (auto written = PageWriter::writeFile(m_page, m_page.fileName); !written)
        return written;
    // Of what was written: somebody else may have written since.
    m_fileHash = QCryptographicHash::hash(PageWriter::write(m_page), QCryptographicHash::Sha256);
    m_areScriptsModified = false;
    m_undo.setClean();
    tellModified();
    return {};
}

void DesignDocument::tellModified()
{
    if (isModified() == m_isModifiedTold)
        return;
    m_isModifiedTold = isModified();
    Q_EMIT modifiedChanged(m_isModifiedTold);
}

std::vector<ShapeBinding> DesignDocument::bindings(const Shape& shape) const
{
    return ShapeBinding::of(*m_page.actions, shape);
}

bool DesignDocument::canAddBinding(const Shape& shape) const
{
    const std::vector<ShapeBinding> bound = bindings(shape);
    if (dynamic_cast<const Trend*>(&shape))
        return curveCount(bound) < Trend::mostCurves;
    return bound.empty() && PointFit::of(shape, QString(), m_database);
}

void DesignDocument::bind(const QString& text, Shape& shape, TagAction* before, std::unique_ptr<TagAction> after,
                          const QVariantMap& properties)
{
    m_undo.push(new BindCommand(*this, text, shape, before, std::move(after), properties));
}

void DesignDocument::addBinding(Shape& shape, const QString& tag)
{
    const std::vector<ShapeBinding> bound = bindings(shape);
    const auto curve = std::find_if(bound.rbegin(), bound.rend(), [](const ShapeBinding& binding) {
        return binding.isValue() && binding.action->type() == TagAction::Trend;
    });
    const bool isNextCurve = curve != bound.rend();
    const int place = isNextCurve ? curve->place + 1 : 0;
    const auto fit = PointFit::of(shape, tag, m_database, place);
    Q_ASSERT(fit);
    const QString text = tr("Bind to %1").arg(tag);
    if (isNextCurve) {
        std::unique_ptr<TagAction> more = curve->rebound(curve->tag);
        more->addTarget(ObjectTarget::fromTagString(tag));
        bind(text, shape, curve->action, std::move(more), fit->properties);
        return;
    }
    PointFit drawn; // as a new shape of the class is
    const std::unique_ptr<Shape> fresh = shape.shapeClass().create();
    for (const QString& property : fit->properties.keys())
        drawn.properties.insert(property, fresh->namedProperty(property));
    bind(text, shape, nullptr, fit->makeAction(shape, tag), fit->propertiesAfter(shape, drawn));
}

void DesignDocument::addBinding(Shape& shape, const Korvane::BrowerItemInfo& item)
{
    addBinding(shape, tagOf(item, {}));
}

void DesignDocument::setBinding(const ShapeBinding& binding, const QString& tag)
{
    if (tag == binding.tag)
        return;
    auto& shape = dynamic_cast<Shape&>(*binding.action->shape());
    std::unique_ptr<TagAction> after = binding.rebound(tag);
    QVariantMap properties;
    const auto before = PointFit::of(shape, binding.tag, m_database, binding.place);
    const auto fit = PointFit::of(shape, tag, m_database, binding.place);
    if (binding.isValue() && before && fit && before->type == binding.action->type()) {
        properties = fit->propertiesAfter(shape, *before);
        if (before->isHeldBy(*binding.action) && fit->type != before->type)
            after = fit->makeAction(shape, tag);
        else if (before->isHeldBy(*binding.action))
            fit->applySettings(*after);
    }
    bind(tr("Bind to %1").arg(tag), shape, binding.action, std::move(after), properties);
}

bool DesignDocument::removeBinding(const ShapeBinding& binding)
{
    if (!binding.isValue())
        return false;
    auto& shape = dynamic_cast<Shape&>(*binding.action->shape());
    std::unique_ptr<TagAction> after = binding.rebound(binding.tag);
    after->removeValue(binding.place);
    if (after->tags().isEmpty() && after->rules().empty())
        after.reset();
    bind(tr("Release from %1").arg(binding.tag), shape, binding.action, std::move(after));
    return true;
}

QStringList DesignDocument::boundObjects(const Shape& shape) const
{
    QStringList objects;
    for (const ShapeBinding& binding : bindings(shape))
        objects.append(objectOf(binding.tag));
    objects.removeDuplicates();
    return objects;
}

// Each change gives the shape's actions anew.
void DesignDocument::replaceObject(Shape& shape, const QString& object, const Korvane::BrowerItemInfo& item)
{
    if (objectOf(item.tag) == object && item.property.isEmpty())
        return;
    m_undo.beginMacro(tr("Bind to %1").arg(item.tag));
    for (std::size_t place = 0; place < bindings(shape).size(); ++place) {
        const ShapeBinding binding = bindings(shape)[place];
        if (objectOf(binding.tag) == object)
            setBinding(binding, tagOf(item, binding.tag));
    }
    m_undo.endMacro();
}

QRectF DesignDocument::readOutPlace(const QString& tag, const QPointF& middle) const
{
    QRectF place = PointFit::makeReadOut(tag, m_database)->place();
    place.moveCenter(middle);
    const QSizeF page = m_page.canvas->size();
    place.moveLeft(std::round(std::max(0.0, std::min(place.left(), page.width() - place.width()))));
    place.moveTop(std::round(std::max(0.0, std::min(place.top(), page.height() - place.height()))));
    return place;
}

Shape& DesignDocument::addReadOut(const QString& tag, const QPointF& middle)
{
    std::unique_ptr<Shape> shape = PointFit::makeReadOut(tag, m_database);
    Shape& added = *shape;
    shape->setPlace(readOutPlace(tag, middle));
    const RuntimeDatabase::Object* object = PointFit::objectOf(tag, m_database);
    shape->setName(freeName(object ? object->name : tag));
    auto action = PointFit::of(added, tag, m_database)->makeAction(added, tag);
    m_undo.push(new AddShapeCommand(*this, tr("Add %1").arg(added.name()), std::move(shape), std::move(action),
                                    topmostVisibleLayer()));
    return added;
}

QString DesignDocument::freeName(const QString& wanted) const
{
    QString name = wanted;
    for (int number = 2; m_page.canvas->findShape(name); ++number)
        name = QStringLiteral("%1 %2").arg(wanted).arg(number);
    return name;
}

// Behind the last one where none is visible.
std::size_t DesignDocument::topmostVisibleLayer() const
{
    const auto& layers = m_page.canvas->layers();
    for (std::size_t place = layers.size(); place > 0; --place) {
        if (layers[place - 1]->isVisible())
            return place - 1;
    }
    return layers.size();
}

void DesignDocument::setOperation(const Shape& shape, const std::optional<Operation>& operation)
{
    const Operation* before = m_page.operations.of(&shape);
    const bool isUnchanged = before && operation ? before->isEqual(*operation) : !before && !operation;
    if (isUnchanged || dynamic_cast<const Placeholder*>(&shape))
        return;
    m_undo.push(new OperationCommand(*this, tr("Change the operation"), shape, operation));
}

void DesignDocument::setAccess(const PageAccess& access)
{
    if (!access.isEqual(m_page.access))
        m_undo.push(new AccessCommand(*this, tr("Change the access rights"), access));
}
