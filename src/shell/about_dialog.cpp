#include "shell/about_dialog.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

namespace {

QString details()
{
    return QStringLiteral("版本 %1\nQt %2\n%3（%4）")
        .arg(QCoreApplication::applicationVersion(), QString::fromLatin1(qVersion()),
             QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture());
}

} // namespace

AboutDialog::AboutDialog(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("关于"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(32, 24, 32, 16);
    rows->setSpacing(10);
    const auto addLabel = [&](const QString &text) {
        auto *label = new QLabel(text, this);
        label->setAlignment(Qt::AlignCenter);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        rows->addWidget(label);
        return label;
    };
    auto *icon = addLabel(QString());
    icon->setPixmap(QGuiApplication::windowIcon().pixmap(96, 96));
    auto *name = addLabel(QGuiApplication::applicationDisplayName());
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    name->setFont(large);
    addLabel(details());
    addLabel(QStringLiteral("用中文写程序，编译成 Windows 原生程序。"));
    auto *buttons = new QDialogButtonBox(this);
    auto *copy = buttons->addButton(QStringLiteral("复制信息"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, &AboutDialog::copyDetails);
    buttons->addButton(QStringLiteral("关闭"), QDialogButtonBox::RejectRole)->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    rows->addWidget(buttons);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void AboutDialog::copyDetails()
{
    QGuiApplication::clipboard()->setText(QGuiApplication::applicationDisplayName() +
                                          QLatin1Char('\n') + details());
}
