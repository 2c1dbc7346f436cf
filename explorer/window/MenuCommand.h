// SPDX-License-Identifier: Apache-2.0
#pragma once

class QString;
class TavWindowController;

// A command of an explorer window's menus: what it does, when it can, and what its menu item shows
// of the state.
struct MenuCommand
{
    const char *item; // the menu item's name in the interface file
    void (*action)(TavWindowController &);
    bool (*isEnabled)(const TavWindowController &) = nullptr; // null: always
    QString (*title)(const TavWindowController &) = nullptr;  // null, or a null title: stays as is
    bool (*isChecked)(const TavWindowController &) = nullptr; // null: has no check mark
};
