// Completion in the code editor: all is done by EditorCompletion.
#include "editor/code_editor.h"
#include "editor/editor_completion.h"

void CodeEditor::setAutoCompleter(AutoCompleter *completer)
{
    m_completion->setCompleter(completer);
}

void CodeEditor::setCompletionColors(const SyntaxColors &colors)
{
    m_completion->setColors(colors);
}

void CodeEditor::insertCompletion(const QString &completion)
{
    m_completion->insertCompletion(completion);
}

void CodeEditor::updateAutoComplete()
{
    m_completion->updateAutoComplete();
}

void CodeEditor::updateCompletions()
{
    m_completion->updateCompletions();
}

void CodeEditor::updateParamHint()
{
    m_completion->updateParamHint();
}
