#include "shell/help_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTextBrowser>
#include <QTextCursor>
#include <QVBoxLayout>

namespace {

const QColor kHitColor(0x6B, 0x4A, 0x1C);

} // namespace

HelpWindow::HelpWindow(QWidget *parent) : QDialog(parent), m_pages(helpPages())
{
    setWindowTitle(QStringLiteral("帮助文档"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto *columns = new QHBoxLayout(this);
    auto *left = new QVBoxLayout;
    columns->addLayout(left);
    m_search = new QLineEdit(this);
    m_search->setPlaceholderText(QStringLiteral("搜索帮助"));
    m_search->setClearButtonEnabled(true);
    m_search->setFixedWidth(200);
    m_contents = new QListWidget(this);
    m_contents->setAccessibleName(QStringLiteral("目录"));
    m_contents->setFixedWidth(200);
    m_nothing = new QLabel(QStringLiteral("没有找到"), this);
    m_nothing->hide();
    for (QWidget *widget : {static_cast<QWidget *>(m_search), static_cast<QWidget *>(m_contents),
                            static_cast<QWidget *>(m_nothing)})
        left->addWidget(widget);
    m_browser = new QTextBrowser(this);
    m_browser->setOpenExternalLinks(true);
    m_browser->document()->setDocumentMargin(14);
    columns->addWidget(m_browser, 1);
    for (const DocumentPage &page : m_pages)
        m_contents->addItem(page.title);
    connect(m_contents, &QListWidget::currentRowChanged, this, &HelpWindow::showPage);
    connect(m_search, &QLineEdit::textChanged, this, &HelpWindow::search);
    connect(m_search, &QLineEdit::returnPressed, this, &HelpWindow::findAgain);
    m_contents->setCurrentRow(0);
    resize(900, 640);
}

void HelpWindow::showPage(int index)
{
    if (index < 0)
        return;
    m_browser->setMarkdown(m_pages.at(index).text);
    markHits();
}

void HelpWindow::search()
{
    const QString wanted = m_search->text().trimmed();
    int first = -1;
    for (int i = 0; i < m_pages.size(); ++i) {
        const bool matches = m_pages.at(i).text.contains(wanted, Qt::CaseInsensitive);
        m_contents->item(i)->setHidden(!matches);
        if (matches && first < 0)
            first = i;
    }
    m_nothing->setVisible(first < 0);
    const QListWidgetItem *current = m_contents->currentItem();
    if (first >= 0 && (!current || current->isHidden()))
        m_contents->setCurrentRow(first);
    else
        markHits();
}

void HelpWindow::findAgain()
{
    const QString wanted = m_search->text().trimmed();
    if (wanted.isEmpty() || m_browser->find(wanted))
        return;
    m_browser->moveCursor(QTextCursor::Start);
    m_browser->find(wanted);
}

void HelpWindow::markHits()
{
    QList<QTextEdit::ExtraSelection> hits;
    const QString wanted = m_search->text().trimmed();
    QTextCursor place(m_browser->document());
    while (!wanted.isEmpty()) {
        place = m_browser->document()->find(wanted, place);
        if (place.isNull())
            break;
        QTextEdit::ExtraSelection hit;
        hit.cursor = place;
        hit.format.setBackground(kHitColor);
        hits.append(hit);
    }
    m_browser->setExtraSelections(hits);
}
