// CodeEditor: the editor of source text.
#pragma once

#include "editor/indentation.h"
#include "editor/issue_marks.h"
#include "editor/line_marks.h"
#include "editor/typing_rules.h"
#include "settings/setting_keys.h"

#include <QColor>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QSet>
#include <QTextCursor>
#include <QTimer>

#include <array>
#include <functional>

class AutoCompleter;
class EditorCompletion;
class LineNumberArea;
class QMenu;
class QTextBlock;
struct SyntaxColors;

// The colours of what the editor itself paints; the text's own are the highlighter's.
struct EditorColors
{
    QColor background{Setting::colorKey(Setting::Color::Background).fallback};
    QColor currentLine{Setting::colorKey(Setting::Color::CurrentLine).fallback};
    QColor occurrence{0x57, 0x57, 0x57, 0x90};
    QColor bracketMatch{Setting::colorKey(Setting::Color::BracketMatch).fallback};
    QColor lineNumber{Setting::colorKey(Setting::Color::LineNumber).fallback};
    QColor text{Setting::colorKey(Setting::Color::Text).fallback};
    QColor breakpoint{0xE5, 0x14, 0x00};
    QColor bookmark{0x37, 0x94, 0xFF};
    QColor error{0xF1, 0x4C, 0x4C};
    QColor warning{0xE0, 0xAF, 0x20};
};

// A plain text editor with a margin and the keys of typing_rules.h. Chinese punctuation outside of
// strings becomes ASCII as soon as typing goes on behind it or leaves its line, but never while an
// input method composes. Lines are counted from 1. Every action of the user is one step of undo.
class CodeEditor : public QPlainTextEdit
{
    Q_OBJECT
    Q_PROPERTY(bool codeEditor READ isCodeEditor CONSTANT)

public:
    explicit CodeEditor(QWidget *parent = nullptr);

    // Every character as it was read or typed; `toPlainText` loses blanks that do not break.
    QString text() const;
    QString filePath() const { return m_filePath; }
    void setFilePath(const QString &path);
    // The name of the file; without one the untitled name, "未命名" at first, with "(未保存)".
    QString title() const;
    QString untitledName() const { return m_untitledName; }
    void setUntitledName(const QString &name) { m_untitledName = name; }
    // For those who know of no more than a widget.
    bool isCodeEditor() const { return true; }

    // Family and size before zooming.
    void setCodeFont(const QFont &font);
    void setIndentation(const Indentation &indentation);
    const Indentation &indentation() const { return m_indentation; }
    void setColors(const EditorColors &colors);
    // The picture under the text, 0 to 100 percent opaque; an empty path or one that holds no
    // picture: none.
    void setBackgroundImage(const QString &path, int opacityPercent);

    // What offers completion and parameter hints, not owned; null, as at first: nothing does.
    void setAutoCompleter(AutoCompleter *completer);
    void setCompletionColors(const SyntaxColors &colors);

    QSet<int> breakpoints() const;
    void setBreakpoints(const QSet<int> &lines);
    QSet<int> bookmarks() const;
    void setBookmarks(const QSet<int> &lines);

    // Shows these findings of a check in place of those before. They go where their text goes.
    void setIssues(const QList<VlSyntaxIssue> &issues);
    QList<VlSyntaxIssue> issues() const { return m_issues.issues(); }

    // What the margin asks its editor for.
    int lineNumberAreaWidth() const;
    void paintLineNumbers(QPaintEvent *event);
    void pressLineNumberArea(QMouseEvent *event);

    // The entries of the context menu, the widget's own actions behind them; the caller owns it.
    [[nodiscard]] QMenu *createContextMenu();

    // What lies over the text: a layer covers those named before it.
    enum class Layer
    {
        CurrentLine,
        Occurrences,
        SearchHits,
        Problems,
        Brackets,
    };
    static constexpr int layerCount = int(Layer::Brackets) + 1;
    // Takes the place of what the layer showed; the editor keeps the other layers.
    void setSelections(Layer layer, const QList<QTextEdit::ExtraSelection> &selections);

