// SPDX-License-Identifier: Apache-2.0
#include "cli/Completion.h"

#include "activity/ValuePath.h"
#include "cli/CommandError.h"
#include "cli/CommandInput.h"
#include "cli/CommandList.h"
#include "cli/EntryArgument.h"
#include "cli/EntryColumn.h"
#include "cli/HelpText.h"
#include "cli/RegistryNames.h"
#include "cli/RegistrySource.h"
#include "display/export/EscapedText.h"
#include "store/filter/FilterFields.h"
#include "store/filter/KeysOccurring.h"

namespace {
using Need = RegistrySource::Need;

const QString askForFiles = QStringLiteral("@files");
const QString askForFolders = QStringLiteral("@folders");

// The registry that the words before ask for.
RegistrySource sourceOf(const QStringList &words)
{
    const auto valueOf = [&](const QString &option) {
        const qsizetype at = words.lastIndexOf(option);
        return at >= 0 ? words.value(at + 1) : QString();
    };
    const QString file = valueOf(QStringLiteral("--file"));
    const QString sysfs = valueOf(QStringLiteral("--sysfs"));
    const bool isReadable = !file.isNull() && file != QLatin1String("-");
    return {sysfs.isNull() ? QStringLiteral("/sys") : sysfs, isReadable ? file : QString()};
}

// The next parts of paths in a plane, such as "DxService:/virtual/net/".
QStringList registryPaths(const TavDataStore &store, const QString &text)
{
    const QString plane = text.section(u':', 0, 0);
    const QString folder = text.left(text.lastIndexOf(u'/'));
    const QString above = folder.size() <= plane.size() + 1 ? plane + QStringLiteral(":/") : folder;
    QStringList paths;
    const EntrySet folders = store.entriesMatchingRegistryPath(above).entries;
    for (const TavRegistryEntry *const entry : folders) {
        for (const TavRegistryEntry *const child : entry->childrenInPlane(plane)) {
            const QString path = above + (above.endsWith(u'/') ? QString() : QStringLiteral("/")) +
                                 child->nameAtLocationInPlane(plane);
            paths.append(child->childrenInPlane(plane).empty() ? path : path + u'/');
            if (!child->childrenInPlane(plane).empty())
                paths.append(path);
        }
    }
    return paths;
}

QStringList paths(const QStringList &before, const QString &text)
{
    RegistrySource source = sourceOf(before);
    const TavDataStore &store = source.store(Need::Structure);
    QStringList found = store.registryPlanes();
    for (const QString &plane : store.registryPlanes())
        found.append(plane + QStringLiteral(":/"));
    if (store.registryPlanes().contains(text.section(u':', 0, 0)) && text.contains(u':'))
        return registryPaths(store, text);
    return text.isEmpty() ? found : found + store.locator().candidates(text);
}

QStringList kernelNames(const QStringList &before, const QString &className)
{
    RegistrySource source = sourceOf(before);
    QStringList names;
    for (const EntryRef &entry : source.store(Need::Structure).registryEntries()) {
        if (entry->DxcoreClass() == className)
            names.append(EntryLocator::kernelName(*entry));
    }
    return names;
}

// After a comma, the next one.
QStringList after(const QString &separators, const QString &text, const QStringList &words)
{
    qsizetype end = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (separators.contains(text[i]))
            end = i + 1;
    }
    QStringList whole;
    for (const QString &word : words)
        whole.append(text.left(end) + word);
    return whole;
}

QStringList keys(const QStringList &before)
{
    RegistrySource source = sourceOf(before);
    return EntryColumn::factWords() + keysOccurring(source.store(Need::Properties));
}

QStringList numberKeys(const QStringList &before, const QString &path)
{
    RegistrySource source = sourceOf(before);
    const EntryArgument chosen(source.store(Need::Structure), path);
    TavRegistryEntry *const entries[] = {chosen.entries().front()};
    source.readWhole(entries);
    return ValuePath::ofNumbers(entries[0]->table());
}

// The arguments of a command before the word, without the options and their values.
QStringList argumentsIn(const QStringList &before, const std::vector<OptionDescription> &options)
{
    QStringList arguments;
    bool isValue = false;
    for (const QString &word : before.sliced(1)) { // after the command
        const auto option = std::find_if(options.begin(), options.end(), [&](const auto &its) {
            return word == QStringLiteral("--") + its.name;
        });
        if (!std::exchange(isValue, option != options.end() && !option->value.isNull()) &&
            !word.startsWith(u'-'))
            arguments.append(word);
    }
    return arguments;
}

QStringList of(const OptionDescription &option, ArgumentKind kind, const QStringList &before,
               const QString &text)
{
    switch (kind) {
    case ArgumentKind::Path:
        return paths(before, text);
    case ArgumentKind::Key:
        return after(QStringLiteral(","), text, keys(before));
    case ArgumentKind::Expression:
        return after(QStringLiteral(" ("), text, FilterFields::names() + keys(before));
    case ArgumentKind::Driver:
        return kernelNames(before, RegistryNames::driverClass);
    case ArgumentKind::Module:
        return kernelNames(before, RegistryNames::moduleClass);
    case ArgumentKind::Choice:
        return option.choices;
    case ArgumentKind::Choices:
        return after(QStringLiteral(","), text, option.choices);
    case ArgumentKind::File:
        return {askForFiles};
    case ArgumentKind::Folder:
        return {askForFolders};
    case ArgumentKind::NumberKey: // of arguments only
    case ArgumentKind::None:
        break;
    }
    return {};
}

QStringList ofCommand(const CommandDescription &command, const QStringList &before,
                      const QString &text)
{
    std::vector<OptionDescription> options = command.options;
    for (OptionDescription &option : HelpText::commonOptions(command))
        options.push_back(std::move(option));
    const QString last = before.constLast();
    for (const OptionDescription &option : options) {
        if (last == QStringLiteral("--") + option.name && !option.value.isNull())
            return of(option, option.kind, before, text);
    }
    const QStringList arguments = argumentsIn(before, options);
    if (!text.startsWith(u'-') && !arguments.isEmpty() &&
        command.laterArgumentKind == ArgumentKind::NumberKey)
        return arguments.size() == 1 ? numberKeys(before, arguments.front()) : QStringList();
    if (!text.startsWith(u'-'))
        return of({}, command.argumentKind, before, text);
    QStringList names;
    for (const OptionDescription &option : options)
        names.append(QStringLiteral("--") + option.name);
    return names;
}

QStringList unfiltered(const QStringList &before, const QString &text)
{
    if (before.isEmpty()) {
        QStringList words = CommandList::names() + QStringList{QStringLiteral("help")};
        if (text.startsWith(u'-')) {
            words.clear();
            for (const OptionDescription &option : HelpText::programOptions())
                words.append(QStringLiteral("--") + option.name);
        }
        return words;
    }
    if (before.constFirst() == QLatin1String("help"))
        return before.size() == 1 ? CommandList::names() : QStringList();
    const auto command = CommandList::make(before.constFirst());
    return command ? ofCommand(command->description(), before, text) : QStringList();
}
} // namespace

QStringList Completion::candidates(const QStringList &words)
{
    const QString text = words.isEmpty() ? QString() : words.constLast();
    QStringList found;
    try {
        found = unfiltered(words.mid(0, words.size() - 1), text);
    } catch (const CommandError &) {
        return {}; // a registry that cannot be read
    }
    found.removeIf([&](const QString &candidate) {
        return escapedText(candidate) != candidate ||
               (!candidate.startsWith(text) && candidate != askForFiles &&
                candidate != askForFolders);
    });
    found.removeDuplicates();
    return found;
}
