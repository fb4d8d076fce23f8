#include "shell/message_dialogs.h"

#include <QAbstractButton>
#include <QInputDialog>
#include <QPushButton>

std::optional<QString> MessageDialogs::askText(QWidget *parent, const QString &title,
                                               const QString &prompt, const QString &initial)
{
    QInputDialog dialog(parent);
    dialog.setWindowTitle(title);
    dialog.setLabelText(prompt);
    dialog.setTextValue(initial);
    dialog.setOkButtonText(QStringLiteral("确定"));
    dialog.setCancelButtonText(QStringLiteral("取消"));
    dialog.setMinimumWidth(360);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

void MessageDialogs::tell(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                          const QString &message)
{
    choose(parent, icon, title, message, {QStringLiteral("确定")}, 0);
}

void MessageDialogs::warn(QWidget *parent, const QString &title, const QString &message)
{
    tell(parent, QMessageBox::Warning, title, message);
}

int MessageDialogs::choose(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                           const QString &message, const QStringList &buttons, int defaultButton)
{
    QMessageBox box(parent);
    box.setIcon(icon);
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    box.setText(message);
    QList<QAbstractButton *> choices;
    for (const QString &text : buttons)
        choices << box.addButton(text, QMessageBox::ActionRole);
    box.setDefaultButton(static_cast<QPushButton *>(choices.at(defaultButton)));
    box.setEscapeButton(choices.last());
    box.exec();
    return choices.indexOf(box.clickedButton());
}
