// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "cli/DeviceChanges.h"
#include "cli/PolledValues.h"
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

    void choose(const QString &path, TavDataStore &store);
    void choosePolled(const QString &path, TavDataStore &store);
    void poll(RegistrySource &source, CommandOutput &output);
    DevicePicture picture(TavDataStore &store) const;
    void follow(DeviceEventSource &events, int endSignals, RegistrySource &source,
                std::optional<Clock::time_point> end, CommandOutput &output);
    // False: some were lost.
    static bool receive(DeviceEventSource &events, std::vector<DeviceChanges::Message> &received);
    bool isWanted(const DeviceChange &change) const;
    void write(std::vector<DeviceChange> changes, CommandOutput &output);
    void write(const DeviceChange &change, CommandOutput &output);
    static void writeLoss(const QDateTime &time, CommandOutput &output);
    void writeText(const DeviceChange &change, CommandOutput &output) const;
    void writeJson(const DeviceChange &change, CommandOutput &output) const;

    std::optional<FilterExpression> filter_;
    QStringList tops_; // paths; empty: everything
    bool showsProperties_ = false;
    std::optional<DeviceChanges> changes_;
    PolledValues polled_;
    std::chrono::milliseconds interval_{1000}; // of polling
    quint64 reported_ = 0;
};
