// CallbackRules: which arguments of commands are functions, passed by name.
#pragma once

#include <QHash>
#include <QString>

// The call forms of the catalogue tell it by "&". Beside them stand rules: a few of the program's
// own and those of a file, whose group "Callbacks" has a list of UTF-8 texts under "commands", each
// a command, or a command, ":" and the number of the argument from 1; without a number every
// argument counts that no form says otherwise of. A file that is missing or unfit adds nothing.
class CallbackRules
{
public:
    explicit CallbackRules(const QString &path = defaultPath());

    // "callback_completion_rules.ini" beside the settings.
    static QString defaultPath();

    // `argument` counts from 0.
    bool wantsFunction(const QString &command, int argument) const;

private:
    void add(const QString &rule);

    QHash<QString, int> m_argumentOf; // from 1; 0: any
};
