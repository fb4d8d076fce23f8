// TextSearch: finds and replaces in a text, without any widget.
#pragma once

#include <QRegularExpression>
#include <QString>
#include <QVector>

#include <functional>

struct SearchOptions
{
    bool matchesCase = false;
    bool wholeWords = false; // of letters, digits, Chinese characters and '_'
    bool isExpression = false;
};

// A place in the text that was searched.
struct SearchHit
{
    int start = 0;
    int length = 0;

    int end() const { return start + length; }
    bool operator==(const SearchHit &other) const
    {
        return start == other.start && length == other.length;
    }
};

// `start` and `length` are those of the text before.
struct SearchReplacement
{
    int start = 0;
    int length = 0;
    QString text;
};

// A part of a text, `end` behind its last character.
struct SearchRange
{
    int begin = 0;
    int end = -1; // -1: to the end of the text
};

// One pattern, ready for any number of texts. Lines are searched one by one, so that no hit goes
// over the end of a line, which may be "\n" or "\r\n". However badly an expression behaves, a
// search ends after some seconds.
class TextSearch
{
public:
    explicit TextSearch(const QString &pattern = QString(), const SearchOptions &options = {});

    // Nothing is ever found.
    bool isEmpty() const { return m_pattern.isEmpty(); }
    // Why the expression is none, in Chinese; empty: it is one.
    QString error() const { return m_error; }

    // Receives the hits one by one, in rising order, and says whether to go on.
    using Take = std::function<bool(const SearchReplacement &)>;

    // What makes `with` of every hit within `range`. In an expression's replacement \0 to \9 are
    // what it has captured, \n and \t a line end and a tab, \\ a backslash. Returns why the search
    // was given up, in Chinese; empty: it was not.
    QString forEach(const QString &text, const QString &with, const SearchRange &range,
                    const Take &take) const;

    // In rising order, all of them within `range`. A search that was given up tells so in `error`
    // and returns what it had found.
    QVector<SearchHit> all(const QString &text, const SearchRange &range = {},
                           QString *error = nullptr) const;
    // All that `forEach` tells. A search that was given up replaces nothing.
    QVector<SearchReplacement> replacements(const QString &text, const QString &with,
                                            const SearchRange &range = {},
                                            QString *error = nullptr) const;

    // The index of the first hit that begins at `position` or behind it, else of the first one; of
    // the last hit that ends at `position` or in front of it, else of the last one. -1: no hits.
    static int next(const QVector<SearchHit> &hits, int position);
    static int previous(const QVector<SearchHit> &hits, int position);

private:
    QString m_pattern;
    SearchOptions m_options;
    QRegularExpression m_expression;
    QString m_error;
};
