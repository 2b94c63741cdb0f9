#include "host/checking/pagecheck_p.h"

#include "host/actions/tagaction.h"
#include "host/canvas/pagereader.h"
#include "host/checking/operationcheck.h"
#include "host/checking/rulecheck.h"
#include "host/checking/tagcheck.h"
#include "host/core/project.h"
#include "host/projectfiles/scriptliterals.h"
#include "platform/data/tagresolution.h"

#include <QFile>
#include <QRegularExpression>

#include <array>

namespace {

using Severity = Finding::Severity;
using Kind = PageText::Kind;

/// Calls of scripts whose first argument is a tag.
constexpr std::array<const char*, 6> tagCalls = {"tags.read", "tags.marks",  "tags.is_good",
                                                 "tags.time", "tags.fields", "alarms.suppress"};

bool isTagCall(const QString& call)
{
    return std::any_of(tagCalls.begin(), tagCalls.end(),
                       [&call](const char* name) { return call == QLatin1String(name); });
}

/// What tells one place of a page from all others.
QString keyOf(const PageText::Place& place)
{
    return QStringLiteral("%1 %2 %3 %4 %5")
        .arg(static_cast<int>(place.kind))
        .arg(place.shape)
        .arg(place.action)
        .arg(place.rule)
        .arg(place.item);
}

PageText::Place place(Kind kind, int shape, int action = -1, int rule = -1, int item = -1)
{
    PageText::Place where;
    where.kind = kind;
    where.shape = shape;
    where.action = action;
    where.rule = rule;
    where.item = item;
    return where;
}

} // namespace

PageCheck::PageCheck(const Project& project, const RuntimeDatabase& database,
                     CanvasScadaActionManagerFactoryInterface& managers)
    : m_project(project), m_database(database), m_managers(managers), m_pages(project.pages())
{
}

std::vector<Finding> PageCheck::run(const QString& page)
{
    m_findings.clear();
    m_text.reset();
    m_firstPlaces.clear();
    m_file = QStringLiteral("pages/%1.pws").arg(page);
    QFile file(m_project.pageFile(page));
    const bool isRead = file.open(QIODevice::ReadOnly) && file.size() <= PageReader::mostBytes;
    m_bytes = isRead ? file.readAll() : QByteArray();
    // Without a database to look tags up in: that is done here, by kind and with the fields.
    const auto read =
        isRead ? PageReader(m_managers).read(m_bytes, m_file) : PageReader(m_managers).readFile(file.fileName());
    if (read) {
        checkPage(*read);
    } else {
        QString text = read.error();
        for (const QString& name : {m_file, file.fileName()})
            text = text.startsWith(name) ? text.mid(name.size() + 2) : text;
        m_findings.push_back({Severity::Error, QStringLiteral("unreadable-page"), m_file, 0, {}, text});
    }
    return std::move(m_findings);
}

void PageCheck::checkPage(const Page& page)
{
    const std::vector<Shape*> shapes = page.canvas->shapes();
    m_shapes.assign(shapes.begin(), shapes.end());
    for (const QString& problem : page.problems)
        addProblem(problem);
    checkAccess(page.access);
    QHash<const TesselInterface*, int> numbers;
    numbers.reserve(static_cast<int>(shapes.size()));
    for (const Shape* shape : m_shapes)
        numbers.insert(shape, numbers.size());
    std::vector<int> actions(m_shapes.size(), 0);
    for (ScadaTagActionInterface* action : page.actions->actions()) {
        const int shape = numbers.value(action->shape(), -1);
        if (shape < 0)
            continue;
        const int number = actions[static_cast<std::size_t>(shape)]++;
        if (const auto* known = dynamic_cast<const TagAction*>(action))
            checkAction(*known, shape, number);
    }
    checkEvents(page, nullptr, -1);
    if (!page.events.isEmpty()) {
        for (const Shape* shape : m_shapes)
            checkEvents(page, shape, numbers.value(shape));
    }
    for (const auto& [shape, operation] : page.operations.all())
        checkOperation(operation, numbers.value(shape, -1));
}

