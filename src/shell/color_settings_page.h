// ColorSettingsPage: colour schemes and the single colours of the code editor.
#pragma once

#include "editor/syntax_colors.h"
#include "shell/settings_form.h"

#include <array>

class CodeEditor;
class ColorButton;
class QCheckBox;
class QListWidget;
class SyntaxHighlighter;

// A scheme sets all colours, which can be changed one by one then. A sample shows them at once.
class ColorSettingsPage : public SettingsPage
{
    Q_OBJECT

public:
    explicit ColorSettingsPage(QWidget *parent = nullptr);

    void load(const SettingsStore &store) override;
    void save(SettingsStore &store) const override;

private:
    QLayout *makeSchemes();
    QWidget *makeButtons();
    QLayout *makeButtonGrid(Setting::Color first, Setting::Color last);
    QWidget *makeSample();
    void applyScheme();
    void showColors();
    void showDefault();
    QString scheme() const;

    SyntaxColors m_colors;
    QString m_defaultScheme;
    QListWidget *m_schemes;
    QCheckBox *m_isDefault;
    std::array<ColorButton *, Setting::colorCount> m_buttons{};
    CodeEditor *m_sample;
    SyntaxHighlighter *m_highlighter;
};
