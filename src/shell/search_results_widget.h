// SearchResultsWidget: the places that a search in files found.
#pragma once

#include "shell/row_list.h"

class SearchResultsWidget : public RowList
{
    Q_OBJECT

public:
    explicit SearchResultsWidget(QWidget *parent = nullptr);

    // `line` counts from 1; `text` is the whole line, shown without the blanks around it.
    void addResult(const QString &file, int line, const QString &text);

signals:
    // The user wants to go to a result.
    void resultActivated(const QString &file, int line);
};
