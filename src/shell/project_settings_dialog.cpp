#include "shell/project_settings_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

constexpr int fieldWidth = 320; // logical pixels

QStringList windowFiles(const VL::ProjectInfo &project)
{
    QStringList files = project.windowFiles + project.uiFiles;
    files.removeDuplicates();
    return files;
}

} // namespace

ProjectSettingsDialog::ProjectSettingsDialog(const VL::ProjectInfo &project, QWidget *parent)
    : QDialog(parent), m_project(project)
{
    setWindowTitle(QStringLiteral("项目设置 - %1").arg(project.name));
    auto *form = new QFormLayout(this);
    form->setContentsMargins(20, 18, 20, 16);
    form->setSpacing(10);
    auto *folder = new QLabel(QDir::toNativeSeparators(project.path));
    folder->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    form->addRow(QStringLiteral("位置:"), folder);
    m_version = addLine(QStringLiteral("版本(&V):"), project.version);
    m_author = addLine(QStringLiteral("作者(&A):"), project.author);
    m_description = new QPlainTextEdit(project.description);
    m_description->setTabChangesFocus(true);
    m_description->setFixedHeight(m_description->fontMetrics().height() * 4);
    form->addRow(QStringLiteral("说明(&D):"), m_description);
    m_platform = addChoice(QStringLiteral("平台(&P):"),
                           {QStringLiteral("x64"), QStringLiteral("x86")}, project.targetPlatform);
    m_compiler = addChoice(QStringLiteral("编译器(&C):"),
                           {QStringLiteral("MSVC"), QStringLiteral("MinGW")}, project.compiler);
    const QStringList windows = windowFiles(project);
    m_mainWindow = addChoice(QStringLiteral("主窗口(&M):"), windows, project.mainWindowFile);
    m_startupWindow = addChoice(QStringLiteral("启动窗口(&S):"), windows,
                                project.startupWindowFile.isEmpty() ? project.mainWindowFile
                                                                    : project.startupWindowFile);
    for (QComboBox *box : {m_mainWindow, m_startupWindow}) {
        box->setEnabled(!windows.isEmpty());
        if (windows.isEmpty())
            box->setToolTip(QStringLiteral("项目中还没有窗口。"));
    }
    auto *buttons = new QDialogButtonBox;
    buttons->addButton(QStringLiteral("确定"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QStringLiteral("取消"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

QLineEdit *ProjectSettingsDialog::addLine(const QString &label, const QString &text)
{
    auto *line = new QLineEdit(text);
    line->setMinimumWidth(fieldWidth);
    static_cast<QFormLayout *>(layout())->addRow(label, line);
    return line;
}

QComboBox *ProjectSettingsDialog::addChoice(const QString &label, const QStringList &words,
                                            const QString &current)
{
    auto *box = new QComboBox;
    box->addItems(words);
    // A word that this version does not know stays as it is.
    if (!current.isEmpty() && !words.contains(current))
        box->addItem(current);
    box->setCurrentIndex(box->findText(current));
    static_cast<QFormLayout *>(layout())->addRow(label, box);
    return box;
}

VL::ProjectInfo ProjectSettingsDialog::project() const
{
    VL::ProjectInfo project = m_project;
    project.version = m_version->text();
    project.author = m_author->text();
    project.description = m_description->toPlainText();
    project.targetPlatform = m_platform->currentText();
    project.compiler = m_compiler->currentText();
    project.mainWindowFile = m_mainWindow->currentText();
    const QString start = m_startupWindow->currentText();
    // Without a choice of its own the start follows the main window.
    const bool follows = m_project.startupWindowFile.isEmpty() && start == m_project.mainWindowFile;
    project.startupWindowFile = follows ? QString() : start;
    return project;
}
