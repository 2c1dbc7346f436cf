#pragma once

#include "store/DataStoreEncoder.h"

#include <QBuffer>
#include <gtest/gtest.h>

// The store as a document of it holds it.
inline QByteArray encoded(const TavDataStore &store)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    const QString problem = DataStoreEncoder::encode(store, device);
    EXPECT_TRUE(problem.isNull()) << problem.toStdString();
    return device.data();
}
