#include "host/control/controlpath.h"

#include "host/accounts/databasemanager.h"
#include "host/control/auditlog.h"
#include "host/control/commandgate.h"
#include "host/control/controlconfirmer.h"
#include "host/core/machineuser.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/tagresolution.h"
#include "platform/data/valuemarks.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QElapsedTimer>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace {

using Confirmation = ControlSetting::Confirmation;

ControlPath::Clock machineClock()
{
    const auto timer = std::make_shared<QElapsedTimer>();
    timer->start();
    return [timer] { return timer->elapsed(); };
}

} // namespace

ControlPath::ControlPath(const Services& services, Clock clock, QObject* parent)
    : QObject(parent),
      m_services(services),
      m_clock(clock ? std::move(clock) : machineClock()),
      m_rules(services.database, services.users)
{
    connect(&services.data, &DataService::commandAnswered, this, &ControlPath::takeAnswer);
}

ControlPath::~ControlPath()
{
    m_nextLogMs = std::numeric_limits<qint64>::min(); // the last chance
    logEnds();
    if (m_unlogged.empty())
        return;
    const ScadaOperationMessage& first = m_unlogged.front();
    Q_EMIT problemFound(tr("%n end(s) of requests are missing in the audit log, from that of %1 (%2) on", nullptr,
                           static_cast<int>(m_unlogged.size()))
                            .arg(first.tag, first.time.toString(Qt::ISODateWithMs)));
}

QString ControlPath::user() const
{
    return m_services.users.isSecured() ? m_services.users.currentUserId() : machineUser();
}

qint64 ControlPath::nowMs() const
{
    return m_services.hub.currentTime().toMSecsSinceEpoch();
}

ControlPath::Request* ControlPath::find(quint32 requestId)
{
    const auto found = m_requests.find(requestId);
    return found == m_requests.end() || found->second.isCancelled ? nullptr : &found->second;
}

quint32 ControlPath::begin(const ControlOrder& order)
{
    const RuntimeDatabase::Object* object = m_services.database.object(order.object);
    if (!object)
        return 0;
    const quint32 id = ++m_lastId;
    Request& request = m_requests[id];
    request.order = order;
    request.timeout = m_feedbackTimeout;
    ScadaOperationMessage& message = request.message;
    message.requestId = id;
    message.operation = order.operation;
    message.objectType = object->type;
    message.objectId = object->id;
    message.tag = Korvane::tagPrefix(object->type) + object->name;
    message.value = order.value;
    message.user = user();
    message.reason = order.reason;
    message.time = m_services.hub.currentTime();
    const QuorixData record = m_services.database.presentRecord(order.object);
    if (const QuorixValue* value = record.GetValue(DataFieldInfo::currentValueMember))
        message.before = value->toVariant();
    QMetaObject::invokeMethod(
        this, [this, id] { process(id); }, Qt::QueuedConnection);
    return id;
}

ControlRules::Asking ControlPath::asking(const Request& request) const
{
    return {request.message.user, selectedBy(request.order.object)};
}

// Checks as things stand now; what does not pass has ended behind this.
bool ControlPath::passes(Request& request)
{
    const quint32 id = request.message.requestId;
    m_isReachable = m_isReachable && m_services.users.refresh().has_value();
    if (!find(id))
        return false; // the session ended with that
    if (request.message.user != user()) {
        finish(request.message.requestId, Outcome::NotPermitted, tr("somebody else is logged on by now"));
        return false;
    }
    const auto checked = m_rules.check(request.order, asking(request));
    if (!checked) {
        finish(request.message.requestId, checked.error().outcome, checked.error().text);
        return false;
    }
    request.target = *checked;
    return true;
}

void ControlPath::process(quint32 requestId)
{
    Request* request = find(requestId);
    if (!request)
        return; // cancelled meanwhile
    tell(*request, Outcome::Requested, {});
    request = find(requestId); // who was told may have cancelled it
    if (!request || !passes(*request))
        return;
    if (request->order.act) {
        act(*request);
        return;
    }
    if (request->order.operation == Operation::Select) {
        select(*request);
        return;
    }
    if (m_rules.settingOf(request->order.object).confirmation == Confirmation::None)
        carryOut(requestId);
    else
        askUser(requestId);
}

