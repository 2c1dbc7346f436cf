// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "DisplayFixture.h"
#include "display/views/TavFormatController.h"

#include <QDialog>
#include <gtest/gtest.h>
#include <string>

// The format panel, shown, and an entry of the classes Own, Mid and Root (the root class) with a
// property "Value".
class FormatPanelFixture : public testing::Test
{
protected:
    FormatPanelFixture();
    ~FormatPanelFixture() override;

    TavPropertyOutlineItem &select(const RegistryValue &value, const char *path = "Value");
    void selectNone() { controller_.setSelectedPropertyItem(nullptr); }
    void click(const char *control);
    void chooseClass(const char *name);
    template<class Control>
    Control *control(const char *name) const
    {
        return controller_.propertyFormatPanel().findChild<Control *>(QString::fromLatin1(name));
    }
    // The controls as text: "*" marks the selected, brackets the disabled ones.
    std::string panelText() const;
    std::string matrixText(const char *name) const;
    QString statusText() const;
    // "Root:Mid: //Value 4xhu", one stored format a line.
    std::string storedFormats() const;
    QString defaultFormat() const;

    PreferencesFolder preferences_;
    MachineStore store_;
    EntryRef entry_;
    TavFormatController &controller_ = TavFormatController::sharedInstance();
    std::vector<TavRegistryProperty *> reported_; // items reported with changed options
};
