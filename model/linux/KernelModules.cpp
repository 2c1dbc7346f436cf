// SPDX-License-Identifier: Apache-2.0
#include "model/linux/KernelModules.h"

#include <QFileInfo>
#include <QSet>
#include <libkmod.h>
#include <memory>

namespace {
constexpr qsizetype maxAlias = 4096; // characters

using List = std::unique_ptr<kmod_list, int (*)(kmod_list *)>;
using ModuleRef = std::unique_ptr<kmod_module, kmod_module *(*)(kmod_module *)>;

List listOf(kmod_list *list)
{
    return {list, kmod_module_unref_list};
}

template<class Action>
void forEach(const List &list, Action action)
{
    kmod_list *item = nullptr;
    kmod_list_foreach(item, list.get())
    {
        const ModuleRef module(kmod_module_get_module(item), kmod_module_unref);
        action(*module);
    }
}
} // namespace

KernelModules::KernelModules(const QString &folder)
{
    const char *const noConfiguration = nullptr;
    context_ = folder.isNull() ? kmod_new(nullptr, nullptr)
                               : kmod_new(folder.toLocal8Bit().constData(), &noConfiguration);
    if (context_)
        kmod_set_log_priority(context_, 0); // what is missing is asked for below
}

KernelModules::~KernelModules()
{
    if (context_)
        kmod_unref(context_);
}

bool KernelModules::hasIndexes() const
{
    return context_ && QFileInfo::exists(QString::fromLocal8Bit(kmod_get_dirname(context_)) +
                                         QStringLiteral("/modules.alias.bin"));
}

std::vector<ModuleCatalog::Module> KernelModules::modulesFor(const QString &modalias) const
{
    std::vector<Module> modules;
    const QByteArray alias = modalias.toUtf8();
    if (!context_ || alias.isEmpty() || alias.size() > maxAlias)
        return modules;
    const std::lock_guard lock(access_);
    kmod_list *found = nullptr;
    if (kmod_module_new_from_lookup(context_, alias.constData(), &found) < 0)
        return modules;
    const List list = listOf(found);
    QSet<QByteArray> allowed;
    kmod_list *filtered = nullptr;
    kmod_module_apply_filter(context_, KMOD_FILTER_BLACKLIST, list.get(), &filtered);
    forEach(listOf(filtered),
            [&](kmod_module &module) { allowed.insert(kmod_module_get_name(&module)); });
    forEach(list, [&](kmod_module &module) {
        const QByteArray name = kmod_module_get_name(&module);
        modules.push_back({QString::fromUtf8(name),
                           kmod_module_get_initstate(&module) == KMOD_MODULE_BUILTIN,
                           !allowed.contains(name)});
    });
    return modules;
}
