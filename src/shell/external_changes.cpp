#include "shell/external_changes.h"

#include "driver/source_text.h"

#include <QFileInfo>

namespace {

// Switching a branch changes many files one after the other.
constexpr int restMs = 200;

} // namespace

ExternalAction externalAction(const ExternalState &state)
{
    if (!state.exists)
        return ExternalAction::AskRemoved;
    if (state.isSame)
        return state.isModified ? ExternalAction::TakeAsSaved : ExternalAction::Nothing;
    return state.isModified ? ExternalAction::AskChanged : ExternalAction::Reload;
}

ExternalChanges::ExternalChanges(FindText findText, QObject *parent)
    : QObject(parent), m_findText(std::move(findText))
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(restMs);
    connect(&m_rest, &QTimer::timeout, this, &ExternalChanges::decide);
    connect(&m_watcher, &FileWatcher::fileChanged, this, &ExternalChanges::onFileChanged);
}

void ExternalChanges::setOutsideFiles(const QStringList &paths)
{
    if (paths == m_outside)
        return;
    // The watcher starts anew: what changed a moment ago it would not tell any more.
    for (const QString &path : qAsConst(m_outside)) {
        const std::optional<OpenText> open = m_findText(path);
        if (open && !open->isModified)
            onFileChanged(path);
    }
    m_outside = paths;
    m_watcher.watch(paths, {});
}

void ExternalChanges::noteOwnWrite(const QString &path)
{
    m_pending.remove(path);
    m_watcher.noteOwnWrite(path);
}

void ExternalChanges::onFileChanged(const QString &path)
{
    m_pending.insert(path);
    if (!m_isAsking)
        m_rest.start();
}

void ExternalChanges::finishAsking()
{
    m_isAsking = false;
    if (!m_pending.isEmpty())
        m_rest.start();
}

ExternalAction ExternalChanges::actionFor(const QString &path, const OpenText &open) const
{
    ExternalState state;
    state.isModified = open.isModified;
    state.exists = QFileInfo::exists(path);
    if (state.exists) {
        const SourceText source = readSourceFile(path, QFileInfo(path).fileName());
        // What is no text any more must not replace one without a question.
        state.isSame = source.isValid() && source.text == open.text;
        state.isModified = state.isModified || !source.isValid();
    }
    return externalAction(state);
}

void ExternalChanges::decide()
{
    QStringList paths = m_pending.values();
    paths.sort();
    m_pending.clear();
    QList<ExternalChange> questions;
    for (const QString &path : qAsConst(paths)) {
        const std::optional<OpenText> open = m_findText(path);
        if (!open)
            continue;
        switch (actionFor(path, *open)) {
        case ExternalAction::Nothing:
            break;
        case ExternalAction::TakeAsSaved:
            emit takenAsSaved(path);
            break;
        case ExternalAction::Reload:
            emit reloadRequested(path);
            break;
        case ExternalAction::AskChanged:
            questions << ExternalChange{path, open->text, false};
            break;
        case ExternalAction::AskRemoved:
            questions << ExternalChange{path, open->text, true};
            break;
        }
    }
    if (questions.isEmpty())
        return;
    m_isAsking = true;
    emit questionsReady(questions);
}
