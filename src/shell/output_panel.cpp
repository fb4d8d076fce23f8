#include "shell/output_panel.h"

#include "shell/command_help_browser.h"
#include "shell/error_list_widget.h"
#include "shell/issue_filter_bar.h"
#include "shell/output_text_edit.h"
#include "shell/search_results_widget.h"
#include "shell/tool_bars.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const QColor inputColor(0x4f, 0xc3, 0xf7);

bool liesInCodeEditor(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (qobject_cast<const QPlainTextEdit *>(widget) && widget->property("codeEditor").toBool())
            return true;
    }
    return false;
}

QVBoxLayout *pageLayout(QWidget *page)
{
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

} // namespace

OutputPanel::OutputPanel(QWidget *parent)
    : QTabWidget(parent),
      m_compileOutput(new OutputTextEdit),
      m_runOutput(new OutputTextEdit),
      m_input(new QLineEdit),
      m_errors(new ErrorListWidget),
      m_searchResults(new SearchResultsWidget),
      m_help(new CommandHelpBrowser)
{
    setDocumentMode(true);
    setAccessibleName(QStringLiteral("输出面板"));
    m_compileOutput->setAccessibleName(QStringLiteral("编译输出"));
    m_runOutput->setAccessibleName(QStringLiteral("运行输出"));
    addTab(m_compileOutput, QStringLiteral("编译"));
    addTab(createRunPage(), QStringLiteral("运行"));
    addTab(createErrorPage(), QStringLiteral("错误"));
    addTab(m_searchResults, QStringLiteral("搜索结果"));
    addTab(m_help, QStringLiteral("命令提示"));
    createToolBar();
    connectViews();
    setInputEnabled(false);
}

QWidget *OutputPanel::createRunPage()
{
    auto *page = new QWidget;
    QVBoxLayout *layout = pageLayout(page);
    m_input->setAccessibleName(QStringLiteral("程序输入"));
    layout->addWidget(m_runOutput);
    auto *inputRow = new QVBoxLayout;
    inputRow->setContentsMargins(4, 2, 4, 4);
    inputRow->addWidget(m_input);
    layout->addLayout(inputRow);
    return page;
}

QWidget *OutputPanel::createErrorPage()
{
    auto *page = new QWidget;
    QVBoxLayout *layout = pageLayout(page);
    auto *filter = new IssueFilterBar;
    layout->addWidget(filter);
    layout->addWidget(m_errors);
    connect(filter, &IssueFilterBar::kindToggled, m_errors, &ErrorListWidget::setKindShown);
    connect(m_errors, &ErrorListWidget::countsChanged, filter, &IssueFilterBar::setCounts);
    return page;
}

void OutputPanel::createToolBar()
{
    auto *bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    nameExtension(*bar);
    QAction *wrap = bar->addAction(QStringLiteral("自动换行"));
    wrap->setCheckable(true);
    wrap->setToolTip(QStringLiteral("太长的行折到下一行"));
    connect(wrap, &QAction::toggled, this, &OutputPanel::onWordWrapToggled);
    QAction *clear = bar->addAction(QStringLiteral("清除"), this, &OutputPanel::onClearClicked);
    clear->setToolTip(QStringLiteral("清除当前页的内容"));
    QAction *copy = bar->addAction(QStringLiteral("复制"), this, &OutputPanel::onCopyClicked);
    copy->setToolTip(QStringLiteral("复制选中的内容；没有选中时复制整页"));
    // The buttons of a tool bar are left out of the Tab order otherwise.
    for (QToolButton *button : bar->findChildren<QToolButton *>())
        button->setFocusPolicy(Qt::TabFocus);
    setCornerWidget(bar);
}

void OutputPanel::connectViews()
{
    for (OutputTextEdit *output : {m_compileOutput, m_runOutput})
        connect(output, &OutputTextEdit::lineDoubleClicked, this, &OutputPanel::outputLineClicked);
    connect(m_errors, &ErrorListWidget::itemLocationClicked, this, &OutputPanel::errorItemClicked);
    connect(m_errors, &ErrorListWidget::countsChanged, this, &OutputPanel::issueCountsChanged);
    connect(m_searchResults, &SearchResultsWidget::resultActivated, this,
            &OutputPanel::searchResultClicked);
    connect(m_input, &QLineEdit::returnPressed, this, &OutputPanel::sendInput);
}

