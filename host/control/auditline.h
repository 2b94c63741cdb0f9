#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

/// A line of the audit log as it is read by people: what operators did, and what happened to user accounts. Operations and
/// outcomes are named as the log holds them.
struct AuditLine
{
    qint64 number = 0;
    QDateTime time; ///< UTC
    QString workplace;
    QString user;
    QString secondUser; ///< who confirmed beside the user
    QString operation;
    QString subject; ///< tag of an object, or name of an account
    QVariant before;
    QVariant value;
    QString outcome;
    QString reason;
    QString text;
    QString hash;
};
