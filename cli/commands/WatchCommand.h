// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "cli/DevicePicture.h"
#include "model/linux/DeviceEventSource.h"
#include "store/filter/FilterExpression.h"

#include <chrono>

class TavDataStore;

// Prints a line for each device that appears, goes, is bound, unbound or changed.
class WatchCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(WatchCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    using Clock = std::chrono::steady_clock;
    using Device = DevicePicture::Device;
    struct Event
    {
        DeviceEvent event;
        QDateTime time;
    };
    struct Change; // a line

    void choose(const QString &path, const TavDataStore &store);
    void follow(DeviceEventSource &events, int endSignals, TavDataStore &store,
                std::optional<Clock::time_point> end, CommandOutput &output);
    bool receive(DeviceEventSource &events, std::vector<Event> &received); // false: some were lost
    void report(const std::vector<Event> &events, TavDataStore &store, CommandOutput &output);
    void reportLoss(TavDataStore &store, CommandOutput &output);
    bool isWanted(const Device &device) const;
    void add(const Change &change, CommandOutput &output);
    void writeText(const Change &change, CommandOutput &output) const;
    void writeJson(const Change &change, CommandOutput &output) const;

    std::optional<FilterExpression> filter_;
    QStringList tops_; // paths; empty: everything
    bool showsProperties_ = false;
    std::optional<DevicePicture> picture_;
    quint64 reported_ = 0;
};
