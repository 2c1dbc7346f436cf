// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <algorithm>

// A path below the root of a sysfs tree, such as "devices/virtual/net/lo". Empty: the root itself;
// null: none.
class SysfsPath
{
public:
    SysfsPath() = default;
    explicit SysfsPath(QByteArray path)
        : path_(std::move(path))
    {}
    template<std::size_t size>
    SysfsPath(const char (&literal)[size])
        : path_(literal)
    {}

    bool isNull() const { return path_.isNull(); }
    bool isEmpty() const { return path_.isEmpty(); }
    qsizetype size() const { return path_.size(); }
    qsizetype depth() const { return isEmpty() ? 0 : path_.count('/') + 1; }
    const QByteArray &toByteArray() const { return path_; }
    QString toString() const { return QString::fromUtf8(path_); }
    // In the kernel's own tree, such as "/sys/bus/pci".
    QString kernelPath() const { return isNull() ? QString() : kernelTree() + toString(); }
    static SysfsPath ofKernelPath(const QString &path) // null: it is in no such tree
    {
        return path.startsWith(kernelTree()) ? SysfsPath(path.mid(kernelTree().size()).toUtf8())
                                             : SysfsPath();
    }

    QByteArray name() const { return path_.mid(path_.lastIndexOf('/') + 1); }
    SysfsPath parent() const // empty at the top
    {
        return SysfsPath(path_.left(std::max<qsizetype>(path_.lastIndexOf('/'), 0)));
    }
    SysfsPath child(const QByteArray &name) const
    {
        return SysfsPath(isEmpty() ? name : path_ + '/' + name);
    }
    bool isBelow(QByteArrayView folder) const
    {
        return path_.size() > folder.size() && path_.startsWith(folder) &&
               path_.at(folder.size()) == '/';
    }

    friend bool operator==(const SysfsPath &, const SysfsPath &) = default;
    friend bool operator<(const SysfsPath &a, const SysfsPath &b) { return a.path_ < b.path_; }
    friend size_t qHash(const SysfsPath &path, size_t seed = 0) { return qHash(path.path_, seed); }

private:
    static QString kernelTree() { return QStringLiteral("/sys/"); }

    QByteArray path_;
};
