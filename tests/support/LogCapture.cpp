// SPDX-License-Identifier: Apache-2.0
#include "tests/support/LogCapture.h"

LogCapture *LogCapture::current = nullptr;

LogCapture::LogCapture()
{
    current = this;
    qInstallMessageHandler(&LogCapture::keep);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(nullptr);
    current = nullptr;
}

void LogCapture::keep(QtMsgType, const QMessageLogContext &, const QString &message)
{
    current->messages_.append(message);
}
