// SettingsDialog: all that the user can set.
#pragma once

#include "editor/syntax_colors.h"

#include <QDialog>
#include <QFont>

#include <array>

class QLabel;
class QListWidget;
class QPushButton;
class QStackedWidget;
class SettingsForm;
class SettingsPage;
class SettingsStore;

// Edits `store`, which must outlive it, and writes its file on "应用" and "确定".
class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    enum class Page
    {
        Editor,
        Colors,
        Compiler,
        General,
    };

    explicit SettingsDialog(SettingsStore &store, QWidget *parent = nullptr);

    void showPage(Page page);

    void accept() override;
    // Nothing is changed, and the live preview is taken back.
    void reject() override;

signals:
    // After every saving; those after it only when what they tell has changed.
    void settingsChanged();
    void themeChanged(QString);
    void fontChanged(QFont);
    void compilerOutputFontChanged(QFont);
    void colorsChanged(SyntaxColors);
    // The background of the editors as it would be.
    void editorBackgroundLivePreview(QString imagePath, int opacityPercent);

private:
    // What is told when it changes.
    struct Told
    {
        explicit Told(const SettingsStore &store);

        QString theme;
        QFont font;
        QFont outputFont;
        SyntaxColors colors;
    };

    void addPage(const QString &name, SettingsPage *page);
    QLayout *makeButtons();
    void loadPages();
    void noteEdited();
    void previewBackground();
    bool showFirstError();
    bool apply();
    void tell(const Told &before);

    SettingsStore &m_store;
    QListWidget *m_names;
    QStackedWidget *m_pages;
    QLabel *m_error;
    QPushButton *m_apply = nullptr;
    SettingsForm *m_editorPage;
    QList<SettingsPage *> m_pageList; // in the order of `Page`
    bool m_hasPreview = false;
};
