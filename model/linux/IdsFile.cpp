// SPDX-License-Identifier: Apache-2.0
#include "model/linux/IdsFile.h"

#include "model/DeviceName.h"
#include "model/ModelLogging.h"

#include <QFile>

IdsFile IdsFile::read(const QString &path)
{
    QFile file(path);
    // One byte more, to notice a file that is too large, or that has no end.
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.read(maxSize + 1) : QByteArray();
    IdsFile names(text.size() <= maxSize ? text : QByteArray());
    if (names.isEmpty())
        qCWarning(modelLog, "No names of devices in %ls", qUtf16Printable(path));
    return names;
}

IdsFile::IdsFile(QByteArray text)
    : text_(std::move(text))
{
    for (qsizetype start = 0; start < text_.size();) {
        const qsizetype newline = text_.indexOf('\n', start);
        const qsizetype end = newline < 0 ? text_.size() : newline;
        addLine(start, end);
        start = end + 1;
    }
    // Of two lines for one key, the first is found.
    std::stable_sort(names_.begin(), names_.end(),
                     [](const Name &a, const Name &b) { return a.key < b.key; });
}

void IdsFile::addLine(qsizetype start, qsizetype end)
{
    constexpr int idWidth = 4; // hexadecimal digits
    constexpr int classWidth = 2;
    const QByteArrayView line = QByteArrayView(text_).sliced(start, end - start);
    if (line.trimmed().isEmpty() || line.startsWith('#') || line.startsWith("\t\t"))
        return;
    if (line.startsWith('\t')) {
        if (section_ == Kind::Vendor)
            add(Kind::Device, start + 1, idWidth, end);
        else if (section_ == Kind::BaseClass)
            add(Kind::Subclass, start + 1, classWidth, end);
    } else if (line.startsWith("C ") && add(Kind::BaseClass, start + 2, classWidth, end)) {
        section_ = Kind::BaseClass;
    } else {
        section_ = add(Kind::Vendor, start, idWidth, end) ? Kind::Vendor : Kind::None;
    }
}

// False when the line does not begin with so many digits and two spaces, as in other sections.
bool IdsFile::add(Kind kind, qsizetype digits, int width, qsizetype end)
{
    constexpr qsizetype gap = 2;
    const QByteArrayView line = QByteArrayView(text_).sliced(digits, end - digits);
    if (line.size() <= width + gap || line.sliced(width, gap) != "  ")
        return false;
    bool isNumber = false;
    const auto number = line.first(width).toUShort(&isNumber, 16);
    if (!isNumber)
        return false;
    const bool isTop = kind == Kind::Vendor || kind == Kind::BaseClass;
    if (isTop)
        top_ = number;
    const qsizetype start = digits + width + gap;
    // A character of UTF-8 takes up to four bytes.
    const qsizetype size = std::min(end - start, 4 * DeviceName::maxSize);
    names_.push_back({isTop ? key(kind, number, 0) : key(kind, top_, number),
                      static_cast<quint32>(start), static_cast<quint32>(size)});
    return true;
}

QString IdsFile::nameOf(quint64 key) const
{
    const auto found = std::lower_bound(names_.begin(), names_.end(), key,
                                        [](const Name &name, quint64 k) { return name.key < k; });
    return found != names_.end() && found->key == key
               ? QString::fromUtf8(text_.constData() + found->start, found->size).trimmed()
               : QString();
}
