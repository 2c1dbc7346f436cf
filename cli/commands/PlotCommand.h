// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/Plots.h"
#include "cli/Command.h"

class TavDataStore;

// Prints a number of a device over time: as a line of blocks on a terminal, else as lines.
class PlotCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(PlotCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    static TavRegistryEntry &entryAt(const QString &path, TavDataStore &store);
    static void check(TavRegistryEntry &entry, const ValuePath &value);
    void follow(Plots &plots, std::optional<double> seconds, CommandOutput &output);
    void write(const PlotLine &line, CommandOutput &output);
    static void drawBlocks(const PlotLine &line, CommandOutput &output);
    static void writeText(const PlotLine &line, std::size_t index, CommandOutput &output);
    static void writeJson(const PlotLine &line, std::size_t index, CommandOutput &output);

    bool drawsBlocks_ = false;
    std::size_t written_ = 0; // samples
    qint64 lastTime_ = 0;     // of those
};
