// SPDX-License-Identifier: Apache-2.0
// Texts of the kernel and the udev daemon: the bytes after the first line are an attribute with
// that name, and a record of the udev database.

#include "Fuzzing.h"
#include "model/TavRegistryProperty.h"
#include "model/linux/HostObject.h"
#include "model/linux/UdevDatabase.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {
void use(const RegistryValue &value)
{
    if (value.isNone())
        return;
    const PropertyRef tree = TavRegistryProperty::create(TavRegistryProperty::staticPropertyClass(),
                                                         nullptr, {}, nullptr, {}, 0, value);
    tree->clearIsNew();
    require(tree->registryState() == RegistryStateUnchanged);
}

RegistryValue record(const QByteArray &bytes)
{
    static const QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("run/udev/data"));
    QFile file(folder.filePath(QStringLiteral("run/udev/data/n7")));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    TextPool pool;
    HostObject device;
    device.members = {{pool.text("uevent"), parseAttribute("uevent", "IFINDEX=7\n", pool)}};
    return UdevDatabase(QFile::encodeName(folder.filePath(QStringLiteral("sys")))).record(device);
}
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const QByteArray input = fuzzedBytes(data, size);
    const qsizetype end = input.indexOf('\n');
    const QByteArray bytes = input.mid(end + 1);
    TextPool pool;
    use(parseAttribute(input.left(std::max<qsizetype>(end, 0)), bytes, pool));
    use(record(bytes));
    return 0;
}
