#include "shell/tool_bars.h"

#include <QToolBar>
#include <QToolButton>

void nameExtension(QToolBar &bar)
{
    if (auto *button = bar.findChild<QToolButton *>(QStringLiteral("qt_toolbar_ext_button"))) {
        button->setAccessibleName(QStringLiteral("更多按钮"));
        button->setToolTip(QStringLiteral("更多按钮"));
    }
}
