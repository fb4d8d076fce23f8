// What a build tells while it goes on, and how it learns that it is no longer wanted.
#pragma once

#include <QMetaType>
#include <QString>

// One problem of the user's program or of the build. `file` and `line` are empty and 0 without a
// place; `text` is a Chinese sentence, perhaps of several lines. `column` is 1-based and that of
// the merged source, whose line may differ from the file's; `nearText` is what stands there. 0 and
// empty if they are unknown.
struct BuildDiagnostic
{
    enum class Severity
    {
        Error,
        Warning
    };

    Severity severity = Severity::Error;
    QString file;
    int line = 0;
    QString text;
    int column = 0;
    QString nearText = {};
};

Q_DECLARE_METATYPE(BuildDiagnostic)

class BuildListener
{
public:
    virtual ~BuildListener() = default;

    virtual void progress(int percent, const QString &message) = 0;
    // A line that the user should see, though it is no problem.
    virtual void note(const QString &text) = 0;
    // A line for whoever wants to see what the build does.
    virtual void output(const QString &text) = 0;
    virtual void diagnostic(const BuildDiagnostic &diagnostic) = 0;
    // Asked between stages and while waiting, at least ten times a second; may deliver events.
    virtual bool isCancelled() = 0;
};
