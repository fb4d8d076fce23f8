#include "shell/text_tool_dialog.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

TextToolDialog::TextToolDialog(const QString &title, const QVector<TextOperation> &operations,
                               QWidget *parent)
    : QDialog(parent), m_operations(operations)
{
    setWindowTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    build();
    fillOperations();
    connect(m_list, &QListWidget::currentRowChanged, this, &TextToolDialog::update);
    connect(m_input, &QPlainTextEdit::textChanged, this, &TextToolDialog::update);
    update();
    resize(820, 560);
    m_input->setFocus();
}

void TextToolDialog::build()
{
    auto *columns = new QHBoxLayout(this);
    m_list = new QListWidget(this);
    m_list->setAccessibleName(QStringLiteral("操作"));
    m_list->setFixedWidth(170);
    columns->addWidget(m_list);
    columns->addWidget(buildTexts(), 1);
}

QWidget *TextToolDialog::buildTexts()
{
    auto *side = new QWidget(this);
    auto *rows = new QVBoxLayout(side);
    rows->setContentsMargins(0, 0, 0, 0);
    const auto addText = [&](const QString &title) {
        auto *label = new QLabel(title, side);
        auto *text = new QPlainTextEdit(side);
        text->setAccessibleName(title);
        text->setTabChangesFocus(true);
        label->setBuddy(text);
        rows->addWidget(label);
        rows->addWidget(text, 1);
        return text;
    };
    m_input = addText(QStringLiteral("原文"));
    m_output = addText(QStringLiteral("结果"));
    m_output->setReadOnly(true);
    m_status = new QLabel(side);
    m_status->setWordWrap(true);
    m_status->setStyleSheet(QStringLiteral("color: #f48771;"));
    rows->addWidget(m_status);

    auto *buttons = new QHBoxLayout;
    rows->addLayout(buttons);
    buttons->addStretch();
    const auto addButton = [&](const QString &text, auto run) {
        auto *button = new QPushButton(text, side);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, run);
        buttons->addWidget(button);
        return button;
    };
    m_resultButtons = {
        addButton(QStringLiteral("结果作为原文"), &TextToolDialog::useResultAsInput),
        addButton(QStringLiteral("复制结果"),
                  [this] { QGuiApplication::clipboard()->setText(m_output->toPlainText()); }),
        addButton(QStringLiteral("插入到编辑器"),
                  [this] { emit insertRequested(m_output->toPlainText()); })};
    addButton(QStringLiteral("关闭"), &QDialog::reject);
    return side;
}

// The rows of the list that carry an operation hold its index.
void TextToolDialog::fillOperations()
{
    QString group;
    for (int i = 0; i < m_operations.size(); ++i) {
        const QString operationGroup = QString::fromUtf8(m_operations.at(i).group);
        if (operationGroup != group) {
            group = operationGroup;
            auto *header = new QListWidgetItem(group, m_list);
            header->setFlags(Qt::NoItemFlags);
        }
        auto *item = new QListWidgetItem(
            QStringLiteral("  ") + QString::fromUtf8(m_operations.at(i).name), m_list);
        item->setData(Qt::UserRole, i);
        if (i == 0)
            m_list->setCurrentItem(item);
    }
}

void TextToolDialog::setInput(const QString &text)
{
    m_input->setPlainText(text);
}

void TextToolDialog::useResultAsInput()
{
    m_input->setPlainText(m_output->toPlainText());
}

void TextToolDialog::update()
{
    TextResult result;
    const QString input = m_input->toPlainText();
    const QListWidgetItem *item = m_list->currentItem();
    if (!input.isEmpty() && item && item->data(Qt::UserRole).isValid())
        result = m_operations.at(item->data(Qt::UserRole).toInt()).run(input);
    m_output->setPlainText(result.text);
    m_status->setText(result.error);
    for (QPushButton *button : m_resultButtons)
        button->setEnabled(!result.text.isEmpty());
}
