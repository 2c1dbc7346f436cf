// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

inline int runBenchmarks(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// An application without a display, with its own settings.
class OffscreenApplication
{
public:
    OffscreenApplication(int &argc, char **argv)
        : application_(prepared(argc, settings_), argv)
    {}

private:
    static int &prepared(int &argc, const QTemporaryDir &settings)
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
        return argc;
    }

    QTemporaryDir settings_;
    QApplication application_;
};
