// SPDX-License-Identifier: Apache-2.0
#include "store/redaction/EdidRedaction.h"

#include <QtEndian>
#include <algorithm>
#include <functional>
#include <numeric>

namespace {
// The layout is that of the standard; all blocks have one size, and a checksum at the end.
constexpr qsizetype blockSize = 128;
constexpr char headerBytes[] = {0, -1, -1, -1, -1, -1, -1, 0};
constexpr qsizetype serialAt = 12;
constexpr qsizetype serialSize = 4;
constexpr qsizetype firstDescriptor = 54;
constexpr qsizetype descriptorSize = 18;
constexpr qsizetype descriptorText = 5; // where it begins
constexpr char serialDescriptor = '\xff';
constexpr char timingExtension = 0x02;
constexpr char displayIdExtension = 0x70;

bool isEdid(const QByteArray &bytes)
{
    return bytes.size() >= blockSize &&
           std::equal(std::begin(headerBytes), std::end(headerBytes), bytes.begin());
}

// Where the descriptors of a block begin; behind its end if there are none.
qsizetype descriptorsOf(const QByteArray &edid, qsizetype block)
{
    if (block == 0)
        return firstDescriptor;
    const auto start = static_cast<quint8>(edid[block + 2]);
    return edid[block] == timingExtension && start >= 4 ? block + start : block + blockSize;
}

using Visit = std::function<void(qsizetype text, qsizetype length)>;

void forEachSerialText(const QByteArray &edid, const Visit &visit)
{
    for (qsizetype block = 0; block + blockSize <= edid.size(); block += blockSize) {
        for (qsizetype at = descriptorsOf(edid, block); at + descriptorSize < block + blockSize;
             at += descriptorSize) {
            if (edid[at] == 0 && edid[at + 1] == 0 && edid[at + 3] == serialDescriptor)
                visit(at + descriptorText, descriptorSize - descriptorText);
        }
    }
}

char checksum(const QByteArray &bytes, qsizetype start, qsizetype length)
{
    return static_cast<char>(
        -std::accumulate(bytes.begin() + start, bytes.begin() + start + length, 0));
}

// A section of data blocks, one of which may identify the product.
void cleanDisplayId(QByteArray &edid, qsizetype block)
{
    constexpr qsizetype sectionHead = 4;
    constexpr qsizetype blockHead = 3;
    constexpr qsizetype serialInProduct = 5;
    const qsizetype section = block + 1;
    const qsizetype length = static_cast<quint8>(edid[section + 1]);
    const qsizetype end = section + sectionHead + length;
    if (end >= block + blockSize - 1)
        return;
    for (qsizetype at = section + sectionHead; at + blockHead <= end;) {
        const qsizetype size = static_cast<quint8>(edid[at + 2]);
        const bool isProduct = edid[at] == 0x00 || edid[at] == 0x20; // of both versions
        if (isProduct && size >= serialInProduct + serialSize && at + blockHead + size <= end)
            std::fill_n(edid.begin() + at + blockHead + serialInProduct, serialSize, '\0');
        at += blockHead + size;
    }
    edid[end] = checksum(edid, section, end - section);
}
} // namespace

QStringList EdidRedaction::serialTexts(const QByteArray &edid)
{
    QStringList texts;
    if (!isEdid(edid))
        return texts;
    forEachSerialText(edid, [&](qsizetype at, qsizetype length) {
        const QByteArray text = edid.mid(at, length);
        const qsizetype end = text.indexOf('\n');
        texts.append(QString::fromLatin1(end < 0 ? text : text.left(end)).trimmed());
    });
    return texts;
}

QByteArray EdidRedaction::cleaned(QByteArray edid, quint32 serialNumber)
{
    if (!isEdid(edid))
        return edid;
    qToLittleEndian(serialNumber, edid.data() + serialAt);
    forEachSerialText(QByteArray(edid), [&](qsizetype at, qsizetype length) {
        edid[at] = '\n';
        std::fill_n(edid.begin() + at + 1, length - 1, ' ');
    });
    for (qsizetype block = 0; block + blockSize <= edid.size(); block += blockSize) {
        if (block > 0 && edid[block] == displayIdExtension)
            cleanDisplayId(edid, block);
        edid[block + blockSize - 1] = checksum(edid, block, blockSize - 1);
    }
    return edid;
}
