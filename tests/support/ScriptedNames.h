// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceNames.h"

#include <QSet>
#include <QThread>

// A hardware database with scripted names. It records how it was asked.
class ScriptedNames : public DeviceNameSource
{
public:
    struct Record
    {
        QStringList asked;
        QSet<QThread *> threads;
    };
    using Names = QHash<QString, DeviceName>; // by modalias

    static std::shared_ptr<DeviceNames> create(Names names, std::shared_ptr<Record> record = {})
    {
        auto source = std::make_unique<ScriptedNames>();
        source->names_ = std::move(names);
        source->record_ = record ? std::move(record) : std::make_shared<Record>();
        return std::make_shared<DeviceNames>(std::move(source));
    }

    DeviceName nameOf(const QString &modalias) override
    {
        record_->asked.append(modalias);
        record_->threads.insert(QThread::currentThread());
        return names_.value(modalias);
    }

private:
    Names names_;
    std::shared_ptr<Record> record_;
};
