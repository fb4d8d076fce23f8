// The options of vorelc, read from the arguments of one call.
#pragma once

#include "cli/console.h"

#include <QString>
#include <QStringList>

struct CliOptions
{
    QStringList inputs; // what is no option
    QString platform;   // empty unless given
    QString config;
    QString backend;
    QString compiler;
    QString folder;     // of a new project
    QString windowType; // of a new project
    bool rebuild = false;
    bool plain = false;
    bool json = false;
    bool help = false;
    Verbosity verbosity = Verbosity::Normal;
    QStringList programArguments; // behind "--"
};

// What a command takes; a set of these.
enum OptionGroup : unsigned
{
    NoOptions = 0,
    BuildOptions = 1,
    JsonOption = 2,
    ProgramArguments = 4,
    NewProjectOptions = 8,
};

// Reads the arguments behind the command's name. Empty on success, else a Chinese sentence.
QString readOptions(const QStringList &arguments, unsigned groups, CliOptions *options);

// The lines of the help that explain the options of these groups.
QString optionHelp(unsigned groups);
