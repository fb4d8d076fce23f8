// The help of the main window.
#include "shell/mainwindow.h"

#include "settings/settings_store.h"
#include "shell/about_dialog.h"
#include "shell/action_set.h"
#include "shell/changelog_dialog.h"
#include "shell/editor_tabs.h"
#include "shell/help_window.h"
#include "shell/message_dialogs.h"
#include "shell/shortcuts_guide.h"
#include "shell/template_library.h"
#include "shell/update_check.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

namespace {

const char updateTitle[] = "检查更新";

} // namespace

void MainWindow::onHelp()
{
    showTool(new HelpWindow(this));
}

void MainWindow::onOpenDocumentation()
{
    onHelp();
}

void MainWindow::onShortcutsGuide()
{
    showTool(new ShortcutsGuide(m_actions->actions(), this));
}

void MainWindow::onTemplateLibrary()
{
    auto *library = new TemplateLibrary(this);
    connect(library, &TemplateLibrary::insertRequested, this, &MainWindow::insertInEditor);
    connect(library, &TemplateLibrary::newFileRequested, this,
            [this](const QString &source) { m_tabs->openUntitled(source)->setFocus(); });
    showTool(library);
}

void MainWindow::onCheckUpdate()
{
    auto *check = new UpdateCheck(updateAddress(), this);
    const QString title = QString::fromUtf8(updateTitle);
    connect(check, &UpdateCheck::upToDate, this, [this, title](const QString &version) {
        MessageDialogs::tell(this, QMessageBox::Information, title,
                             QStringLiteral("当前已是最新版本（%1）。").arg(version));
    });
    connect(check, &UpdateCheck::failed, this,
            [this, title](const QString &message) { MessageDialogs::warn(this, title, message); });
    connect(check, &UpdateCheck::newerFound, this, &MainWindow::showUpdate);
    for (auto ended : {&UpdateCheck::upToDate, &UpdateCheck::failed})
        connect(check, ended, check, &QObject::deleteLater);
    connect(check, &UpdateCheck::newerFound, check, &QObject::deleteLater);
    check->check();
}

void MainWindow::showUpdate(const QString &version, const QUrl &page, const QString &notes)
{
    const QString news = QStringLiteral("有新版本 %1，当前版本是 %2。\n\n%3")
                             .arg(version, QCoreApplication::applicationVersion(), notes)
                             .trimmed();
    QStringList buttons{QStringLiteral("关闭")};
    if (page.isValid())
        buttons.prepend(QStringLiteral("打开下载页面"));
    const int answer = MessageDialogs::choose(this, QMessageBox::Information,
                                              QString::fromUtf8(updateTitle), news, buttons, 0);
    if (page.isValid() && answer == 0)
        QDesktopServices::openUrl(page);
}

void MainWindow::onChangelog()
{
    showTool(new ChangelogDialog(this));
}

// Once for each version; who uses VorelDesk for the first time has other things to look at.
void MainWindow::showNewsOfUpdate()
{
    const QString shown = m_settings.get(Setting::General::changelogWelcomeShown);
    const QString version = QCoreApplication::applicationVersion();
    if (shown == version)
        return;
    m_settings.set(Setting::General::changelogWelcomeShown, version);
    if (!shown.isEmpty())
        onChangelog();
}

void MainWindow::onAbout()
{
    AboutDialog(this).exec();
}
