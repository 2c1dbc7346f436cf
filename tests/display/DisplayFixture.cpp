// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"

#include "display/PropertyFormatDescriptor.h"
#include "platform/preferences/PreferencesStore.h"

EntryRef MachineStore::entry(const QStringList &inheritance, const RegistryValue &value)
{
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    service_.addClassChain(inheritance);
    const auto node = service_.add(inheritance.front(), "node");
    service_.setProperties(
        node, RegistryValue::dictionary({{CompactString(QStringLiteral("Value")), value}}));
    service_.setRoot(node);
    const auto handle = RegistryHandle::adopt(service_, service_.rootEntry());
    return TavRegistryEntry::create(handle.get(), *this);
}

PreferencesFolder::~PreferencesFolder()
{
    PreferencesStore::setFolder(folder_.path()); // closes what is open
}

void PreferencesFolder::restart()
{
    PreferencesStore::setFolder(folder_.path());
    PreferencesStore::standard().registerDefaults(TavPropertyOutlineItem::defaultsToRegister());
}

LoneItem::LoneItem(const RegistryValue &value, qint32 byteOrder)
    : store_(byteOrder)
    , entry_(store_.entry({QStringLiteral("DxRegistryEntry")}, value))
    , item_(&itemAt(entry_, "Value"))
{}

TavPropertyOutlineItem &itemAt(const EntryRef &entry, const char *path)
{
    TavRegistryProperty *property = entry->properties();
    for (const QString &key : QString::fromLatin1(path).split(u'/', Qt::SkipEmptyParts)) {
        TavRegistryProperty *named = property->childWithName(key);
        property = named ? named : property->childAtIndex(key.toLongLong());
    }
    return dynamic_cast<TavPropertyOutlineItem &>(*property);
}

PropertyFormatOptions formatOf(const char *descriptor)
{
    return PropertyFormatDescriptor::propertyFormatForDescriptor(QString::fromLatin1(descriptor));
}
