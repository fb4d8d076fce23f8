// The window of the help: a list of contents, a search, and the page.
#pragma once

#include "shell/document_pages.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QTextBrowser;

// Searching keeps the pages in the list that hold the words, and marks them in the page.
class HelpWindow : public QDialog
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget *parent = nullptr);

private:
    void showPage(int index);
    void search();
    void findAgain();
    void markHits();

    QVector<DocumentPage> m_pages;
    QLineEdit *m_search;
    QListWidget *m_contents;
    QTextBrowser *m_browser;
    QLabel *m_nothing;
};
