// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/EntryFacts.h"

#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/FactField.h"
#include "store/EntryLocator.h"

#include <QCheckBox>
#include <QLabel>
#include <QMainWindow>

EntryFacts::EntryFacts(QMainWindow &window)
    : objectNameField_(InterfaceLoader::outlet<FactField>(window, "objectNameField"))
    , objectDeviceLabel_(InterfaceLoader::outlet<QLabel>(window, "objectDeviceLabel"))
    , objectDeviceField_(InterfaceLoader::outlet<FactField>(window, "objectDeviceField"))
    , objectInheritanceField_(InterfaceLoader::outlet<FactField>(window, "objectInheritanceField"))
    , objectBundleField_(InterfaceLoader::outlet<FactField>(window, "objectBundleField"))
    , objectBundleFileField_(InterfaceLoader::outlet<FactField>(window, "objectBundleFileField"))
    , objectKernelPathField_(InterfaceLoader::outlet<FactField>(window, "objectKernelPathField"))
    , objectDeviceNodeLabel_(InterfaceLoader::outlet<QLabel>(window, "objectDeviceNodeLabel"))
    , objectDeviceNodeField_(InterfaceLoader::outlet<FactField>(window, "objectDeviceNodeField"))
    , objectRetainCountField_(InterfaceLoader::outlet<FactField>(window, "objectRetainCountField"))
    , objectBusyCountField_(InterfaceLoader::outlet<FactField>(window, "objectBusyCountField"))
    , dxserviceAttributesView_(InterfaceLoader::outlet<QWidget>(window, "dxserviceAttributesView"))
    , objectRegisteredCell_(InterfaceLoader::outlet<QCheckBox>(window, "objectRegisteredCell"))
    , objectMatchedCell_(InterfaceLoader::outlet<QCheckBox>(window, "objectMatchedCell"))
    , objectActiveCell_(InterfaceLoader::outlet<QCheckBox>(window, "objectActiveCell"))
{
    alignServiceFacts(window);
}

void EntryFacts::alignServiceFacts(QMainWindow &window)
{
    // Fields in a row of their own come late otherwise.
    FactField *const order[] = {objectBundleField_,     objectBundleFileField_,
                                objectKernelPathField_, objectRetainCountField_,
                                objectDeviceNodeField_, objectBusyCountField_};
    for (std::size_t i = 1; i < std::size(order); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
    // The rows below stay where they are when these facts come and go.
    QSizePolicy policy = dxserviceAttributesView_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    dxserviceAttributesView_->setSizePolicy(policy);
    // Its label is not part of the grid above, yet it ends where those do.
    const auto *const label = InterfaceLoader::outlet<QLabel>(window, "objectRetainCountLabel");
    InterfaceLoader::outlet<QLabel>(window, "objectBusyCountLabel")
        ->setMinimumWidth(label->sizeHint().width());
    for (FactField *const count : {objectBusyCountField_, objectRetainCountField_})
        count->setMaximumWidth(
            count->fontMetrics().horizontalAdvance(QStringLiteral("4294967295 ")));
}

void EntryFacts::show(const TavRegistryEntry &entry, const QString &plane, bool hasSuperclassLookup)
{
    objectNameField_->setDimmed(false);
    objectNameField_->setFact(entry.nameAtLocationInPlane(plane));
    showDevice(entry);
    QString inheritance = entry.inheritanceString();
    if (!hasSuperclassLookup)
        inheritance += tr(" (full inheritance not available)");
    objectInheritanceField_->setFact(inheritance);
    objectBundleField_->setFact(entry.bundleID());
    objectBundleFileField_->setFact(entry.bundlePath());
    objectKernelPathField_->setFact(entry.kernelPath());
    showDeviceNode(EntryLocator::deviceNode(entry));
    objectRetainCountField_->setFact(QString::number(entry.kernelRetainCount()));
    objectBusyCountField_->setFact(QString::number(entry.busyCount()));
    dxserviceAttributesView_->setVisible(entry.conformsToDxService());
    objectRegisteredCell_->setChecked(entry.isRegistered());
    objectMatchedCell_->setChecked(entry.isMatched());
    objectActiveCell_->setChecked(entry.isActive());
}

void EntryFacts::setBundleIsLink(bool isLink)
{
    objectBundleField_->setLink(isLink);
}

void EntryFacts::showDeviceNode(const QString &node)
{
    objectDeviceNodeField_->setFact(node);
    objectDeviceNodeLabel_->setVisible(!node.isEmpty());
    objectDeviceNodeField_->setVisible(!node.isEmpty());
}

void EntryFacts::showDevice(const TavRegistryEntry &entry)
{
    const DeviceName *const device = entry.deviceName();
    setDevice(device ? device->description() : QString());
}

void EntryFacts::setDevice(const QString &description)
{
    objectDeviceField_->setFact(description);
    objectDeviceLabel_->setVisible(!description.isNull());
    objectDeviceField_->setVisible(!description.isNull());
}

void EntryFacts::clearObjectInfo()
{
    setDevice(QString());
    objectNameField_->setDimmed(true);
    objectNameField_->setFact(tr("(No object selected)"));
    for (FactField *field :
         {objectInheritanceField_, objectBundleField_, objectBundleFileField_,
          objectKernelPathField_, objectRetainCountField_, objectBusyCountField_})
        field->setFact(QString());
    setBundleIsLink(false);
    showDeviceNode(QString());
    dxserviceAttributesView_->setVisible(false);
}
