#include "shell/template_library.h"

#include "editor/code_editor.h"
#include "editor/syntax_highlighter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

QVector<ProgramTemplate> programTemplates()
{
    QVector<ProgramTemplate> templates;
    const QDir folder(QStringLiteral(":/shell/templates"));
    for (const QString &name :
         folder.entryList({QStringLiteral("*.vc")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString source = QString::fromUtf8(file.readAll());
        // "03_条件.vc" begins with "// 条件：如果、否则…".
        const QString comment = source.section(QLatin1Char('\n'), 0, 0);
        templates.append({QFileInfo(name).completeBaseName().section(QLatin1Char('_'), 1),
                          comment.section(QStringLiteral("："), 1), source});
    }
    return templates;
}

TemplateLibrary::TemplateLibrary(QWidget *parent) : QDialog(parent), m_templates(programTemplates())
{
    setWindowTitle(QStringLiteral("模板库"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *columns = new QHBoxLayout(this);
    m_list = new QListWidget(this);
    m_list->setAccessibleName(QStringLiteral("模板"));
    m_list->setFixedWidth(180);
    for (const ProgramTemplate &program : m_templates) {
        auto *item = new QListWidgetItem(program.name, m_list);
        item->setToolTip(program.description);
    }
    columns->addWidget(m_list);
    auto *right = new QVBoxLayout;
    columns->addLayout(right, 1);
    m_preview = new CodeEditor(this);
    m_preview->setReadOnly(true);
    new SyntaxHighlighter(m_preview->document());
    right->addWidget(m_preview);
    auto *buttons = new QHBoxLayout;
    right->addLayout(buttons);
    buttons->addStretch();
    const auto addButton = [&](const QString &text, auto run) {
        auto *button = new QPushButton(text, this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, run);
        buttons->addWidget(button);
    };
    addButton(QStringLiteral("插入"), [this] { emit insertRequested(current()); });
    addButton(QStringLiteral("新建文件"), [this] { emit newFileRequested(current()); });
    addButton(QStringLiteral("关闭"), &QDialog::reject);
    connect(m_list, &QListWidget::currentRowChanged, this, &TemplateLibrary::showCurrent);
    m_list->setCurrentRow(0);
    resize(840, 560);
}

QString TemplateLibrary::current() const
{
    const int row = m_list->currentRow();
    return row < 0 ? QString() : m_templates.at(row).source;
}

void TemplateLibrary::showCurrent()
{
    m_preview->setPlainText(current());
}
