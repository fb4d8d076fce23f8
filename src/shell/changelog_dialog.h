// The dialog of what has changed in the product.
#pragma once

#include <QDialog>

class ChangelogDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ChangelogDialog(QWidget *parent = nullptr);
};
