#include "editor/callback_rules.h"

#include "catalog/command_library.h"
#include "catalog/command_syntax.h"
#include "settings/settings_file.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace {

bool isMarked(const CommandOverload &form, int argument)
{
    const CommandParameter *parameter = form.parameterAt(argument);
    return parameter && parameter->callback;
}

bool hasMarks(const CommandOverload &form)
{
    return std::any_of(form.parameters.begin(), form.parameters.end(),
                       [](const CommandParameter &parameter) { return parameter.callback; });
}

} // namespace

CallbackRules::CallbackRules(const QString &path)
{
    for (const char16_t *command : {u"启动线程", u"调用UI", u"提交任务", u"并行循环"})
        add(QString::fromUtf16(command));
    if (SettingsFile::inspect(path) != SettingsFile::State::Readable)
        return;
    QSettings file(path, QSettings::IniFormat);
    file.setIniCodec("UTF-8");
    const QStringList rules = file.value(QStringLiteral("Callbacks/commands")).toStringList();
    for (const QString &rule : rules)
        add(rule);
}

QString CallbackRules::defaultPath()
{
    return QFileInfo(SettingsFile::defaultPath()).path() +
           QStringLiteral("/callback_completion_rules.ini");
}

void CallbackRules::add(const QString &rule)
{
    const QString command = rule.section(QLatin1Char(':'), 0, 0).trimmed();
    const int argument = rule.section(QLatin1Char(':'), 1).toInt();
    if (!command.isEmpty())
        m_argumentOf.insert(command, qMax(0, argument));
}

bool CallbackRules::wantsFunction(const QString &command, int argument) const
{
    const auto rule = m_argumentOf.constFind(command);
    if (rule != m_argumentOf.cend() && *rule > 0)
        return *rule == argument + 1;
    const CommandInfo *record = CommandLibrary::builtin().commandInfo(command);
    const QList<CommandOverload> forms = readCommandSyntax(record ? record->syntax : QString());
    if (std::any_of(forms.begin(), forms.end(), hasMarks)) {
        return std::any_of(forms.begin(), forms.end(), [argument](const CommandOverload &form) {
            return isMarked(form, argument);
        });
    }
    return rule != m_argumentOf.cend();
}
