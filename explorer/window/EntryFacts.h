// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"

#include <QCoreApplication>

class FactField;
class QLabel;
class QCheckBox;
class QMainWindow;

// The facts of the selected entry above its properties.
class EntryFacts
{
    Q_DECLARE_TR_FUNCTIONS(EntryFacts)
public:
    explicit EntryFacts(QMainWindow &window); // which owns the fields

    // The inheritance may stop short of the base class where the host cannot look it up.
    void show(const TavRegistryEntry &entry, const QString &plane, bool hasSuperclassLookup);
    void setBundleIsLink(bool isLink); // to the module's entry
    FactField &bundleField() const { return *objectBundleField_; }
    void showDevice(const TavRegistryEntry &entry); // whose name may have been found since
    void clearObjectInfo();

private:
    void setDevice(const QString &description); // null: none
    void alignServiceFacts(QMainWindow &window);
    void showDeviceNode(const QString &node);

    FactField *objectNameField_;
    QWidget *objectDeviceLabel_;
    FactField *objectDeviceField_;
    FactField *objectInheritanceField_;
    FactField *objectBundleField_;
    FactField *objectBundleFileField_;
    FactField *objectKernelPathField_;
    QLabel *objectDeviceNodeLabel_;
    FactField *objectDeviceNodeField_;
    FactField *objectRetainCountField_;
    FactField *objectBusyCountField_;
    QWidget *dxserviceAttributesView_;
    QCheckBox *objectRegisteredCell_;
    QCheckBox *objectMatchedCell_;
    QCheckBox *objectActiveCell_;
};
