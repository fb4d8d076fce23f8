#include "shell/find_in_files_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int hitRole = Qt::UserRole; // the index of the hit
constexpr int previewHeight = 260;    // pixels

QLabel *createLine(const char *role)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1String(role));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

FindInFilesDialog::FindInFilesDialog(Files files, QWidget *parent)
    : QDialog(parent),
      m_files(std::move(files)),
      m_text(new QLineEdit),
      m_replacement(new QLineEdit),
      m_matchCase(new QCheckBox(QStringLiteral("区分大小写"))),
      m_wholeWord(new QCheckBox(QStringLiteral("全字匹配"))),
      m_isRegularExpression(new QCheckBox(QStringLiteral("正则表达式"))),
      m_error(createLine("fieldError")),
      m_preview(new QTreeWidget),
      m_status(createLine("hint")),
      m_find(new QPushButton(QStringLiteral("查找全部"))),
      m_showPreview(new QPushButton(QStringLiteral("预览替换"))),
      m_replace(new QPushButton(QStringLiteral("替换选中的"))),
      m_stop(new QPushButton(QStringLiteral("停止")))
{
    setWindowTitle(QStringLiteral("在文件中查找"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    createLayout();
    connectParts();
    clearPreview();
    updateButtons();
    resize(640, sizeHint().height());
}

void FindInFilesDialog::createLayout()
{
    auto *fields = new QGridLayout;
    fields->setHorizontalSpacing(12);
    fields->setVerticalSpacing(8);
    const auto addRow = [fields](const QString &title, QLineEdit *field) {
        auto *label = new QLabel(title + QLatin1Char(':'));
        label->setBuddy(field);
        field->setAccessibleName(title);
        field->setClearButtonEnabled(true);
        const int row = fields->rowCount();
        fields->addWidget(label, row, 0, Qt::AlignRight);
        fields->addWidget(field, row, 1);
    };
    addRow(QStringLiteral("查找内容"), m_text);
    addRow(QStringLiteral("替换为"), m_replacement);
    fields->addWidget(createOptions(), fields->rowCount(), 1);
    m_preview->setAccessibleName(QStringLiteral("替换预览"));
    m_preview->setHeaderLabels({QStringLiteral("原来"), QStringLiteral("替换后")});
    m_preview->setUniformRowHeights(true);
    m_preview->setMinimumHeight(previewHeight);
    m_preview->header()->setSectionResizeMode(QHeaderView::Stretch);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(10);
    layout->addLayout(fields);
    layout->addWidget(m_error);
    layout->addWidget(m_preview, 1);
    layout->addWidget(m_status);
    layout->addWidget(createButtons());
}

QWidget *FindInFilesDialog::createOptions()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(18);
    m_wholeWord->setToolTip(QStringLiteral("前后紧接着汉字、字母、数字或下划线的不算"));
    m_isRegularExpression->setToolTip(
        QStringLiteral("按模式查找；“替换为”中的 \\1 表示第一个括号里的内容"));
    for (QCheckBox *option : {m_matchCase, m_wholeWord, m_isRegularExpression})
        layout->addWidget(option);
    layout->addStretch();
    return row;
}

QWidget *FindInFilesDialog::createButtons()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto *close = new QPushButton(QStringLiteral("关闭"));
    m_find->setDefault(true);
    layout->addWidget(m_stop);
    layout->addStretch();
    for (QPushButton *button : {m_find, m_showPreview, m_replace, close})
        layout->addWidget(button);
    for (QPushButton *button : {m_showPreview, m_replace, m_stop, close})
        button->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    return row;
}

void FindInFilesDialog::connectParts()
{
    connect(m_find, &QPushButton::clicked, this, [this] { search(Mode::List); });
    connect(m_showPreview, &QPushButton::clicked, this, [this] { search(Mode::Preview); });
    connect(m_replace, &QPushButton::clicked, this, &FindInFilesDialog::requestReplacement);
    connect(m_stop, &QPushButton::clicked, &m_search, &FileSearch::cancel);
    connect(&m_search, &FileSearch::hitsFound, this, &FindInFilesDialog::takeHits);
    connect(&m_search, &FileSearch::finished, this, &FindInFilesDialog::finish);
    // One click on a file changes all its rows.
    m_recount.setSingleShot(true);
    connect(m_preview, &QTreeWidget::itemChanged, &m_recount, qOverload<>(&QTimer::start));
    connect(&m_recount, &QTimer::timeout, this, &FindInFilesDialog::updateButtons);
    // A preview of something else would mislead.
    for (QLineEdit *field : {m_text, m_replacement})
        connect(field, &QLineEdit::textChanged, this, &FindInFilesDialog::clearPreview);
    for (QCheckBox *option : {m_matchCase, m_wholeWord, m_isRegularExpression})
        connect(option, &QCheckBox::toggled, this, &FindInFilesDialog::clearPreview);
}