// The operator may take his time, and the event loop turns meanwhile.
// One question at a time: who answers must know what for.
void ControlPath::askUser(quint32 requestId)
{
    m_toAsk.push_back(requestId);
    if (m_isAsking)
        return;
    const QScopedValueRollback<bool> asking(m_isAsking, true);
    while (!m_toAsk.empty()) {
        const quint32 next = m_toAsk.front();
        m_toAsk.pop_front();
        Request* request = find(next);
        if (request && passes(*request))
            askNow(next);
    }
}

void ControlPath::askNow(quint32 requestId)
{
    if (!m_confirmer) {
        finish(requestId, Outcome::NotConfirmed, tr("there is nobody here who could confirm"));
        return;
    }
    const ScadaOperationMessage message = find(requestId)->message;
    const quint64 proofsBefore = m_services.users.newestProof();
    const bool isConfirmed = m_confirmer->confirm(message);
    Request* request = find(requestId);
    if (!request)
        return;
    const bool isProven = !m_services.users.isSecured() || takeProof(message.user, proofsBefore);
    if (!isConfirmed || !isProven) {
        finish(requestId, Outcome::NotConfirmed,
               isConfirmed ? tr("confirmed without a password") : tr("the operator did not confirm"));
        return;
    }
    const bool isSecondNeeded =
        m_rules.settingOf(request->order.object).confirmation == Confirmation::Second && m_services.users.isSecured();
    if (isSecondNeeded)
        awaitSecond(requestId);
    else
        carryOut(requestId);
}

// A right password stands for one confirmation.
bool ControlPath::takeProof(const QString& user, quint64 newerThan)
{
    const quint64 proof = m_services.users.proofOf(user);
    quint64& used = m_usedProofs[user];
    if (proof <= std::max(newerThan, used))
        return false;
    used = proof;
    return true;
}

void ControlPath::awaitSecond(quint32 requestId)
{
    Request& request = *find(requestId);
    request.awaitsSecond = true;
    request.proofsBefore = m_services.users.newestProof();
    request.deadlineMs = m_clock() + std::chrono::milliseconds(secondPersonTime).count();
    tell(request, Outcome::Requested, tr("waits for a second person"));
    if (const Request* waiting = find(requestId); waiting && m_confirmer)
        m_confirmer->askSecond(waiting->message);
}

bool ControlPath::confirm(quint32 requestId, const QString& secondUser)
{
    Request* request = find(requestId);
    const DatabaseManager& users = m_services.users;
    if (!request || !request->awaitsSecond || secondUser == request->message.user)
        return false;
    const auto account = users.account(secondUser);
    const RuntimeDatabase::Object* object = m_services.database.object(request->order.object);
    const AccountRole role = m_rules.settingOf(request->order.object).role;
    if (!account || !DatabaseManager::may(*account, role, object->area) ||
        !takeProof(secondUser, request->proofsBefore))
        return false;
    request->awaitsSecond = false;
    request->deadlineMs = 0;
    request->message.secondUser = secondUser;
    QMetaObject::invokeMethod(
        this, [this, requestId] { carryOut(requestId); }, Qt::QueuedConnection);
    return true;
}

void ControlPath::act(Request& request)
{
    const quint32 id = request.message.requestId;
    if (!audit(request.message)) {
        finish(id, Outcome::Refused, tr("the audit log can't be written"));
        return;
    }
    // Who hears of what is done may end the session, and the request with it.
    const auto doIt = request.order.act;
    const ScadaOperationMessage message = request.message;
    const auto done = doIt(message);
    finish(id, done ? Outcome::Done : Outcome::Refused, done ? QString() : done.error());
}

void ControlPath::select(Request& request)
{
    Selection& selection = m_selections[request.order.object];
    selection.requestId = request.message.requestId;
    selection.user = request.message.user;
    selection.untilMs = m_clock() + std::chrono::milliseconds(selectionTime).count();
    selection.until = m_services.hub.currentTime().addSecs(selectionTime.count());
    finish(request.message.requestId, Outcome::Done, {});
}

