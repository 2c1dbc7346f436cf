// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <memory>

// What a hardware database calls a device. Never part of its properties, which are the kernel's.
class DeviceName
{
public:
    static constexpr qsizetype maxSize = 255; // of each text, in UTF-16 code units

    DeviceName() = default;
    // Null where the database knows nothing; longer texts are cut.
    DeviceName(const QString &model, const QString &vendor, const QString &className);

    bool isEmpty() const { return title_.isNull(); }
    const QString &model() const { return model_; }         // "Gigabit Adapter 210"
    const QString &vendor() const { return vendor_; }       // "Example Networks"
    const QString &className() const { return className_; } // "Ethernet controller"

    // Vendor and model, whichever are known, or else the class.
    const QString &title() const { return title_; }
    QString shortTitle() const;  // the model, or else the class; null when only the vendor is known
    QString description() const; // the title and the class
    // With what another database knows where this one knows nothing.
    DeviceName completedBy(const DeviceName &other) const;

private:
    QString model_;
    QString vendor_;
    QString className_;
    QString title_;
};

// Shared by the devices of one kind. Null: not looked up yet.
using DeviceNameRef = std::shared_ptr<const DeviceName>;
