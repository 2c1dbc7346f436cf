// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

// A small sysfs tree for one test.
class MadeTree
{
public:
    MadeTree() { folder("devices"); }

    QString sys() const { return directory_.filePath(QStringLiteral("sys")); }
    QByteArray path(const char *below) const { return QFile::encodeName(sys()) + '/' + below; }
    void remove(const char *below) { QDir(QFile::decodeName(path(below))).removeRecursively(); }
    void folder(const char *below) { QDir().mkpath(QFile::decodeName(path(below))); }
    void file(const char *below, const QByteArray &content)
    {
        folder(QByteArray(below).left(QByteArray(below).lastIndexOf('/')).constData());
        QFile made(QFile::decodeName(path(below)));
        ASSERT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(content);
    }
    void link(const char *below, const char *target)
    {
        ASSERT_EQ(symlink(target, path(below).constData()), 0);
    }
    // A file whose readers get no answer.
    void pipe(const QByteArray &below)
    {
        ASSERT_EQ(mkfifo(path(below.constData()).constData(), 0600), 0);
    }

private:
    QTemporaryDir directory_;
};