void OutputPanel::appendCompileOutput(const QString &text, const QColor &color)
{
    m_compileOutput->appendText(text, color);
}

void OutputPanel::appendRunOutput(const QString &text, const QColor &color)
{
    m_runOutput->appendText(text, color);
}

void OutputPanel::addError(const QString &message, const QString &file, int line, int column)
{
    addIssue({IssueKind::Error, message, file, line, column});
}

void OutputPanel::addWarning(const QString &message, const QString &file, int line, int column)
{
    addIssue({IssueKind::Warning, message, file, line, column});
}

void OutputPanel::addInfo(const QString &message, const QString &file, int line, int column)
{
    m_errors->addIssue({IssueKind::Info, message, file, line, column});
}

void OutputPanel::addIssue(const Issue &issue)
{
    const QPointer<QWidget> focused = QApplication::focusWidget();
    const bool typing = liesInCodeEditor(focused);
    m_errors->addIssue(issue);
    showTab(ErrorTab);
    if (!typing)
        return;
    QTimer::singleShot(0, this, [this, focused] {
        // The user may have gone elsewhere meanwhile.
        const QWidget *now = QApplication::focusWidget();
        if (focused && (!now || isAncestorOf(now)))
            focused->setFocus();
    });
}

void OutputPanel::removeIssues(const QString &file, const QString &prefix)
{
    m_errors->removeIssues(file, prefix);
}

void OutputPanel::showFindings(const QMap<QString, QVector<Issue>> &findingsByFile)
{
    if (findingsByFile == m_findings)
        return;
    for (const QString &file : m_findings.keys() + findingsByFile.keys())
        m_errors->removeIssues(file, QString());
    for (const QVector<Issue> &findings : findingsByFile) {
        for (const Issue &finding : findings)
            m_errors->addIssue(finding);
    }
    m_findings = findingsByFile;
}

void OutputPanel::clearIssues()
{
    m_findings.clear();
    m_errors->clearIssues();
}

void OutputPanel::addSearchResult(const QString &file, int line, const QString &text)
{
    m_searchResults->addResult(file, line, text);
}

void OutputPanel::clearSearchResults()
{
    m_searchResults->clear();
}

void OutputPanel::showCommandHelp(const QString &name)
{
    if (m_help->showCommand(name))
        showTab(HelpTab);
}

void OutputPanel::clearOutput()
{
    m_compileOutput->clearOutput();
    m_runOutput->clearOutput();
}

void OutputPanel::setOutputFont(const QFont &font)
{
    m_compileOutput->setFont(font);
    m_runOutput->setFont(font);
    m_input->setFont(font);
}

void OutputPanel::setInputEnabled(bool enabled)
{
    m_input->setEnabled(enabled);
    m_input->setPlaceholderText(enabled ? QStringLiteral("在这里输入，按回车键交给程序")
                                        : QStringLiteral("程序运行时可以在这里输入"));
}

void OutputPanel::sendInput()
{
    const QString text = m_input->text();
    m_input->clear();
    // As on a console, what was entered stands among what the program prints.
    m_runOutput->appendText(text, inputColor);
    emit inputEntered(text);
}

void OutputPanel::onClearClicked()
{
    switch (currentIndex()) {
    case CompileTab:
        m_compileOutput->clearOutput();
        break;
    case RunTab:
        m_runOutput->clearOutput();
        break;
    case ErrorTab:
        clearIssues();
        break;
    case SearchTab:
        clearSearchResults();
        break;
    case HelpTab:
        m_help->showWelcome();
        break;
    }
}

void OutputPanel::onCopyClicked()
{
    switch (currentIndex()) {
    case CompileTab:
        m_compileOutput->copySelectedOrAll();
        break;
    case RunTab:
        m_runOutput->copySelectedOrAll();
        break;
    case ErrorTab:
        m_errors->copySelectedOrAll();
        break;
    case SearchTab:
        m_searchResults->copySelectedOrAll();
        break;
    case HelpTab:
        m_help->copySelectedOrAll();
        break;
    }
}

void OutputPanel::onWordWrapToggled(bool wrap)
{
    const auto mode = wrap ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap;
    m_compileOutput->setLineWrapMode(mode);
    m_runOutput->setLineWrapMode(mode);
}
