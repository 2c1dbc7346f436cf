#pragma once

#include <QString>

// Sysfs trees that were recorded on other machines. They are no part of the project: the archives
// NAME.tar.xz are looked for in the folder named by VANDREL_SYSFS_TREES, else in ../shared/sysfs
// beside the project's root. A test that finds none is to be skipped with the message.
class RecordedTrees
{
public:
    // The folder that holds the tree's "sys", unpacked on first use and kept in the build folder
    // for the next test; null when there is no such archive or it cannot be unpacked.
    static QString folder(const QString &name);
    static QString missingMessage();
};
