#include "shell/snippet_dialog.h"

#include "shell/snippet_manager.h"

#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

SnippetDialog::SnippetDialog(SnippetManager &manager, QWidget *parent)
    : QDialog(parent), m_manager(manager)
{
    setWindowTitle(QStringLiteral("代码片段管理器"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    build();
    connect(m_list, &QListWidget::currentRowChanged, this, &SnippetDialog::showCurrent);
    const auto &snippets = manager.snippets();
    fill(snippets.isEmpty() ? QString() : snippets.first().name);
    resize(760, 480);
}

void SnippetDialog::build()
{
    auto *columns = new QHBoxLayout(this);
    m_list = new QListWidget(this);
    m_list->setAccessibleName(QStringLiteral("代码片段"));
    m_list->setFixedWidth(180);
    columns->addWidget(m_list);
    auto *form = new QFormLayout;
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    columns->addLayout(form, 1);
    m_name = new QLineEdit(this);
    m_description = new QLineEdit(this);
    m_text = new QPlainTextEdit(this);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_message = new QLabel(this);
    m_message->setStyleSheet(QStringLiteral("color: #f48771;"));
    form->addRow(QStringLiteral("名称："), m_name);
    form->addRow(QStringLiteral("说明："), m_description);
    form->addRow(QStringLiteral("代码："), m_text);
    form->addRow(m_message);

    auto *buttons = new QHBoxLayout;
    form->addRow(buttons);
    const auto addButton = [&](const QString &text, auto run) {
        auto *button = new QPushButton(text, this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, run);
        buttons->addWidget(button);
        return button;
    };
    addButton(QStringLiteral("新建"), [this] { beginNew(); });
    addButton(QStringLiteral("保存"), &SnippetDialog::save);
    m_remove = addButton(QStringLiteral("删除"), &SnippetDialog::removeCurrent);
    buttons->addStretch();
    m_insert = addButton(QStringLiteral("插入到编辑器"),
                         [this] { emit insertRequested(m_text->toPlainText()); });
    addButton(QStringLiteral("关闭"), &QDialog::reject);
}

// Shows the names anew, and the snippet `current`.
void SnippetDialog::fill(const QString &current)
{
    m_list->blockSignals(true);
    m_list->clear();
    for (const Snippet &snippet : m_manager.snippets()) {
        auto *item = new QListWidgetItem(snippet.name, m_list);
        item->setToolTip(Qt::convertFromPlainText(snippet.description));
        if (snippet.name == current)
            m_list->setCurrentItem(item);
    }
    m_list->blockSignals(false);
    showCurrent();
}

void SnippetDialog::showCurrent()
{
    const QListWidgetItem *item = m_list->currentItem();
    const Snippet *snippet = item ? m_manager.find(item->text()) : nullptr;
    const Snippet shown = snippet ? *snippet : Snippet();
    m_shownName = shown.name;
    m_name->setText(shown.name);
    m_description->setText(shown.description);
    m_text->setPlainText(shown.text);
    m_message->clear();
    m_remove->setEnabled(snippet);
}

void SnippetDialog::beginNew(const QString &text)
{
    m_list->setCurrentItem(nullptr);
    showCurrent();
    m_text->setPlainText(text);
    m_name->setFocus();
}

void SnippetDialog::save()
{
    const Snippet snippet{m_name->text(), m_description->text(), m_text->toPlainText()};
    const QString problem = m_manager.put(m_shownName, snippet);
    if (problem.isEmpty())
        fill(snippet.name.trimmed());
    m_message->setText(problem);
}

void SnippetDialog::removeCurrent()
{
    const int row = m_list->currentRow();
    const QString problem = m_manager.remove(m_shownName);
    const auto &snippets = m_manager.snippets();
    fill(snippets.isEmpty() ? QString() : snippets.at(qBound(0, row, snippets.size() - 1)).name);
    m_message->setText(problem);
}