// Much may have happened while people were asked.
void ControlPath::carryOut(quint32 requestId)
{
    Request* request = find(requestId);
    if (!request || !passes(*request))
        return;
    for (const auto& [id, other] : m_requests) {
        if (other.message.outcome == Outcome::Sent && other.order.object == request->order.object) {
            finish(requestId, Outcome::Refused, tr("another command to this object is under way"));
            return;
        }
    }
    send(*request);
}

void ControlPath::send(Request& request)
{
    const quint32 id = request.message.requestId;
    const ObjectKey object = request.order.object;
    ValueSource* source = m_services.data.commandSource(object);
    if (!source) {
        const ValueSource* delivering = m_services.data.sourceOf(object);
        finish(id, Outcome::Refused,
               delivering ? tr("%1 takes no commands").arg(delivering->description())
                          : tr("no source takes commands to this object"));
        return;
    }
    const ControlSetting& setting = m_rules.settingOf(object);
    const auto feedback = Korvane::resolveFromString(setting.feedback, &m_services.database);
    request.feedback = setting.feedback.isEmpty() ? object : ObjectKey{feedback.type, feedback.id};
    if (!m_services.database.object(request.feedback)) {
        finish(id, Outcome::Refused, tr("the feedback %1 is not known").arg(setting.feedback));
        return;
    }
    request.tolerance = setting.tolerance;
    request.sentMs = nowMs();
    const auto timeout = setting.timeout.count() > 0 ? setting.timeout : request.timeout;
    request.deadlineMs = m_clock() + timeout.count();
    ScadaOperationMessage sent = request.message;
    sent.outcome = Outcome::Sent;
    sent.value = request.target;
    sent.time = m_services.hub.currentTime();
    if (!audit(sent)) {
        finish(id, Outcome::Refused, tr("the audit log can't be written"));
        return;
    }
    request.message = sent;
    m_selections.remove(object); // it was for this one command
    const ValueSource::Command command{id, object, request.target};
    Q_EMIT progressed(sent);
    // Whoever was told can't cancel it any more, but may have turned the event loop until its time was over. The
    // source's answer may end it before write() returns.
    if (find(id))
        CommandGate::write(*source, command);
}

void ControlPath::takeAnswer(quint32 requestId, const QString& refusal)
{
    const Request* request = find(requestId);
    if (request && request->message.outcome == Outcome::Sent && !refusal.isEmpty())
        finish(requestId, Outcome::Refused, refusal);
}

bool ControlPath::hasFeedback(const Request& request) const
{
    if (m_services.data.isHeld(request.feedback))
        return false; // what stands there was put there by hand
    const QuorixData record = m_services.database.presentRecord(request.feedback);
    const QuorixValue* time = record.GetValue("time");
    const QuorixValue* value = record.GetValue(DataFieldInfo::currentValueMember);
    const QuorixValue* quality = record.GetValue("quality");
    if (!time || !value || !quality || (quality->toInt32() & ValueMark::unreliable) != 0)
        return false;
    if (time->toVariant().toDateTime().toMSecsSinceEpoch() < request.sentMs)
        return false;
    return std::abs(value->toDouble() - request.target) <= request.tolerance;
}

// In their order; while the first can't be written the others wait.
void ControlPath::logEnds()
{
    const qint64 now = m_clock();
    if (m_unlogged.empty() || now < m_nextLogMs)
        return;
    m_nextLogMs = now + std::chrono::milliseconds(logPause).count();
    while (!m_unlogged.empty() && m_services.audit.append(m_unlogged.front(), m_workplace))
        m_unlogged.pop_front();
}

