#include "shell/new_project_dialog.h"

#include "settings/settings_store.h"
#include "shell/new_project_choices.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int kindIconSize = 48; // pixels

// A line that keeps its place while it is empty, so that the dialog does not jump.
QLabel *createLine(const char *role)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1String(role));
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

// Errors have more to say than fits in a narrow window.
void showLine(QLabel *label, const QString &text)
{
    label->setText(text);
    label->setToolTip(text);
}

QVBoxLayout *withLine(QWidget *field, QLabel *line)
{
    auto *layout = new QVBoxLayout;
    layout->setSpacing(3);
    layout->addWidget(field);
    layout->addWidget(line);
    return layout;
}

} // namespace

NewProjectDialog::NewProjectDialog(SettingsStore &settings, QWidget *parent)
    : QDialog(parent),
      m_settings(settings),
      m_kinds(new QButtonGroup(this)),
      m_kindTip(createLine("hint")),
      m_name(new QLineEdit),
      m_nameError(createLine("fieldError")),
      m_folder(new QLineEdit),
      m_folderError(createLine("fieldError")),
      m_makeDefault(new QCheckBox(QStringLiteral("设为默认路径"))),
      m_windowType(new QComboBox),
      m_platform(new QComboBox),
      m_target(createLine("hint")),
      m_create(new QPushButton(QStringLiteral("创建")))
{
    setWindowTitle(QStringLiteral("新建项目"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(12);
    layout->addWidget(createKinds());
    layout->addWidget(m_kindTip);
    layout->addLayout(createForm());
    layout->addStretch();
    layout->addWidget(createButtons());
    const QString folder = settings.get(Setting::Project::defaultPath);
    m_folder->setText(QDir::toNativeSeparators(folder));
    m_name->setText(NewProjectRules::freeName(folder));
    m_platform->setCurrentText(settings.get(Setting::Compiler::defaultArch));
    connect(m_kinds, &QButtonGroup::idToggled, this, &NewProjectDialog::update);
    connect(m_name, &QLineEdit::textChanged, this, &NewProjectDialog::update);
    connect(m_folder, &QLineEdit::textChanged, this, &NewProjectDialog::update);
    update();
    m_name->setFocus();
    m_name->selectAll();
    resize(620, sizeHint().height());
}

QWidget *NewProjectDialog::createKinds()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    for (const ProjectKindChoice &choice : projectKindChoices()) {
        auto *button = new QToolButton;
        button->setObjectName(QStringLiteral("kindCard"));
        button->setText(choice.label);
        button->setToolTip(choice.tip);
        button->setAccessibleDescription(choice.tip);
        button->setIcon(QIcon(choice.icon));
        button->setIconSize({kindIconSize, kindIconSize});
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setCheckable(true);
        button->setChecked(choice.kind == ProjectKind::Gui);
        m_kinds->addButton(button, static_cast<int>(choice.kind));
        layout->addWidget(button);
    }
    return row;
}

QGridLayout *NewProjectDialog::createForm()
{
    fillWindowTypes();
    m_platform->addItems({QStringLiteral("x64"), QStringLiteral("x86")});
    auto *form = new QGridLayout;
    form->setHorizontalSpacing(14);
    form->setVerticalSpacing(6);
    const auto addRow = [form](const QString &title, QWidget *field, QLayout *content) {
        auto *label = new QLabel(title);
        label->setBuddy(field);
        label->setFixedHeight(field->sizeHint().height());
        field->setAccessibleName(title.chopped(1));
        const int row = form->rowCount();
        form->addWidget(label, row, 0, Qt::AlignRight | Qt::AlignTop);
        if (content)
            form->addLayout(content, row, 1);
        else
            form->addWidget(field, row, 1);
    };
    addRow(QStringLiteral("项目名称:"), m_name, withLine(m_name, m_nameError));
    addRow(QStringLiteral("位置:"), m_folder, withLine(createFolderRow(), m_folderError));
    addRow(QStringLiteral("界面类型:"), m_windowType, nullptr);
    addRow(QStringLiteral("平台:"), m_platform, nullptr);
    form->addWidget(m_target, form->rowCount(), 1);
    return form;
}

QWidget *NewProjectDialog::createFolderRow()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto *browse = new QPushButton(QStringLiteral("浏览..."));
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, &NewProjectDialog::browse);
    m_makeDefault->setToolTip(QStringLiteral("以后新建项目时先用这个位置"));
    layout->addWidget(m_folder, 1);
    layout->addWidget(browse);
    layout->addWidget(m_makeDefault);
    return row;
}

QWidget *NewProjectDialog::createButtons()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 8, 0, 0);
    layout->setSpacing(10);
    auto *cancel = new QPushButton(QStringLiteral("取消"));
    cancel->setAutoDefault(false);
    m_create->setDefault(true);
    for (QPushButton *button : {m_create, cancel})
        button->setMinimumWidth(96);
    layout->addStretch();
    layout->addWidget(m_create);
    layout->addWidget(cancel);
    connect(m_create, &QPushButton::clicked, this, &NewProjectDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &NewProjectDialog::reject);
    return row;
}

void NewProjectDialog::fillWindowTypes()
{
    auto *model = new QStandardItemModel(m_windowType);
    for (const WindowTypeChoice &choice : windowTypeChoices()) {
        auto *item = new QStandardItem(choice.label);
        item->setData(choice.uiBackend, Qt::UserRole);
        item->setToolTip(choice.tip);
        if (!choice.canBuild) {
            item->setEnabled(false);
            item->setText(choice.label + QStringLiteral("（暂不支持）"));
            item->setToolTip(choice.tip + QStringLiteral("\n这个版本还不能编译这种窗口。"));
        }
        model->appendRow(item);
    }
    m_windowType->setModel(model);
}

void NewProjectDialog::browse()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, QStringLiteral("选择项目的位置"), m_folder->text());
    if (!folder.isEmpty())
        m_folder->setText(QDir::toNativeSeparators(folder));
}

void NewProjectDialog::update()
{
    const NewProject wanted = project();
    const bool isSingle = wanted.kind == ProjectKind::Single;
    showLine(m_kindTip, m_kinds->checkedButton()->toolTip());
    const QString nameError = NewProjectRules::nameError(wanted);
    const QString folderError = NewProjectRules::folderError(wanted);
    showLine(m_nameError, nameError);
    showLine(m_folderError, folderError);
    const bool canCreate = nameError.isEmpty() && folderError.isEmpty();
    m_create->setEnabled(canCreate);
    const QString target = QDir::toNativeSeparators(NewProjectRules::target(wanted));
    showLine(m_target, canCreate ? QStringLiteral("将创建：") + target : QString());
    m_windowType->setEnabled(wanted.kind == ProjectKind::Gui);
    m_platform->setEnabled(!isSingle);
}

NewProject NewProjectDialog::project() const
{
    NewProject project;
    project.kind = static_cast<ProjectKind>(m_kinds->checkedId());
    project.name = m_name->text().trimmed();
    project.folder = QDir::fromNativeSeparators(m_folder->text().trimmed());
    if (project.kind == ProjectKind::Gui)
        project.windowType = m_windowType->currentData().toString();
    project.platform = m_platform->currentText();
    return project;
}

void NewProjectDialog::accept()
{
    update(); // the disk may have changed
    if (!m_create->isEnabled())
        return;
    if (m_makeDefault->isChecked())
        m_settings.set(Setting::Project::defaultPath, project().folder);
    QDialog::accept();
}
