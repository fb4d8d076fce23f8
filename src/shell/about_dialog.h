// The dialog that says what this program is.
#pragma once

#include <QDialog>

// Name, version and icon are those that AppIdentity has told Qt.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutDialog(QWidget *parent = nullptr);

private:
    void copyDetails();
};
