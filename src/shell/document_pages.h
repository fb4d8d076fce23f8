// The pages of text that the program carries with it.
#pragma once

#include <QString>
#include <QVector>

struct DocumentPage
{
    QString title; // the first line, without its "#"
    QString text;  // Markdown
};

// The pages of ":/shell/help", in the order of their file names.
QVector<DocumentPage> helpPages();
// The changelog of the product; its title is that of the file.
DocumentPage changelogPage();
