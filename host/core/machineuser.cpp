#include "host/core/machineuser.h"

#include <QDir>

QString machineUser()
{
    for (const char* variable : {"USER", "USERNAME"}) {
        if (QString user = qEnvironmentVariable(variable); !user.isEmpty())
            return user;
    }
    return QDir::home().dirName();
}
