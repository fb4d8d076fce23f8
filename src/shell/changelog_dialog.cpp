#include "shell/changelog_dialog.h"

#include "shell/document_pages.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

ChangelogDialog::ChangelogDialog(QWidget *parent) : QDialog(parent)
{
    const DocumentPage page = changelogPage();
    setWindowTitle(page.title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *rows = new QVBoxLayout(this);
    auto *browser = new QTextBrowser(this);
    browser->setOpenExternalLinks(true);
    browser->document()->setDocumentMargin(14);
    browser->setMarkdown(page.text);
    rows->addWidget(browser);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(QStringLiteral("关闭"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    rows->addWidget(buttons);
    resize(620, 520);
}
