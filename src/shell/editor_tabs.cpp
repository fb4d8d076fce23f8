#include "shell/editor_tabs.h"

#include "editor/editor_colors.h"
#include "editor/minimal_edit.h"
#include "editor/syntax_highlighter.h"
#include "settings/settings_store.h"
#include "shell/message_dialogs.h"
#include "shell/stored_fonts.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QTabBar>
#include <QTextBlock>

namespace {

const char sourceFilter[] = "Vorel 源代码 (*.vc *.vpp *.vt *.vd *.vpi *.vl);;所有文件 (*.*)";

QString absolute(const QString &path)
{
    return path.isEmpty() ? QString() : QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

bool isSameFile(const QString &a, const QString &b)
{
    if (a == b)
        return true;
    const QString canonical = QFileInfo(a).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath();
}

} // namespace

EditorSettings EditorSettings::stored(const SettingsStore &store)
{
    EditorSettings settings;
    settings.font = StoredFonts::editor(store);
    settings.indentation.width = store.get(Setting::Editor::tabWidth);
    settings.colors = SyntaxColors::stored(store);
    settings.backgroundImage = store.get(Setting::Editor::backgroundImage);
    settings.backgroundOpacity = store.get(Setting::Editor::backgroundOpacity);
    return settings;
}

EditorTabs::EditorTabs(QWidget *parent) : QTabWidget(parent)
{
    setObjectName(QStringLiteral("EditorTabs"));
    setDocumentMode(true);
    setTabsClosable(true);
    setMovable(true);
    setAccessibleName(QStringLiteral("打开的文件"));
    tabBar()->setElideMode(Qt::ElideNone);
    tabBar()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(tabBar(), &QTabBar::customContextMenuRequested, this, [this](const QPoint &place) {
        fillTabMenu(tabBar()->tabAt(place), tabBar()->mapToGlobal(place));
    });
    connect(this, &QTabWidget::currentChanged, this,
            [this] { emit currentEditorChanged(currentEditor()); });
    connect(this, &QTabWidget::tabCloseRequested, this, [this](int index) {
        if (CodeEditor *editor = editorAt(index))
            close(editor);
        else
            removeTab(index);
    });
}

CodeEditor *EditorTabs::editorAt(int index) const
{
    return qobject_cast<CodeEditor *>(widget(index));
}

QList<CodeEditor *> EditorTabs::editors() const
{
    QList<CodeEditor *> editors;
    for (int i = 0; i < count(); ++i) {
        if (CodeEditor *editor = editorAt(i))
            editors << editor;
    }
    return editors;
}

QList<CodeEditor *> EditorTabs::modifiedEditors() const
{
    QList<CodeEditor *> modified;
    for (CodeEditor *editor : editors()) {
        if (editor->document()->isModified())
            modified << editor;
    }
    return modified;
}

CodeEditor *EditorTabs::editorOf(const QString &path) const
{
    const QString wanted = absolute(path);
    for (CodeEditor *editor : editors()) {
        if (!editor->filePath().isEmpty() && isSameFile(editor->filePath(), wanted))
            return editor;
    }
    return nullptr;
}

bool EditorTabs::isSourceFile(const QString &path)
{
    static const QStringList suffixes{QStringLiteral("vc"),  QStringLiteral("vpp"),
                                      QStringLiteral("vt"),  QStringLiteral("vd"),
                                      QStringLiteral("vpi"), QStringLiteral("vl")};
    return path.isEmpty() || suffixes.contains(QFileInfo(path).suffix().toLower());
}

CodeEditor *EditorTabs::open(const QString &path)
{
    if (CodeEditor *known = editorOf(path)) {
        setCurrentWidget(known);
        return known;
    }
    const ReadText read = TextFile::read(path);
    if (!read.succeeded()) {
        MessageDialogs::warn(window(), QStringLiteral("打开文件"), read.error);
        return nullptr;
    }
    OpenFile file;
    file.form = read.form;
    CodeEditor *editor = addEditor(absolute(path), read.text, file);
    if (!read.notice.isEmpty())
        emit noticeGiven(QFileInfo(path).fileName() + QStringLiteral("：") + read.notice);
    emit fileOpened(editor->filePath());
    return editor;
}

CodeEditor *EditorTabs::openUntitled(const QString &text)
{
    CodeEditor *editor = addEditor(QString(), text, {});
    editor->setUntitledName(QStringLiteral("未命名%1.vc").arg(++m_untitledCount));
    showTitle(editor);
    return editor;
}

CodeEditor *EditorTabs::openRecovered(const QString &path, const QString &text)
{
    CodeEditor *editor = path.isEmpty() ? nullptr : editorOf(path);
    if (!editor && !path.isEmpty() && QFileInfo(path).isFile())
        editor = open(path);
    if (!editor) {
        editor = openUntitled(QString());
        if (!path.isEmpty()) {
            editor->setFilePath(absolute(path));
            highlight(editor);
        }
    }
    replaceWhereDifferent(*editor->document(), 0, editor->text(), text);
    editor->document()->setModified(true);
    showTitle(editor);
    return editor;
}

CodeEditor *EditorTabs::addEditor(const QString &path, const QString &text, OpenFile file)
{
    auto *editor = new CodeEditor(this);
    editor->setFilePath(path);
    editor->setPlainText(text);
    editor->document()->setModified(false);
    m_files.insert(editor, file);
    style(editor);
    highlight(editor);
    connect(editor->document(), &QTextDocument::modificationChanged, this, [this, editor] {
        showTitle(editor);
        emit modificationChanged(editor);
    });
    connect(editor, &CodeEditor::filePathChanged, this, [this, editor] { showTitle(editor); });
    addTab(editor, QString());
    showTitle(editor);
    emit editorOpened(editor);
    setCurrentWidget(editor);
    return editor;
}

// A form is shown as the text that it is.
void EditorTabs::highlight(CodeEditor *editor)
{
    SyntaxHighlighter *&highlighter = m_files[editor].highlighter;
    if (!isSourceFile(editor->filePath())) {
        delete highlighter;
        highlighter = nullptr;
        return;
    }
    if (!highlighter)
        highlighter = new SyntaxHighlighter(editor->document());
    highlighter->setColors(m_settings.colors);
    HighlightWords words;
    words.names = m_componentNames;
    highlighter->setWords(words);
}

void EditorTabs::style(CodeEditor *editor)
{
    editor->setColors(editorColors(m_settings.colors));
    editor->setCompletionColors(m_settings.colors);
    editor->setCodeFont(m_settings.font);
    editor->setIndentation(m_settings.indentation);
    editor->setBackgroundImage(m_settings.backgroundImage, m_settings.backgroundOpacity);
}

void EditorTabs::applySettings(const EditorSettings &settings)
{
    m_settings = settings;
    for (CodeEditor *editor : editors()) {
        style(editor);
        highlight(editor);
    }
}

void EditorTabs::setComponentNames(const QStringList &names)
{
    if (names == m_componentNames)
        return;
    m_componentNames = names;
    for (CodeEditor *editor : editors())
        highlight(editor);
}

void EditorTabs::showTitle(CodeEditor *editor)
{
    const int index = indexOf(editor);
    if (index < 0)
        return;
    const QString title = editor->title();
    const bool isModified = editor->document()->isModified();
    setTabText(index, QString(title).replace(QLatin1Char('&'), QLatin1String("&&")) +
                          (isModified ? QStringLiteral(" ●") : QString()));
    setTabToolTip(
        index, editor->filePath().isEmpty() ? title : QDir::toNativeSeparators(editor->filePath()));
    editor->setAccessibleName(QStringLiteral("源代码 %1").arg(title));
}

bool EditorTabs::write(CodeEditor *editor, const QString &path)
{
    const QString error = TextFile::write(path, editor->text(), m_files.value(editor).form);
    if (!error.isEmpty()) {
        MessageDialogs::warn(window(), QStringLiteral("保存文件"), error);
        return false;
    }
    const QString oldPath = editor->filePath();
    editor->setFilePath(absolute(path));
    if (oldPath != editor->filePath())
        highlight(editor);
    editor->document()->setModified(false);
    emit fileSaved(editor->filePath(), oldPath);
    return true;
}

bool EditorTabs::save(CodeEditor *editor)
{
    return editor->filePath().isEmpty() ? saveAs(editor) : write(editor, editor->filePath());
}

bool EditorTabs::saveAs(CodeEditor *editor)
{
    const QString start =
        editor->filePath().isEmpty() ? editor->untitledName() : editor->filePath();
    const QString path = QFileDialog::getSaveFileName(window(), QStringLiteral("另存为"), start,
                                                      QString::fromUtf8(sourceFilter));
    if (path.isEmpty())
        return false;
    CodeEditor *other = editorOf(path);
    if (other && other != editor) {
        MessageDialogs::warn(
            window(), QStringLiteral("另存为"),
            QStringLiteral("文件 %1 已在另一个标签页中打开，请先关闭它或换一个名称。")
                .arg(QDir::toNativeSeparators(path)));
        return false;
    }
    return write(editor, path);
}

QStringList EditorTabs::saveModified()
{
    QStringList failures;
    for (CodeEditor *editor : modifiedEditors()) {
        if (editor->filePath().isEmpty())
            continue;
        const QString error =
            TextFile::write(editor->filePath(), editor->text(), m_files.value(editor).form);
        if (!error.isEmpty()) {
            failures << error;
            continue;
        }
        editor->document()->setModified(false);
        emit fileSaved(editor->filePath(), editor->filePath());
    }
    return failures;
}

void EditorTabs::reload(CodeEditor *editor, const ReadText &read)
{
    replaceWhereDifferent(*editor->document(), 0, editor->text(), read.text);
    m_files[editor].form = read.form;
    editor->document()->setModified(false);
}

bool EditorTabs::mayClose(CodeEditor *editor)
{
    if (!editor->document()->isModified())
        return true;
    setCurrentWidget(editor);
    enum
    {
        Save,
        Discard,
    };
    const int answer = MessageDialogs::choose(
        window(), QMessageBox::Question, QStringLiteral("保存修改"),
        QStringLiteral("文件“%1”已修改，是否保存？").arg(editor->title()),
        {QStringLiteral("保存"), QStringLiteral("不保存"), QStringLiteral("取消")}, Save);
    return answer == Save ? save(editor) : answer == Discard;
}

bool EditorTabs::close(CodeEditor *editor)
{
    if (!mayClose(editor))
        return false;
    closeWithoutSaving(editor);
    return true;
}

bool EditorTabs::closeAll()
{
    for (CodeEditor *editor : modifiedEditors()) {
        if (!mayClose(editor))
            return false;
    }
    for (CodeEditor *editor : editors())
        closeWithoutSaving(editor);
    return true;
}

void EditorTabs::closeWithoutSaving(CodeEditor *editor)
{
    emit editorClosing(editor);
    removeTab(indexOf(editor));
    m_files.remove(editor);
    editor->disconnect(this);
    editor->document()->disconnect(this);
    editor->deleteLater();
}

void EditorTabs::renameFile(const QString &oldPath, const QString &newPath)
{
    if (CodeEditor *editor = editorOf(oldPath))
        editor->setFilePath(absolute(newPath));
    else if (CodeEditor *moved = editorOf(newPath))
        moved->setFilePath(absolute(newPath));
}

void EditorTabs::goToNextTab(int step)
{
    if (count() > 0)
        setCurrentIndex((currentIndex() + step + count()) % count());
}

void EditorTabs::fillTabMenu(int index, const QPoint &globalPosition)
{
    CodeEditor *editor = editorAt(index);
    if (!editor)
        return;
    QMenu menu(this);
    menu.addAction(QStringLiteral("关闭(&C)"), this, [this, editor] { close(editor); });
    menu.addAction(QStringLiteral("关闭其他(&O)"), this, [this, editor] {
        for (CodeEditor *other : editors()) {
            if (other != editor && !close(other))
                return;
        }
    });
    menu.addAction(QStringLiteral("关闭全部(&A)"), this, [this] { closeAll(); });
    menu.addSeparator();
    QAction *copy = menu.addAction(QStringLiteral("复制路径(&P)"), this, [editor] {
        QApplication::clipboard()->setText(QDir::toNativeSeparators(editor->filePath()));
    });
    copy->setEnabled(!editor->filePath().isEmpty());
    menu.exec(globalPosition);
}
