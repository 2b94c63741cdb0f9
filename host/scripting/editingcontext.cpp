#include "host/scripting/editingcontext_p.h"

#include "host/canvas/canvas.h"
#include "host/scripting/pythonruntime_p.h"
#include "host/scripting/pythonvalues_p.h"
#include "host/scripting/scriptcatalogue_p.h"
#include "host/scripting/scripthandler.h"
#include "host/shapes/shape.h"
#include "host/shapes/shapeproperty.h"
#include "platform/core/kvcanvasinterface.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/pointdirectory.h"

#include <set>

namespace {

using ScriptCatalogue::Entry;
using ScriptCatalogue::Owner;
using Words = std::vector<ScriptVocabulary::Word>;

const QString tagKind = QStringLiteral("tag");
const QString shapeKind = QStringLiteral("shape");
const QString pageKind = QStringLiteral("page");
const QString propertyKind = QStringLiteral("property");

/// Which receivers are of which class of the catalogue.
constexpr std::pair<const char*, const char*> receivers[] = {
    {"shape", "Shape"},   {"obj", "Shape"},           {"canvas[]", "Shape"}, {"canvas.shape()", "Shape"},
    {"canvas", "Canvas"}, {"canvasObject", "Canvas"}, {"event", "Event"},    {"tags.marks()", "tags.Marks"},
};

/// Functions, and subscripts, whose text arguments are of a kind.
constexpr std::pair<const char*, const char*> arguments[] = {
    {"tags.read", "tag"},      {"tags.marks", "tag"},     {"tags.is_good", "tag"},         {"tags.time", "tag"},
    {"tags.fields", "tag"},    {"pages.open", "page"},    {"pages.close", "page"},         {"pages.is_open", "page"},
    {"canvas.shape", "shape"}, {"canvas[", "shape"},      {"canvasObject[", "shape"},      {"shape[", "property"},
    {"obj[", "property"},      {"canvas[][", "property"}, {"canvas.shape()[", "property"},
};

Words wordsOf(const Owner& owner)
{
    Words words;
    for (const Entry& entry : owner.entries) {
        const bool isName = entry.name.at(0).isLetter(); // else an operator, as __getitem__
        if (isName)
            words.push_back({entry.name, entry.meaning.isEmpty() ? QString() : entry.call});
    }
    return words;
}

void addModule(ScriptVocabulary& vocabulary)
{
    for (const Owner& owner : ScriptCatalogue::owners()) {
        const Words words = wordsOf(owner);
        vocabulary.members.insert(owner.name, words);
        if (owner.name.at(0).isLower() && owner.name != QLatin1String("korvane"))
            vocabulary.members.insert(QStringLiteral("korvane.") + owner.name, words);
        for (const auto& [receiver, className] : receivers) {
            if (owner.name == QLatin1String(className))
                vocabulary.members.insert(QLatin1String(receiver), words);
        }
    }
    for (const auto& [callee, kind] : arguments) {
        vocabulary.argumentKinds.insert(QLatin1String(callee), QLatin1String(kind));
        if (!QLatin1String(callee).startsWith(QLatin1String("tags")) &&
            !QLatin1String(callee).startsWith(QLatin1String("pages")))
            continue;
        vocabulary.argumentKinds.insert(QStringLiteral("korvane.") + QLatin1String(callee), QLatin1String(kind));
    }
}

// The namespace's names and the handlers first, then what Python has anyway.
void addWords(ScriptVocabulary& vocabulary)
{
    for (const auto& [name, hint] : {std::pair("canvas", "the page"), std::pair("shape", "the object of the event"),
                                     std::pair("trigger", "number of the event"), std::pair("event", "pointer and key"),
                                     std::pair("korvane", "the module")})
        vocabulary.words.push_back({QLatin1String(name), QLatin1String(hint)});
    for (const Owner& owner : ScriptCatalogue::owners()) {
        if (owner.name.at(0).isLower() && !owner.name.contains(QLatin1Char('.')) &&
            owner.name != QLatin1String("korvane"))
            vocabulary.words.push_back({owner.name, owner.meaning.section(QLatin1Char('.'), 0, 0)});
    }
    for (int place = 0; place < scriptHandlerCount; ++place) {
        const ScriptHandlerInfo& info = scriptHandlerInfo(static_cast<ScriptHandler>(place));
        vocabulary.words.push_back({info.name, QStringLiteral("(%1)").arg(QLatin1String(info.arguments))});
    }
    for (const py::handle word : PythonRuntime::instance().words())
        vocabulary.words.push_back({PythonValues::text(word.ptr()), {}});
}

// Of every class that the page's shapes are of.
QStringList propertiesOn(const Canvas& canvas)
{
    std::set<const ShapeClass*> classes;
    for (const Shape* shape : canvas.shapes())
        classes.insert(&shape->shapeClass());
    QStringList names;
    for (const ShapeClass* each : classes) {
        for (const ShapeProperty& property : each->properties)
            names.append(property.name);
    }
    names.sort();
    names.removeDuplicates();
    return names;
}

QStringList tags()
{
    QStringList names;
    const PointDirectory* directory = PointDirectory::registered();
    if (!directory)
        return names;
    for (const PointDirectory::Station& station : directory->stations()) {
        for (const PointDirectory::Entry& entry : station.objects)
            names.append(Korvane::tagPrefix(entry.key.type) + entry.name);
    }
    return names;
}

} // namespace

ScriptVocabulary EditingContext::vocabulary(const KVCanvasInterface* canvas, const QStringList& pages)
{
    ScriptVocabulary vocabulary;
    addWords(vocabulary);
    addModule(vocabulary);
    vocabulary.texts.insert(tagKind, tags());
    vocabulary.texts.insert(pageKind, pages);
    if (canvas) {
        vocabulary.texts.insert(shapeKind, canvas->shapeNames());
        if (const auto* page = dynamic_cast<const Canvas*>(canvas))
            vocabulary.texts.insert(propertyKind, propertiesOn(*page));
    }
    return vocabulary;
}
