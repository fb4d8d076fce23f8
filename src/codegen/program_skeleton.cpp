// The order of everything in the generated text.
#include "codegen/generation.h"

#include "codegen/names.h"
#include "codegen/runtime_library.h"
#include "frontend/metadata.h"

#include <QFile>
#include <algorithm>

namespace {

// Where the runtime's sections are cut: the core ahead of the control numbers, the constants with
// the array types behind the handles, everything else behind the forward declarations.
const int kConstantsFrom = 20;
const int kSectionsFrom = 30;
const int kSectionsEnd = 100;

QString fixedText(const QString &name)
{
    QFile file(QStringLiteral(":/codegen/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

ProgramText Generation::program(const Node *root)
{
    ProgramText text;
    if (m_input.windows.isEmpty()) {
        text.append(minimalProgram());
        return text;
    }
    collectSymbols(root);
    // First of all: calls fill the handles and the errors on which earlier sections depend.
    const QString user = root ? userCode(root) : QString();
    const QString handlers = eventHandlers();

    appendRuntime(text, 0, kConstantsFrom);
    text.append(controlIds());
    text.append(QStringLiteral("\n// Global variables\nHINSTANCE g_hInstance;\nHWND g_hWndMain;\n"
                               "DWORD g_mainThreadId = 0;\n"));
    text.append(handleDeclarations());
    text.append(QStringLiteral("\n// Built-in constants\n"));
    appendRuntime(text, kConstantsFrom, kSectionsFrom);
    text.append(forwardDeclarations());
    appendRuntime(text, kSectionsFrom, kSectionsEnd);
    text.append(QStringLiteral("// user classes\n"));
    if (!user.isEmpty())
        text.append(QStringLiteral("// User-defined functions\n") + user);
    text.append(eventDeclarations());
    const DesignedWindow &start = startWindow();
    text.append(QStringLiteral("// VL_IDE_WNDPROC_BEGIN\n") +
                fixedText(QStringLiteral("window_declarations.inc")) + menuFunctions(start) +
                windowProcedure(start));
    text.append(QStringLiteral("// VL_IDE_WNDPROC_END\n// VL_IDE_CREATECONTROLS_BEGIN\n") +
                createControls(start));
    for (const DesignedWindow &window : m_windows.all()) {
        if (!window.isStart())
            text.append(furtherWindow(window));
    }
    text.append(entryPoint());
    text.append(handlers);
    return text;
}

void Generation::appendRuntime(ProgramText &text, int from, int to)
{
    for (const RuntimeSection &section : RuntimeLibrary::instance().sections()) {
        if (section.number < from || section.number >= to)
            continue;
        text.appendRuntime(ProgramText::PartKind::RuntimeHeader, section.name,
                           section.emittedHeader);
        text.appendRuntime(ProgramText::PartKind::RuntimeSource, section.name,
                           section.emittedSource);
    }
}

QString Generation::controlIds() const
{
    CodeWriter writer;
    writer.line(QStringLiteral("// Control IDs"));
    for (const DesignedControl &control : startWindow().controls()) {
        if (control.hasWindow())
            writer.line(QStringLiteral("#define %1 %2").arg(control.idText).arg(control.id));
    }
    return writer.takeText();
}

QString Generation::handleDeclarations() const
{
    CodeWriter writer;
    QSet<QString> declared;
    for (const DesignedWindow &window : m_windows.all()) {
        if (!window.isStart())
            writer.line(QStringLiteral("HWND %1 = NULL;").arg(window.handle()));
    }
    for (const DesignedWindow &window : m_windows.all()) {
        for (const DesignedControl &control : window.controls()) {
            if (!control.hasWindow())
                continue;
            declared.insert(control.handle);
            writer.line(QStringLiteral("HWND %1;").arg(control.handle));
        }
    }
    for (const QString &handle : m_referencedControls) {
        if (!declared.contains(handle))
            writer.line(QStringLiteral("HWND %1 = NULL;").arg(handle));
    }
    return writer.takeText();
}

QString Generation::forwardDeclarations()
{
    CodeWriter writer;
    writer.line(QStringLiteral("// User function forward declarations (after Array3D / before rest "
                               "of runtime; stdlib inserted after Array3D by compiler)"));
    QStringList structs;
    QStringList functions;
    QList<FunctionSignature> signatures;
    for (const QList<FunctionSignature> &overloads : qAsConst(m_functions))
        signatures << overloads;
    std::sort(signatures.begin(), signatures.end(),
              [](const FunctionSignature &a, const FunctionSignature &b) {
                  return a.node->line < b.node->line;
              });
    for (const FunctionSignature &signature : qAsConst(signatures)) {
        QStringList types{signature.returnCppType};
        for (const FunctionParameter &parameter : signature.parameters)
            types << parameter.cppType;
        for (const QString &type : qAsConst(types)) {
            if (type.startsWith(QLatin1String("VL_User_")))
                structs << QStringLiteral("struct %1;").arg(type);
        }
        functions << signature.returnCppType + QLatin1Char(' ') + signature.cppName +
                         QLatin1Char('(') + parameterList(signature) + QLatin1String(");");
    }
    structs.removeDuplicates();
    functions.removeDuplicates();
    for (const QString &line : qAsConst(structs))
        writer.line(line);
    for (const QString &line : qAsConst(functions))
        writer.line(line);
    writer.blankLine();
    return writer.takeText();
}

QString Generation::minimalProgram() const
{
    return fixedText(QStringLiteral("minimal_program.inc"));
}
