#include "shell/user_folder.h"

#include <QStandardPaths>

QString userDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/voreldesk");
}
