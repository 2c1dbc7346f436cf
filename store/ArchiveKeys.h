// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLatin1String>

// Keys and class names in the archive of a data store.
struct ArchiveClassName
{
    static constexpr QLatin1String dataStore[] = {QLatin1String("TavDataStore")};
    static constexpr QLatin1String entry[] = {QLatin1String("TavRegistryEntry")};
    // The class in use, not the archive, decides what nodes become. Deliberate: children are always
    // written as display items.
    static constexpr QLatin1String child[] = {QLatin1String("TavPropertyOutlineItem")};
    static constexpr QLatin1String property[] = {child[0], QLatin1String("TavRegistryProperty")};
};

struct DataStoreKey
{
    static constexpr QLatin1String version{"dataStoreVersion"};
    static constexpr QLatin1String hostName{"hostName"};
    static constexpr QLatin1String archName{"archName"};
    static constexpr QLatin1String byteOrder{"byteOrder"};
    static constexpr QLatin1String registryEntries{"registryEntries"};
    static constexpr QLatin1String registryPlanes{"registryPlanes"};
    static constexpr QLatin1String lastUpdateDate{"lastUpdateDate"};
    static constexpr QLatin1String isUpToDate{"isUpToDate"};
};

struct EntryKey
{
    static constexpr QLatin1String version{"TavRegistryEntryCoderVersionNumber"};
    static constexpr QLatin1String dataStore{"dataStore"};
    static constexpr QLatin1String dateDiscovered{"dateDiscovered"};
    static constexpr QLatin1String dateLastUpdated{"dateLastUpdated"};
    static constexpr QLatin1String dateTerminated{"dateTerminated"};
    static constexpr QLatin1String bundleID{"bundleID"};
    static constexpr QLatin1String inheritance{"inheritance"};
    static constexpr QLatin1String name{"name"};
    static constexpr QLatin1String namesInPlanes{"namesInPlanes"};
    static constexpr QLatin1String location{"location"};
    static constexpr QLatin1String locationsInPlanes{"locationsInPlanes"};
    static constexpr QLatin1String childrenInPlanes{"childrenInPlanes"};
    static constexpr QLatin1String parentsInPlanes{"parentsInPlanes"};
    static constexpr QLatin1String entryTag{"entryTag"};
    static constexpr QLatin1String busyCount{"busyCount"};
    static constexpr QLatin1String kernelRetainCount{"kernelRetainCount"};
    static constexpr QLatin1String isRegistryRoot{"isRegistryRoot"};
    static constexpr QLatin1String conformsToDxService{"conformsToDxService"};
    static constexpr QLatin1String isRegistered{"isRegistered"};
    static constexpr QLatin1String isMatched{"isMatched"};
    static constexpr QLatin1String isActive{"isActive"};
    static constexpr QLatin1String registryState{"registryState"};
    static constexpr QLatin1String properties{"properties"};
    static constexpr QLatin1String kernelPath{"kernelPath"}; // optional
    static constexpr QLatin1String deviceName{"deviceName"}; // optional
    // Of version 1.
    static constexpr QLatin1String isNew{"isNew"};
    static constexpr QLatin1String terminationAcknowledged{"terminationAcknowledged"};
};

// In the dictionary of an entry's device name.
struct DeviceNameKey
{
    static constexpr QLatin1String model{"DxModelName"};
    static constexpr QLatin1String vendor{"DxVendorName"};
    static constexpr QLatin1String className{"DxClassName"};
};

struct PropertyKey
{
    static constexpr QLatin1String version{"TavRegistryPropertyCoderVersionNumber"};
    static constexpr QLatin1String isCollection{"isCollection"};
    static constexpr QLatin1String hasName{"hasName"};
    static constexpr QLatin1String dateRead{"dateRead"};
    static constexpr QLatin1String registryEntry{"registryEntry"};
    static constexpr QLatin1String registryState{"registryState"};
    static constexpr QLatin1String parent{"parent"};
    static constexpr QLatin1String name{"name"};
    static constexpr QLatin1String index{"index"};
    static constexpr QLatin1String collectionType{"collectionType"};
    static constexpr QLatin1String children{"children"};
    static constexpr QLatin1String value{"value"};
    static constexpr QLatin1String notation{"notation"}; // optional: how the host wrote a number
};
