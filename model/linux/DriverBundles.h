// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

struct kmod_ctx;

// Finds the files of kernel modules, and of the kernel itself.
class DriverBundles
{
public:
    static const QString kernelBundleID;

    // In the folder of a kernel's modules; null: of the running kernel.
    explicit DriverBundles(const QString &modulesFolder = {});
    ~DriverBundles();
    DriverBundles(const DriverBundles &) = delete;
    DriverBundles &operator=(const DriverBundles &) = delete;

    // The file of a module by name, or of the kernel by its bundle identifier; null if there is
    // none or it cannot be read.
    QString fileOf(const QString &bundleID) const;

private:
    kmod_ctx *context_;
};