    // Counts the margin in: the places of the base class are those of the viewport.
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

public slots:
    // Does nothing for a line that does not exist.
    void toggleBreakpoint(int line);
    void toggleBookmark();
    // Search goes on at the other end of the document.
    void goToNextBookmark();
    void goToPreviousBookmark();
    // The first or the last line for numbers out of range.
    void goToLine(int line);

    // None of these touches a text that is only for reading.
    void duplicate();
    void toggleLineComments();
    void toggleBlockComment();
    // The lines of the selection change places with the line above or below.
    void moveLinesUp();
    void moveLinesDown();
    // Formats the whole text; marks and the cursor stay where their lines go.
    void formatSource();
    // Sets the selected lines into the statement `word`; see CodeTemplates::wrapWords(). Their
    // marks are lost.
    void wrapSelection(const QString &word);
    // Works on the cursor's line.
    void convertChinesePunctuation();

    // Asks for a check of the text; also whenever the text has changed.
    void parseCurrentDocument();

    // Points added to the size of the font, which stays between 6 and 72.
    void zoomBy(int points);
    void zoomInOnePoint() { zoomBy(1); }
    void zoomOutOnePoint() { zoomBy(-1); }
    void resetZoom();

    // Takes the offered item with this text, or this text, for the name begun at the cursor.
    void insertCompletion(const QString &completion);
    // The delayed trigger of completion; does nothing while the list is open.
    void updateAutoComplete();
    void updateCompletions();
    void updateParamHint();

signals:
    // The delayed trigger has opened the list for what is typed of a name.
    void requestAutoComplete(QString prefix);
    // The cursor has come to the name of a command in the catalogue, or help for it is asked for.
    void commandAtCursor(QString commandName);
    void commandHelpRequested(QString commandName);
    void cursorPositionInfo(int line, int column);
    void filePathChanged(QString path);
    void breakpointToggled(int line, bool enabled);
    void findRequested();
    void replaceRequested();
    void checkRequested();
    void editorSyntaxDiagnostics(QString filePath, QList<VlSyntaxIssue> issues);

protected:
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private slots:
    void updateLineNumberAreaWidth(int newBlockCount);
    void updateLineNumberArea(const QRect &rect, int dy);
    void highlightCurrentLine();
    void highlightOccurrences();
    void onCursorPositionChanged();

private:
    // The lines that the selection touches, and where they begin in the document.
    struct Touched
    {
        TypingRules::State state;
        int start = 0;
    };

    Touched touchedLines() const;
    void apply(const TypingRules::Change &change, int start);
    bool runShortcut(const QKeyEvent &event);
    bool runEditingKey(const QKeyEvent &event);
    void moveToLineStart(bool keepsAnchor);
    void insertLineBreak();
    bool convertsAfter(const QString &text) const;
    void typeText(const QString &text, const std::function<void()> &insert);
    void convertLine(const QTextBlock &block);
    QTextBlock blockAt(int y) const;
    void paintMarks(QPainter &painter, const QTextBlock &block, const QRect &line) const;
    void paintIssueMark(QPainter &painter, bool isWarning, const QRect &line) const;
    int characterAt(const QPoint &place) const;
    void applyFont();
    void moveLines(bool down);
    QList<QTextEdit::ExtraSelection> bracketSelections() const;

    QString m_filePath;
    QString m_untitledName = QStringLiteral("未命名");
    std::array<QList<QTextEdit::ExtraSelection>, layerCount> m_selections;
    LineNumberArea *m_lineNumberArea;
    EditorCompletion *m_completion;
    Indentation m_indentation;
    EditorColors m_colors;
    IssueMarks m_issues;
    QFont m_codeFont;
    int m_zoom = 0;
    QPixmap m_background;
    QPixmap m_scaledBackground;
    QSize m_scaledFor; // the size of the viewport that it fills
    qreal m_backgroundOpacity = 0;
    // In the line that has been typed in since the cursor came to it; null: none.
    QTextCursor m_typedLine;
    bool m_isComposing = false;
    QTimer m_bracketTimer; // runs once when the events at hand are done with
    QTimer m_occurrenceTimer;
};

// Makes `text` of what the editor shows, in one step of undo. Only lines that differ are touched,
// so that marks and the cursor stay with their lines as long as these differ in blanks only.
void applyFormatted(CodeEditor &editor, const QString &text);
