#include "host/accountview/roletexts_p.h"

#include <QCoreApplication>

QString roleText(const QString& role)
{
    const auto known = accountRoleOf(role);
    if (!known)
        return role;
    const auto translated = [](const char* text) { return QCoreApplication::translate("AccountRole", text); };
    switch (*known) {
    case AccountRole::Viewer:
        return translated(QT_TRANSLATE_NOOP("AccountRole", "Viewer"));
    case AccountRole::Operator:
        return translated(QT_TRANSLATE_NOOP("AccountRole", "Operator"));
    case AccountRole::Supervisor:
        return translated(QT_TRANSLATE_NOOP("AccountRole", "Supervisor"));
    case AccountRole::Engineer:
        return translated(QT_TRANSLATE_NOOP("AccountRole", "Engineer"));
    case AccountRole::Administrator:
        return translated(QT_TRANSLATE_NOOP("AccountRole", "Administrator"));
    }
    return role;
}
