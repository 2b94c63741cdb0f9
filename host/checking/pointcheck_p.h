#pragma once

#include "host/checking/finding.h"
#include "host/runtime/runtimedatabase.h"

#include <QHash>
#include <QString>

#include <vector>

struct Project;

/// Checks what the objects of a project say of each other, and whether their commands are guarded.
class PointCheck
{
public:
    /// \p project, \p database must outlive this
    PointCheck(const Project& project, const RuntimeDatabase& database) : m_project(project), m_database(database) {}

    std::vector<Finding> run();

private:
    void check(const RuntimeDatabase::Object& object);
    void checkParent(const RuntimeDatabase::Object& object);
    void checkTag(const RuntimeDatabase::Object& object, const char* column, const QString& tag);
    void add(const RuntimeDatabase::Object& object, Finding::Severity severity, const char* code, const QString& text);
    int lineOf(const RuntimeDatabase::Object& object);

    const Project& m_project;
    const RuntimeDatabase& m_database;
    QHash<QString, int> m_lines; ///< of the list, by prefix and name; read when the first one is asked for
    std::vector<Finding> m_findings;
};
