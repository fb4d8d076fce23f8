#include "codegen/code_generator.h"

#include "codegen/generation.h"
#include "codegen/generator_context.h"
#include "codegen/names.h"

#include <algorithm>

class CodeGenerator::Private
{
public:
    GenerationInput input;
    int beautificationScheme = 3;
    bool useBeautification = false;
    QStringList errors;
    QStringList warnings;

    void keep(const Generation &generation)
    {
        errors = generation.errors;
        warnings = generation.warnings;
    }
};

CodeGenerator::CodeGenerator() : CodeGenerator(CommandLibrary::builtin()) {}

CodeGenerator::CodeGenerator(const CommandLibrary &commands) : d(std::make_unique<Private>())
{
    d->input.commands = &commands;
}

CodeGenerator::~CodeGenerator() = default;

void CodeGenerator::clear()
{
    const CommandLibrary *commands = d->input.commands;
    *d = Private();
    d->input.commands = commands;
}

bool CodeGenerator::registerWindow(const QString &name, const QString &filePath,
                                   const QList<VL::DesignComponent> &components, bool isMain,
                                   bool isStartup)
{
    const bool taken =
        std::any_of(d->input.windows.begin(), d->input.windows.end(),
                    [&name](const WindowRecord &window) { return window.name == name; });
    if (name.isEmpty() || taken)
        return false;
    WindowRecord window;
    window.name = name;
    window.filePath = filePath;
    window.components = components;
    window.isMain = isMain;
    window.isStartup = isStartup;
    window.sanitizedName = Names::sanitize(name);
    d->input.windows << window;
    return true;
}

void CodeGenerator::registerImplicitWindow()
{
    if (registerWindow(QStringLiteral("主窗口"), QString(), {}, true, true))
        d->input.windows.last().implicit = true;
}

void CodeGenerator::setComponents(const QList<VL::DesignComponent> &components)
{
    registerWindow(QStringLiteral("主窗口"), QString(), components, true, true);
}

void CodeGenerator::setUiBackend(const QString &backend)
{
    d->input.uiBackend = backend.isEmpty() ? QStringLiteral("win32") : backend;
}

void CodeGenerator::setBeautificationScheme(int scheme)
{
    d->beautificationScheme = scheme >= 0 && scheme <= 5 ? scheme : 3;
}

void CodeGenerator::setUseBeautification(bool on)
{
    d->useBeautification = on;
}

void CodeGenerator::setMarksEveryStatement(bool on)
{
    d->input.marksEveryStatement = on;
}

void CodeGenerator::setClassRegistry(const ClassRegistryMap &registry)
{
    d->input.classRegistry = registry;
}

std::unique_ptr<ProgramContext>
CodeGenerator::programContext(const std::function<bool(int)> &isConstantsLine) const
{
    return std::make_unique<GeneratorContext>(d->input.windows, *d->input.commands,
                                              isConstantsLine);
}

ProgramText CodeGenerator::generate(const Parser::ASTNode *root)
{
    Generation generation(d->input);
    ProgramText text = generation.program(root);
    d->keep(generation);
    return text;
}

QString CodeGenerator::generateUserCode(const Parser::ASTNode *root)
{
    Generation generation(d->input);
    QString text = root ? generation.wholeUserCode(root) : QString();
    d->keep(generation);
    return text;
}

QString CodeGenerator::generateUserClasses(const Parser::ASTNode *root)
{
    Generation generation(d->input);
    QString text = root ? generation.userClasses(root) : QString();
    d->keep(generation);
    return text;
}

QStringList CodeGenerator::errors() const
{
    return d->errors;
}

QStringList CodeGenerator::warnings() const
{
    return d->warnings;
}
