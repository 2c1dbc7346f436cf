// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

// What an argument or the value of an option can be, for completion.
enum class ArgumentKind : quint8 {
    None,      // or any text
    Path,      // of an entry, or a plane
    Key,       // of a property
    NumberKey, // of a number of the entry that the first argument names
    Driver,
    Module,
    File,
    Folder,
    Expression,
    Choice,
    Choices, // several, with commas between them
};

struct OptionDescription
{
    QString name;
    QString value; // the word for its value in the help; null: it has none
    QString help;
    ArgumentKind kind = ArgumentKind::None;
    QStringList choices = {};
};

struct CommandExample
{
    QString arguments; // after the program's name
    QString purpose;
};

// A command, as the help, the manual pages, the completion and the parser need it.
struct CommandDescription
{
    QString name;
    QString arguments = {}; // "PATH…"; null: none
    ArgumentKind argumentKind = ArgumentKind::None;
    std::optional<ArgumentKind> laterArgumentKind = {}; // after the first, if it is another
    int minArguments = 0;
    int maxArguments = 0; // -1: any number
    QString summary;
    QString details = {};
    std::vector<OptionDescription> options = {};
    std::vector<CommandExample> examples = {};
    bool isPaged = true;
    bool writesResults = true; // false: a form of its own
};