// "FILE:LINE: OBJECT: TEXT", as page readers tell.
void PageCheck::addProblem(const QString& problem)
{
    static const QRegularExpression form(QStringLiteral("^(\\d+): (?:(?:shape|layer) \"(.*?)\": |(page): )?(.*)$"),
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(problem.mid(m_file.size() + 1));
    Finding finding{Severity::Error, QStringLiteral("page-problem"), m_file, 0, {}, problem};
    if (match.hasMatch()) {
        finding.line = match.captured(1).toInt();
        finding.object = match.captured(2);
        finding.text = match.captured(4);
    }
    m_findings.push_back(finding);
}

const PageText* PageCheck::text()
{
    if (!m_text) {
        auto parsed = PageText::parse(m_bytes);
        if (!parsed)
            return nullptr;
        m_text.emplace(std::move(*parsed));
        const auto& places = m_text->places();
        for (std::size_t number = 0; number < places.size(); ++number)
            m_firstPlaces.insert(keyOf(places[number]), static_cast<int>(number));
    }
    return &*m_text;
}

int PageCheck::lineOf(const PageText::Place& where)
{
    if (!text())
        return 0;
    const int number = m_firstPlaces.value(keyOf(where), -1);
    if (number < 0)
        return m_text->lineOf(m_text->shapeOffset(where.shape));
    const PageText::Place& found = m_text->places()[static_cast<std::size_t>(number)];
    return m_text->lineOf(found.text.isEmpty() ? found.record.begin : found.text.begin);
}

QString PageCheck::objectName(int shape)
{
    return shape < 0 ? QString() : m_shapes[static_cast<std::size_t>(shape)]->name();
}

void PageCheck::add(Severity severity, const char* code, int line, int shape, const QString& text)
{
    m_findings.push_back({severity, QLatin1String(code), m_file, line, objectName(shape), text});
}

void PageCheck::checkTag(const QString& tag, const PageText::Place& where)
{
    if (const auto found = TagCheck::run(tag, m_database))
        add(Severity::Error, found->code, lineOf(where), where.shape, found->text);
}

void PageCheck::checkAction(const TagAction& action, int shape, int number)
{
    int item = 0;
    for (const QString& tag : action.tags())
        checkTag(tag, place(Kind::Binding, shape, number, -1, item++));
    if (action.rules().empty())
        return;
    int rule = 0;
    for (const ActionRule& each : action.rules()) {
        item = 0;
        for (const RuleCondition& condition : each.conditions) {
            checkTag(condition.tag, place(Kind::Condition, shape, number, rule, item));
            checkTag(condition.bound, place(Kind::Bound, shape, number, rule, item++));
        }
        ++rule;
    }
    for (const RuleCheck::Found& found : RuleCheck::run(action.rules(), m_database)) {
        add(found.severity, found.code, lineOf(place(Kind::Condition, shape, number, found.rule, found.condition)),
            shape, found.text);
    }
}

void PageCheck::checkOperation(const Operation& operation, int shape)
{
    const PageText::Place where = place(Kind::Operation, shape);
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(operation.tag, &m_database);
    const RuntimeDatabase::Object* object = m_database.object({link.type, link.id});
    if (!object) {
        add(Severity::Error, "unknown-tag", lineOf(where), shape,
            QStringLiteral("\"%1\" names no known object").arg(operation.tag));
        return;
    }
    if (!link.field.isEmpty()) {
        add(Severity::Error, "unfit-command", lineOf(where), shape,
            QStringLiteral("\"%1\": commands go to objects, not to fields").arg(operation.tag));
    }
    for (const OperationCheck::Found& found : OperationCheck::ofOperation(operation, *object))
        add(found.severity, found.code, lineOf(where), shape, found.text);
}

void PageCheck::checkEvents(const Page& page, const Shape* shape, int number)
{
    int event = 0;
    for (const EventActions::Entry& entry : page.events.of(shape)) {
        if (const auto* script = dynamic_cast<const ScadaScriptAction*>(entry.action.get()))
            checkScript(script->script(), number, event);
        ++event;
    }
}

void PageCheck::addInScript(Severity severity, const char* code, int line, int shape, int event, const QString& message)
{
    int lineOfFile = 0;
    if (text()) {
        for (const PageText::Script& script : m_text->scripts()) {
            if (script.shape == shape && script.event == event)
                lineOfFile = ScriptPlaces(*m_text, script).lineOfLine(line);
        }
    }
    add(severity, code, lineOfFile, shape, message);
}

void PageCheck::checkScript(const QString& source, int shape, int event)
{
    auto compiled = m_compiled.find(source);
    if (compiled == m_compiled.end())
        compiled = m_compiled.insert(source, ScriptCompiler::check(source));
    if (*compiled)
        addInScript(Severity::Error, "script-syntax", (*compiled)->line, shape, event, (*compiled)->text);
    const ScriptWords words = ScriptWords::of(source);
    for (const ScriptLiteral& literal : words.literals) {
        if (isTagCall(literal.call)) {
            if (const auto found = TagCheck::run(literal.value, m_database))
                addInScript(Severity::Error, found->code, literal.line, shape, event, found->text);
        } else if (literal.call == QLatin1String("pages.open") && !m_pages.contains(literal.value)) {
            addInScript(Severity::Error, "unknown-page", literal.line, shape, event,
                        QStringLiteral("the project has no page \"%1\"").arg(literal.value));
        }
    }
    for (const ScriptWords::Call& call : words.calls) {
        if (call.name.startsWith(QLatin1String("control."))) {
            addInScript(Severity::Warning, "script-control", call.line, shape, event,
                        QStringLiteral("the script sends commands by itself (%1)").arg(call.name));
        }
    }
}

void PageCheck::checkAccess(const PageAccess& access)
{
    if (!m_accounts)
        return;
    for (const int user : access.users) {
        if (!m_accounts->contains(user))
            add(Severity::Warning, "unknown-account", 0, -1,
                QStringLiteral("the page may be opened by account %1, which there is not").arg(user));
    }
}
