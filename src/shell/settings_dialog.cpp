#include "shell/settings_dialog.h"

#include "settings/settings_store.h"
#include "shell/color_settings_page.h"
#include "shell/settings_pages.h"
#include "shell/stored_fonts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

SettingsDialog::Told::Told(const SettingsStore &store)
    : theme(store.get(Setting::Editor::colorScheme)),
      font(StoredFonts::editor(store)),
      outputFont(StoredFonts::compilerOutput(store)),
      colors(SyntaxColors::stored(store))
{}

SettingsDialog::SettingsDialog(SettingsStore &store, QWidget *parent)
    : QDialog(parent),
      m_store(store),
      m_names(new QListWidget(this)),
      m_pages(new QStackedWidget(this)),
      m_error(new QLabel(this)),
      m_editorPage(new SettingsForm(SettingsPages::editorRows(), this))
{
    setWindowTitle(QStringLiteral("设置"));
    resize(960, 700);
    m_names->setObjectName(QStringLiteral("settingsPages"));
    m_names->setFixedWidth(140);
    m_error->setObjectName(QStringLiteral("settingsError"));
    m_error->setWordWrap(true);
    m_error->hide();

    auto *middle = new QHBoxLayout;
    middle->setSpacing(12);
    middle->addWidget(m_names);
    middle->addWidget(m_pages, 1);
    auto *column = new QVBoxLayout(this);
    column->addLayout(middle, 1);
    column->addWidget(m_error);
    column->addLayout(makeButtons());

    addPage(QStringLiteral("编辑器"), m_editorPage);
    addPage(QStringLiteral("配色"), new ColorSettingsPage(this));
    addPage(QStringLiteral("编译"), new SettingsForm(SettingsPages::compilerRows(), this));
    addPage(QStringLiteral("常规"), new SettingsForm(SettingsPages::generalRows(), this));
    connect(m_names, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
    connect(m_editorPage, &SettingsPage::edited, this, &SettingsDialog::previewBackground);
    loadPages();
    showPage(Page::Editor);
}

void SettingsDialog::addPage(const QString &name, SettingsPage *page)
{
    m_names->addItem(name);
    m_pages->addWidget(page);
    m_pageList << page;
    connect(page, &SettingsPage::edited, this, &SettingsDialog::noteEdited);
}

QLayout *SettingsDialog::makeButtons()
{
    auto *row = new QHBoxLayout;
    row->addStretch();
    const auto add = [&](const QString &text, auto slot) {
        auto *button = new QPushButton(text, this);
        connect(button, &QPushButton::clicked, this, slot);
        row->addWidget(button);
        return button;
    };
    add(QStringLiteral("确定"), &SettingsDialog::accept)->setDefault(true);
    add(QStringLiteral("取消"), &SettingsDialog::reject);
    m_apply = add(QStringLiteral("应用"), &SettingsDialog::apply);
    return row;
}

void SettingsDialog::showPage(Page page)
{
    m_names->setCurrentRow(int(page));
}

void SettingsDialog::loadPages()
{
    for (SettingsPage *page : qAsConst(m_pageList))
        page->load(m_store);
    m_apply->setEnabled(false);
    m_hasPreview = false;
}

void SettingsDialog::noteEdited()
{
    m_apply->setEnabled(true);
    m_error->hide();
}

void SettingsDialog::previewBackground()
{
    m_hasPreview = true;
    emit editorBackgroundLivePreview(m_editorPage->value(Setting::Editor::backgroundImage),
                                     m_editorPage->value(Setting::Editor::backgroundOpacity));
}

// True if there is one.
bool SettingsDialog::showFirstError()
{
    for (int i = 0; i < m_pageList.size(); ++i) {
        const QString error = m_pageList.at(i)->error();
        if (error.isEmpty())
            continue;
        showPage(Page(i));
        m_error->setText(error);
        m_error->show();
        return true;
    }
    return false;
}

bool SettingsDialog::apply()
{
    if (showFirstError())
        return false;
    const Told before(m_store);
    for (const SettingsPage *page : qAsConst(m_pageList))
        page->save(m_store);
    QString error;
    const bool isSaved = m_store.save(&error);
    // They hold for this run at least.
    tell(before);
    loadPages();
    m_error->setText(error);
    m_error->setVisible(!isSaved);
    m_apply->setEnabled(!isSaved);
    return isSaved;
}

void SettingsDialog::tell(const Told &before)
{
    emit settingsChanged();
    const Told now(m_store);
    if (now.theme != before.theme)
        emit themeChanged(now.theme);
    if (now.font != before.font)
        emit fontChanged(now.font);
    if (now.outputFont != before.outputFont)
        emit compilerOutputFontChanged(now.outputFont);
    if (now.colors != before.colors)
        emit colorsChanged(now.colors);
}

void SettingsDialog::accept()
{
    if (!m_apply->isEnabled() || apply())
        QDialog::accept();
}

void SettingsDialog::reject()
{
    if (m_hasPreview) {
        emit editorBackgroundLivePreview(m_store.get(Setting::Editor::backgroundImage),
                                         m_store.get(Setting::Editor::backgroundOpacity));
    }
    QDialog::reject();
}
