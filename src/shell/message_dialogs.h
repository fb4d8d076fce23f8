// The small dialogs of the shell, with Chinese buttons whatever the language of the system.
#pragma once

#include <QMessageBox>
#include <QString>

#include <optional>

class QWidget;

namespace MessageDialogs {

// One line of text from the user; nothing when he cancels.
std::optional<QString> askText(QWidget *parent, const QString &title, const QString &prompt,
                               const QString &initial = {});

// Shows plain text until the user goes on.
void tell(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &message);
void warn(QWidget *parent, const QString &title, const QString &message);

// The index of the button that the user chose, -1 for none. The last button is that of Escape,
// `defaultButton` that of Enter.
int choose(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &message,
           const QStringList &buttons, int defaultButton);

} // namespace MessageDialogs
