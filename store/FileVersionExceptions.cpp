// SPDX-License-Identifier: Apache-2.0
#include "store/FileVersionExceptions.h"

#include <QCoreApplication>

TavOldUnsupportedFileVersionException::TavOldUnsupportedFileVersionException()
    : UnsupportedFileVersionException(QCoreApplication::translate(
          "TavDataStore", "The file is stored in an old version that this version of the "
                          "application cannot open."))
{}

TavNewUnsupportedFileVersionException::TavNewUnsupportedFileVersionException()
    : UnsupportedFileVersionException(QCoreApplication::translate(
          "TavDataStore", "The file is stored in an newer version that this version of the "
                          "application cannot open."))
{}
