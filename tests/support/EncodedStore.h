// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/DataStoreEncoder.h"

#include <QBuffer>
#include <gtest/gtest.h>

// The store as saved in a document.
inline QByteArray encoded(const TavDataStore &store)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    const QString problem = DataStoreEncoder::encode(store, device);
    EXPECT_TRUE(problem.isNull()) << problem.toStdString();
    return device.data();
}
