#include "shell/color_settings_page.h"

#include "editor/code_editor.h"
#include "editor/color_schemes.h"
#include "editor/editor_colors.h"
#include "editor/syntax_highlighter.h"
#include "settings/settings_store.h"
#include "shell/color_button.h"
#include "shell/stored_fonts.h"

#include <QCheckBox>
#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

constexpr int colorColumns = 2;

QLabel *makeHeading(const QString &text)
{
    auto *heading = new QLabel(text);
    heading->setObjectName(QStringLiteral("settingsHeading"));
    return heading;
}

QString sampleText()
{
    QFile file(QStringLiteral(":/shell/color_sample.vc"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

ColorSettingsPage::ColorSettingsPage(QWidget *parent)
    : SettingsPage(parent),
      m_schemes(new QListWidget(this)),
      m_isDefault(new QCheckBox(QStringLiteral("启动时使用此方案"), this)),
      m_sample(new CodeEditor(this)),
      m_highlighter(new SyntaxHighlighter(m_sample->document()))
{
    auto *upper = new QHBoxLayout;
    upper->addLayout(makeSchemes());
    upper->addWidget(makeButtons(), 1);
    auto *column = new QVBoxLayout(this);
    column->addLayout(upper, 4);
    column->addWidget(makeHeading(QStringLiteral("预览")));
    column->addWidget(makeSample(), 3);
}

QLayout *ColorSettingsPage::makeSchemes()
{
    for (const ColorScheme &scheme : colorSchemes())
        m_schemes->addItem(scheme.name);
    m_schemes->setFixedWidth(m_schemes->sizeHintForColumn(0) + 40); // with its scroll bar
    connect(m_schemes, &QListWidget::currentRowChanged, this, &ColorSettingsPage::applyScheme);
    connect(m_isDefault, &QCheckBox::clicked, this, &SettingsPage::edited);
    auto *column = new QVBoxLayout;
    column->addWidget(makeHeading(QStringLiteral("配色方案")));
    column->addWidget(m_schemes, 1);
    column->addWidget(m_isDefault);
    return column;
}

QLayout *ColorSettingsPage::makeButtonGrid(Setting::Color first, Setting::Color last)
{
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    for (int i = int(first); i <= int(last); ++i) {
        const Setting::ColorKey &key = Setting::colors[i];
        auto *button = new ColorButton(this);
        button->setObjectName(QLatin1String(key.button));
        button->setAccessibleName(QString::fromUtf8(key.label).chopped(1));
        connect(button, &ColorButton::colorChosen, this, [this, &key](const QColor &color) {
            m_colors[key.color] = color;
            showColors();
            emit edited();
        });
        m_buttons[std::size_t(i)] = button;
        const int place = i - int(first);
        const int row = place / colorColumns;
        const int column = 2 * (place % colorColumns);
        grid->addWidget(new QLabel(QString::fromUtf8(key.label)), row, column,
                        Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(button, row, column + 1);
    }
    for (int column = 0; column < colorColumns; ++column)
        grid->setColumnStretch(2 * column + 1, 1);
    return grid;
}

QWidget *ColorSettingsPage::makeButtons()
{
    auto *buttons = new QWidget;
    auto *column = new QVBoxLayout(buttons);
    column->setContentsMargins(6, 0, 6, 0);
    column->addWidget(makeHeading(QStringLiteral("代码颜色")));
    column->addLayout(makeButtonGrid(Setting::Color::Keyword, Setting::Color::LineNumber));
    column->addWidget(makeHeading(QStringLiteral("补全列表颜色")));
    column->addLayout(makeButtonGrid(Setting::Color::CompletionCommand,
                                     Setting::Color::CompletionGlobalConstant));
    column->addStretch();
    auto *area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(buttons);
    area->setMinimumWidth(buttons->minimumSizeHint().width() +
                          area->verticalScrollBar()->sizeHint().width());
    return area;
}

QWidget *ColorSettingsPage::makeSample()
{
    HighlightWords words;
    words.builtins = QStringList{QStringLiteral("输出")};
    words.names = QStringList{QStringLiteral("按钮1"), QStringLiteral("标签1")};
    m_highlighter->setWords(words);
    m_sample->setPlainText(sampleText().trimmed());
    m_sample->setReadOnly(true);
    m_sample->setLineWrapMode(QPlainTextEdit::NoWrap);
    return m_sample;
}

QString ColorSettingsPage::scheme() const
{
    const QListWidgetItem *item = m_schemes->currentItem();
    return item ? item->text() : QString();
}

void ColorSettingsPage::applyScheme()
{
    const ColorScheme *chosen = findColorScheme(scheme());
    if (!chosen)
        return;
    m_colors = chosen->colors;
    showColors();
    showDefault();
    emit edited();
}

void ColorSettingsPage::showColors()
{
    for (const Setting::ColorKey &key : Setting::colors)
        m_buttons[std::size_t(key.color)]->setColor(m_colors[key.color]);
    m_highlighter->setColors(m_colors);
    m_sample->setColors(editorColors(m_colors));
}

// A default is given up only by making another scheme the default.
void ColorSettingsPage::showDefault()
{
    const bool isDefault = scheme() == m_defaultScheme;
    m_isDefault->setChecked(isDefault);
    m_isDefault->setEnabled(!isDefault);
}

void ColorSettingsPage::load(const SettingsStore &store)
{
    m_colors = SyntaxColors::stored(store);
    m_defaultScheme = store.get(Setting::Editor::defaultColorScheme);
    {
        const QSignalBlocker blocker(m_schemes);
        const auto items =
            m_schemes->findItems(store.get(Setting::Editor::colorScheme), Qt::MatchExactly);
        m_schemes->setCurrentItem(items.value(0));
    }
    m_sample->setCodeFont(StoredFonts::editor(store));
    showColors();
    showDefault();
}

void ColorSettingsPage::save(SettingsStore &store) const
{
    for (const Setting::ColorKey &key : Setting::colors) {
        if (m_colors[key.color] != QColor(store.get(key.color)))
            store.set(key.color, m_colors[key.color].name().toUpper());
    }
    if (scheme().isEmpty())
        return;
    const auto set = [&](const Key<QString> &key) {
        if (store.get(key) != scheme())
            store.set(key, scheme());
    };
    // First: it is the default of the other one.
    set(Setting::Editor::colorScheme);
    if (m_isDefault->isChecked())
        set(Setting::Editor::defaultColorScheme);
}