void ControlPath::advance()
{
    const qint64 now = m_clock();
    m_isReachable = true; // the accounts are asked again with the next request
    logEnds();
    std::vector<quint32> ids;
    for (const auto& [id, request] : m_requests) {
        if (request.message.outcome == Outcome::Sent || request.awaitsSecond)
            ids.push_back(id);
    }
    for (const quint32 id : ids) {
        const Request* request = find(id);
        if (!request)
            continue;
        const bool isSent = request->message.outcome == Outcome::Sent;
        if (isSent && hasFeedback(*request))
            finish(id, Outcome::Done, {});
        else if (now >= request->deadlineMs)
            finish(id, isSent ? Outcome::TimedOut : Outcome::NotConfirmed,
                   isSent ? tr("the feedback did not show the value in time") : tr("no second person confirmed"));
    }
    for (auto selection = m_selections.begin(); selection != m_selections.end();)
        selection = now >= selection->untilMs ? m_selections.erase(selection) : std::next(selection);
}

void ControlPath::tell(Request& request, Outcome outcome, const QString& text)
{
    request.message.outcome = outcome;
    request.message.text = text;
    request.message.time = m_services.hub.currentTime();
    Q_EMIT progressed(ScadaOperationMessage(request.message));
}

bool ControlPath::audit(const ScadaOperationMessage& message)
{
    const auto written = m_services.audit.append(message, m_workplace);
    if (!written)
        Q_EMIT problemFound(written.error());
    return written.has_value();
}

void ControlPath::finish(quint32 requestId, Outcome outcome, const QString& text)
{
    const auto found = m_requests.find(requestId);
    if (found == m_requests.end())
        return;
    ScadaOperationMessage message = found->second.message;
    m_requests.erase(found);
    message.outcome = outcome;
    message.text = text;
    message.time = m_services.hub.currentTime();
    if (!m_unlogged.empty() || !audit(message))
        m_unlogged.push_back(message); // written as soon as that can be
    m_ended[requestId] = message;
    if (m_ended.size() > mostEnded)
        m_ended.erase(m_ended.begin());
    Q_EMIT finished(message);
}

bool ControlPath::cancel(quint32 requestId)
{
    for (auto selection = m_selections.begin(); selection != m_selections.end(); ++selection) {
        if (selection->requestId == requestId && selection->user == user()) {
            m_selections.erase(selection);
            return true;
        }
    }
    Request* request = find(requestId);
    if (!request || request->message.outcome == Outcome::Sent || request->message.user != user())
        return false;
    request->isCancelled = true;
    // The end comes behind this, as every end does.
    QMetaObject::invokeMethod(
        this, [this, requestId] { finish(requestId, Outcome::Cancelled, {}); }, Qt::QueuedConnection);
    return true;
}

QDateTime ControlPath::selectedUntil(ObjectKey object) const
{
    const Selection selection = m_selections.value(object);
    return m_clock() < selection.untilMs ? selection.until : QDateTime();
}

QString ControlPath::selectedBy(ObjectKey object) const
{
    const Selection selection = m_selections.value(object);
    return m_clock() < selection.untilMs ? selection.user : QString();
}

QList<ScadaOperationMessage> ControlPath::pending() const
{
    QList<ScadaOperationMessage> messages;
    for (const auto& [id, request] : m_requests)
        messages.append(request.message);
    return messages;
}

ScadaOperationMessage ControlPath::request(quint32 requestId) const
{
    const auto found = m_requests.find(requestId);
    if (found != m_requests.end())
        return found->second.message;
    const auto ended = m_ended.find(requestId);
    return ended == m_ended.end() ? ScadaOperationMessage() : ended->second;
}

void ControlPath::setFeedbackTimeout(std::chrono::milliseconds timeout)
{
    if (timeout.count() > 0)
        m_feedbackTimeout = timeout;
}

void ControlPath::endSession(const QString& leaving)
{
    std::vector<quint32> unsent;
    for (const auto& [id, request] : m_requests) {
        if (request.message.outcome != Outcome::Sent && request.message.user == leaving)
            unsent.push_back(id);
    }
    for (const quint32 id : unsent)
        finish(id, Outcome::Cancelled, tr("the session ended"));
    for (auto selection = m_selections.begin(); selection != m_selections.end();)
        selection = selection->user == leaving ? m_selections.erase(selection) : std::next(selection);
    m_ended.clear();
}
