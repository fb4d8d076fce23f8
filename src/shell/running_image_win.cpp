// Windows locks the file of a running program.
#include "shell/running_image.h"

#include <QProcess>

bool endRunningImage(const QString &name)
{
    return QProcess::execute(
               QStringLiteral("taskkill"),
               {QStringLiteral("/F"), QStringLiteral("/IM"), name, QStringLiteral("/T")}) == 0;
}
