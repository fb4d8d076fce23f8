// CodeGenerator: from the syntax tree and the registered windows to one C++ program.
#pragma once

#include "codegen/program_text.h"
#include "designer/model/design_component.h"
#include "frontend/parser.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class CommandLibrary;
class ProgramContext;

// One instance serves build after build. Generation never stops at a problem: it collects messages
// and goes on.
class CodeGenerator
{
public:
    CodeGenerator();
    // With another catalogue of commands than the built-in one; it must outlive the generator.
    explicit CodeGenerator(const CommandLibrary &commands);
    ~CodeGenerator();

    // Drops windows, options and everything kept of the last build.
    void clear();
    // Adds a window. `isMain` makes its components those of the main window. False, and nothing
    // added, when the name is empty or taken.
    bool registerWindow(const QString &name, const QString &filePath,
                        const QList<VL::DesignComponent> &components, bool isMain, bool isStartup);
    // The start window of a program without a form: no components, hidden, ends when user code
    // does.
    void registerImplicitWindow();
    // The components of a single design without a project.
    void setComponents(const QList<VL::DesignComponent> &components);
    // "win32" or "vlwin"; an empty text restores "win32".
    void setUiBackend(const QString &backend);
    // 0 to 5; anything else becomes 3.
    void setBeautificationScheme(int scheme);
    void setUseBeautification(bool on);
    // Marks the source lines of heads of loops and branches and of jumps too, for the debugger.
    void setMarksEveryStatement(bool on);
    // What the parser knows of classes and their members.
    void setClassRegistry(const ClassRegistryMap &registry);

    // What the checks must know of the registered windows and of the commands. The generator must
    // outlive it; later windows are not in it. `isConstantsLine`: whether a merged line belongs to
    // the file of global constants.
    std::unique_ptr<ProgramContext>
    programContext(const std::function<bool(int)> &isConstantsLine) const;

    // The whole program. `root` stays with the caller.
    ProgramText generate(const Parser::ASTNode *root);
    // Classes, globals and functions alone, for program templates that bring their own frame.
    QString generateUserCode(const Parser::ASTNode *root);
    // The definitions of the user classes alone; empty when there are none.
    QString generateUserClasses(const Parser::ASTNode *root);

    // The messages of the last generation, most of them beginning "第 n 行：".
    QStringList errors() const;
    QStringList warnings() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
