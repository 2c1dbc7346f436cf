// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QString>

// A key of the preferences with the type and default of its value: text, a number or a boolean.
template<class T>
struct PreferenceKey
{
    QLatin1String name;
    T defaultValue;

    QString toString() const { return name; }
};
using TextKey = PreferenceKey<QLatin1String>;
using IntegerKey = PreferenceKey<int>;
using FlagKey = PreferenceKey<bool>; // stored as "yes" or "no"

// The key of a list; nothing is stored by default.
struct ListKey
{
    QLatin1String name;

    QString toString() const { return name; }
};

// All keys of the program's own settings. The formats chosen for properties have keys made of
// class and property names, in a separate domain.
namespace PreferenceKeys {
inline constexpr TextKey defaultView{QLatin1String("DefaultView"), QLatin1String("outline")};
inline constexpr TextKey defaultPlane{QLatin1String("DefaultPlane"), QLatin1String("DxService")};
inline constexpr FlagKey filteredFind{QLatin1String("FilteredFind"), true};
// A combination of FindOption bits: name and inheritance.
inline constexpr IntegerKey findOptions{QLatin1String("FindOptions"), 5};
inline constexpr ListKey recentFilters{QLatin1String("RecentFilters")}; // the latest first
inline constexpr ListKey savedFilters{QLatin1String("SavedFilters")};   // by name
inline constexpr FlagKey showNumPaths{QLatin1String("ShowNumPaths"), false};
inline constexpr FlagKey showDeviceNames{QLatin1String("ShowDeviceNames"), true};
inline constexpr FlagKey showIcons{QLatin1String("ShowIcons"), true};
inline constexpr FlagKey markRecentChanges{QLatin1String("MarkRecentChanges"), true};
inline constexpr IntegerKey recentDuration{QLatin1String("RecentChangesDuration"), 60}; // seconds
inline constexpr FlagKey showFindingSigns{QLatin1String("ShowFindingSigns"), true};
inline constexpr ListKey hiddenFindings{QLatin1String("HiddenFindings")};
inline constexpr FlagKey followValues{QLatin1String("FollowValues"), false};
inline constexpr IntegerKey followInterval{QLatin1String("FollowInterval"), 1000}; // milliseconds
inline constexpr FlagKey showSparklines{QLatin1String("ShowSparklines"), true};
// Of properties that comparisons leave out.
inline constexpr ListKey ignoredKeys{QLatin1String("IgnoredKeys")};
inline constexpr FlagKey autoupdate{QLatin1String("Autoupdate"), true};
inline constexpr FlagKey polledUpdate{QLatin1String("PolledUpdate"), false};
inline constexpr IntegerKey pollInterval{QLatin1String("PolledUpdateInterval"), 30}; // seconds
inline constexpr TextKey theme{QLatin1String("Theme"), QLatin1String("system")};     // light, dark
inline constexpr TextKey preferencesTab{QLatin1String("SelectedPreferencesTab"),
                                        QLatin1String("View")};
inline constexpr TextKey defaultFormat{QLatin1String("ValueDisplayOptions-Default"),
                                       QLatin1String("a")};
inline constexpr ListKey encodings{QLatin1String("Encodings")};
inline constexpr ListKey bookmarks{QLatin1String("Bookmarks")};
inline constexpr IntegerKey defaultBookmark{QLatin1String("DefaultBookmarkIndex"), -1}; // -1: none
inline constexpr ListKey explorerWindowSize{QLatin1String("TavExplorerWindowSize")};
// Of the tree, which is beside the properties, and of the columns above them.
inline constexpr ListKey dividerOfTree{QLatin1String("TavExplorerSplitView-Vertical")};
inline constexpr ListKey dividerOfColumns{QLatin1String("TavExplorerSplitView-Horizontal")};
inline constexpr ListKey browserColumns{QLatin1String("TavRegistryBrowser-Columns")};
inline constexpr ListKey recentDocuments{QLatin1String("RecentDocuments")}; // in their own domain

QJsonObject defaults(); // for PreferencesStore::registerDefaults
} // namespace PreferenceKeys
