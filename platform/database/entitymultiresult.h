#pragma once

#include <QList>
#include <QString>

/// What a database answers to a question for several records.
template <typename Entity>
struct EntityMultiResult
{
    QList<Entity> list;
    QString error; ///< why the list is empty, for a user's eyes; empty when the question was answered

    bool isOk() const { return error.isEmpty(); }
};
