#pragma once

#include "host/accounts/accountevent.h"
#include "host/control/auditline.h"
#include "platform/data/scadaoperationmessage.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

/// The text of a line of the audit log, a JSON object: the same line gives the same text.
namespace AuditEntry {

QByteArray of(const ScadaOperationMessage& message, const QString& workplace);
QByteArray of(const AccountEvent& event, const QString& workplace, const QDateTime& time);

/// Nothing of a line that is about something else than the process.
std::optional<ScadaOperationMessage> message(const QByteArray& entry);
/// Without number and hash, which no text holds.
AuditLine line(const QByteArray& entry);
QDateTime time(const QByteArray& entry);

} // namespace AuditEntry
