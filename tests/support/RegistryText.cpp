#include "tests/support/RegistryText.h"

#include "tests/support/TreePrinter.h"

#include <map>

std::string RegistryText::planes(const TavDataStore &store)
{
    std::string text;
    for (const QString &plane : store.registryPlanes())
        text += plane.toStdString() + '\n' + TreePrinter::plane(store, plane);
    return text;
}

std::string RegistryText::whole(const TavDataStore &store)
{
    std::map<quint64, std::string> entries;
    for (const EntryRef &entry : store.registryEntries()) {
        std::string &text = entries[entry->entryTag()];
        text = QStringLiteral("\n%1 %2 %3%4%5 busy %6 retained %7\n")
                   .arg(entry->nameAtLocationInPlane({}), entry->inheritanceString())
                   .arg(entry->isRegistered())
                   .arg(entry->isMatched())
                   .arg(entry->isActive())
                   .arg(entry->busyCount())
                   .arg(entry->kernelRetainCount())
                   .toStdString();
        for (const QString &plane : store.registryPlanes()) {
            for (const TavRegistryEntry *child : entry->childrenInPlane(plane))
                text += std::to_string(child->entryTag()) + ' ';
            text += '/';
        }
        if (const TavRegistryProperty *properties = entry->properties())
            text += TreePrinter::properties(*properties);
    }
    std::string text = planes(store);
    for (const auto &[tag, facts] : entries)
        text += std::to_string(tag) + facts;
    return text;
}
