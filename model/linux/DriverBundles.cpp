// SPDX-License-Identifier: Apache-2.0
#include "model/linux/DriverBundles.h"

#include <QFileInfo>
#include <libkmod.h>
#include <memory>
#include <sys/utsname.h>

const QString DriverBundles::kernelBundleID = QStringLiteral("org.linux.kernel");

namespace {
QString kernelImage()
{
    utsname system;
    if (uname(&system) != 0)
        return {};
    const QString release = QString::fromUtf8(system.release);
    for (const char *const pattern : {"/boot/vmlinuz-%1", "/boot/vmlinux-%1", "/boot/Image-%1",
                                      "/usr/lib/modules/%1/vmlinuz", "/lib/modules/%1/vmlinuz"}) {
        const QString file = QString::fromLatin1(pattern).arg(release);
        if (QFileInfo(file).isReadable())
            return file;
    }
    return {};
}
// Checked, because the name may come from a document.
bool isModuleName(const QString &name)
{
    constexpr qsizetype maxSize = 255;
    const auto isPart = [](QChar c) {
        return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == u'_' || c == u'-');
    };
    return !name.isEmpty() && name.size() <= maxSize &&
           std::all_of(name.begin(), name.end(), isPart);
}
} // namespace

DriverBundles::DriverBundles(const QString &modulesFolder)
    : context_(kmod_new(modulesFolder.isNull() ? nullptr : modulesFolder.toLocal8Bit().constData(),
                        nullptr))
{
    if (context_)
        kmod_set_log_priority(context_, 0); // a module without a file is normal
}

DriverBundles::~DriverBundles()
{
    if (context_)
        kmod_unref(context_);
}

QString DriverBundles::fileOf(const QString &bundleID) const
{
    if (bundleID == kernelBundleID)
        return kernelImage();
    kmod_module *found = nullptr;
    if (!context_ || !isModuleName(bundleID) ||
        kmod_module_new_from_name(context_, bundleID.toUtf8().constData(), &found) != 0)
        return {};
    const std::unique_ptr<kmod_module, kmod_module *(*)(kmod_module *)> module(found,
                                                                               kmod_module_unref);
    const char *const path = kmod_module_get_path(module.get());
    return path ? QString::fromUtf8(path) : QString();
}
