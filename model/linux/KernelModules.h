// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/ModuleCatalog.h"

#include <mutex>

struct kmod_ctx;

// The modules in a folder such as /lib/modules/6.1.0, by the indexes that depmod made there.
class KernelModules : public ModuleCatalog
{
public:
    // Null: those of the running kernel, with the configuration of this machine. The modules of
    // another machine come without its configuration.
    explicit KernelModules(const QString &folder = {});
    ~KernelModules() override;
    KernelModules(const KernelModules &) = delete;
    KernelModules &operator=(const KernelModules &) = delete;

    // Without them, nothing can be said about modules.
    bool hasIndexes() const;
    std::vector<Module> modulesFor(const QString &modalias) const override;

private:
    kmod_ctx *context_;
    mutable std::mutex access_; // to the library's context, which serves one thread
};
