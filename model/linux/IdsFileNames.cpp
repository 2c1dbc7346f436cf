// SPDX-License-Identifier: Apache-2.0
#include "model/linux/IdsFileNames.h"

#include "model/linux/ModaliasNumbers.h"

#include <QFileInfo>

QStringList IdsFileNames::standardFolders()
{
    return {QStringLiteral("/usr/share/hwdata"), QStringLiteral("/usr/share/misc")};
}

IdsFileNames::IdsFileNames(QStringList folders)
    : folders_(std::move(folders))
{}

const IdsFile &IdsFileNames::file(std::optional<IdsFile> &file, const QString &name) const
{
    for (const QString &folder : folders_) {
        const QString path = folder + u'/' + name;
        if (!file && QFileInfo(path).isFile())
            file = IdsFile::read(path);
    }
    if (!file)
        file = IdsFile(QByteArray()); // many machines have no such file
    return *file;
}

DeviceName IdsFileNames::nameOf(const QString &modalias)
{
    const auto numbers = ModaliasNumbers::of(modalias);
    if (!numbers)
        return {};
    const IdsFile &names = numbers->bus == ModaliasNumbers::Bus::Pci
                               ? file(pci_, QStringLiteral("pci.ids"))
                               : file(usb_, QStringLiteral("usb.ids"));
    const QString subclass = names.subclass(numbers->baseClass, numbers->subclass);
    return {names.device(numbers->vendor, numbers->device), names.vendor(numbers->vendor),
            subclass.isNull() ? names.baseClass(numbers->baseClass) : subclass};
}