void FindInFilesDialog::setSearchText(const QString &text)
{
    const bool isOneLine = !text.contains(QLatin1Char('\n')) && !text.contains(QChar(0x2029));
    if (!text.isEmpty() && isOneLine)
        m_text->setText(text);
    m_text->setFocus();
    m_text->selectAll();
}

void FindInFilesDialog::showStatus(const QString &text)
{
    m_status->setText(text);
}

SearchQuery FindInFilesDialog::query() const
{
    const SearchOptions options{m_matchCase->isChecked(), m_wholeWord->isChecked(),
                                m_isRegularExpression->isChecked()};
    return {m_text->text(), options, m_replacement->text()};
}

void FindInFilesDialog::search(Mode mode)
{
    clearPreview();
    m_mode = mode;
    const QString error = m_search.start(m_files(), query());
    m_error->setText(error);
    m_error->setVisible(!error.isEmpty());
    showStatus(error.isEmpty() ? QStringLiteral("正在查找...") : QString());
    if (error.isEmpty() && mode == Mode::List)
        emit searchStarted();
    updateButtons();
}

void FindInFilesDialog::takeHits(const QList<FileHit> &hits)
{
    m_preview->setVisible(m_mode == Mode::Preview);
    for (const FileHit &hit : hits) {
        if (m_mode == Mode::List)
            emit resultFound(hit.name, hit.line, hit.lineText);
        else
            addToPreview(hit);
    }
}

void FindInFilesDialog::addToPreview(const FileHit &hit)
{
    const QSignalBlocker blocker(m_preview);
    const int last = m_preview->topLevelItemCount() - 1;
    QTreeWidgetItem *file = m_preview->topLevelItem(last);
    if (!file || m_hits.last().path != hit.path) {
        file = new QTreeWidgetItem(m_preview, {hit.name});
        file->setFlags(file->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsAutoTristate);
        file->setFirstColumnSpanned(true);
        file->setExpanded(true);
    }
    QString replaced = hit.lineText;
    replaced.replace(hit.column - 1, hit.match.size(), hit.replacement);
    const QString place = QStringLiteral("%1: ").arg(hit.line);
    auto *row = new QTreeWidgetItem(file, {place + hit.lineText.trimmed(), replaced.trimmed()});
    for (int column : {0, 1})
        row->setToolTip(column, Qt::convertFromPlainText(row->text(column)));
    row->setData(0, hitRole, m_hits.size());
    row->setCheckState(0, Qt::Checked);
    m_hits << hit;
}

void FindInFilesDialog::finish(const SearchSummary &summary)
{
    showStatus(summary.text());
    updateButtons();
    emit searchFinished(summary.text());
}

void FindInFilesDialog::clearPreview()
{
    if (m_search.isRunning() && m_mode == Mode::Preview) {
        m_search.abandon();
        showStatus(QString());
    }
    m_preview->clear();
    m_preview->hide();
    m_hits.clear();
    m_error->hide();
    updateButtons();
}

QList<FileHit> FindInFilesDialog::checkedHits() const
{
    QList<FileHit> hits;
    for (int file = 0; file < m_preview->topLevelItemCount(); ++file) {
        const QTreeWidgetItem *rows = m_preview->topLevelItem(file);
        for (int row = 0; row < rows->childCount(); ++row) {
            if (rows->child(row)->checkState(0) == Qt::Checked)
                hits << m_hits.at(rows->child(row)->data(0, hitRole).toInt());
        }
    }
    return hits;
}

void FindInFilesDialog::requestReplacement()
{
    const QList<FileEdits> edits = editsOf(checkedHits());
    clearPreview();
    emit replaceRequested(edits);
}

void FindInFilesDialog::updateButtons()
{
    const bool isRunning = m_search.isRunning();
    m_stop->setVisible(isRunning);
    m_find->setEnabled(!m_text->text().isEmpty());
    m_showPreview->setEnabled(!m_text->text().isEmpty());
    const int checked = isRunning ? 0 : checkedHits().size();
    m_replace->setVisible(!m_hits.isEmpty());
    m_replace->setEnabled(checked > 0);
    m_replace->setText(QStringLiteral("替换选中的 %1 处").arg(checked));
}
