// SPDX-License-Identifier: Apache-2.0
#include "bench/support/PropertyTableGenerator.h"

namespace {
constexpr quint32 collectionKinds = 6;
constexpr quint32 scalarKinds = 8;

// How much of a table is collections; the rest are scalars of the table itself.
constexpr quint32 scalarShare = 3;
} // namespace

PropertyTableGenerator::PropertyTableGenerator(quint32 seed)
    : random_(seed)
{
    for (const char *text : {"auto", "unsupported", "active", "pci", "usb", "block", "net", "tty",
                             "enabled", "disabled", "pcieport", "usbhid", "mq-deadline", "unknown"})
        texts_.push_back(RegistryValue::string(QString::fromLatin1(text)));
}

CompactString PropertyTableGenerator::key(const char *text)
{
    CompactString &known = keys_[QByteArray(text)];
    if (known.size() == 0)
        known = CompactString(QString::fromLatin1(text));
    return known;
}

RegistryValue PropertyTableGenerator::sharedText()
{
    return texts_[random_.bounded(static_cast<quint32>(texts_.size()))];
}

RegistryValue PropertyTableGenerator::ownText()
{
    return RegistryValue::string(
        QStringLiteral("devices/pci0000:00/0000:00:%1.0").arg(random_.generate(), 8, 16));
}

RegistryValue PropertyTableGenerator::number(int width)
{
    return RegistryValue::number(random_.generate64(), width, random_.bounded(8) == 0);
}

RegistryValue PropertyTableGenerator::scalar(quint32 kind)
{
    constexpr int widths[] = {4, 2, 8, 1};
    switch (kind % scalarKinds) {
    case 0:
        return sharedText();
    case 2:
        return ownText();
    case 4:
        return RegistryValue::boolean(random_.bounded(2) == 1);
    case 6:
        return RegistryValue::data(QByteArray(64, static_cast<char>(random_.bounded(256))));
    default:
        return number(widths[kind % scalarKinds / 2]);
    }
}

RegistryValue PropertyTableGenerator::dictionary(const char *keyStem, quint32 count)
{
    RegistryValue::Members members;
    members.reserve(count);
    for (quint32 i = 0; i < count; ++i)
        members.push_back(
            {key((QByteArray(keyStem) + '_' + QByteArray::number(i)).constData()), scalar(i)});
    return RegistryValue::dictionary(std::move(members));
}

RegistryValue PropertyTableGenerator::collection(quint32 kind)
{
    switch (kind % collectionKinds) {
    case 0:
        return dictionary("uevent", 5);
    case 1:
        return dictionary("power", 8);
    case 2:
        return RegistryValue::array({number(4), number(4), number(4)});
    case 3:
        return RegistryValue::set({sharedText(), ownText()});
    case 4:
        return dictionary("statistics", 6);
    default: {
        const auto row = [&] { return RegistryValue::array({number(8), number(8), number(8)}); };
        return RegistryValue::array({row(), row()});
    }
    }
}

RegistryValue PropertyTableGenerator::table(quint32 nodes)
{
    RegistryValue::Members members;
    quint32 missing = nodes - 1;
    for (quint32 kind = 0; kind < collectionKinds; ++kind) {
        RegistryValue value = collection(kind);
        const quint32 size = 1 + value.descendantCount();
        if (size + missing / scalarShare > missing)
            continue;
        missing -= size;
        members.push_back(
            {key(("folder_" + QByteArray::number(kind)).constData()), std::move(value)});
    }
    for (quint32 i = 0; i < missing; ++i)
        members.push_back({key(("attribute_" + QByteArray::number(i)).constData()), scalar(i)});
    return RegistryValue::dictionary(std::move(members));
}
