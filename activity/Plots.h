// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/PlotLine.h"
#include "model/ObjectSample.h"
#include "model/TavRegistryEntry.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <memory>

class RegistryService;

// Numbers of a live registry over time. They are read beside it, by the paths of the devices, so
// that a line goes on when its device comes back.
class Plots : public QObject
{
    Q_OBJECT
public:
    static constexpr std::size_t maxLines = 8;
    using Lines = std::vector<std::unique_ptr<PlotLine>>;

    // Null: nothing can be read. The service must outlive this.
    explicit Plots(RegistryService *service);

    const Lines &lines() const { return lines_; }
    bool isFull() const { return lines_.size() == maxLines; }
    const PlotLine *lineOf(const TavRegistryEntry &entry, const ValuePath &value) const;
    // Counters as rates at first. Null: there are too many, or it is there already.
    const PlotLine *add(TavRegistryEntry &entry, const ValuePath &value);
    void remove(quint64 number);
    void clear();
    void setReading(quint64 number, PlotSeries::Reading reading);
    void setInterval(int milliseconds);
    int interval() const { return timer_.interval(); }

Q_SIGNALS:
    void changed(); // which lines there are, or how they are to be read
    void sampled();

private:
    PlotLine *withNumber(quint64 number) const;
    int freePlace() const;
    void sample();
    void request(const QString &kernelPath);
    void take(const QString &kernelPath, const ObjectSample &sample);
    void take(PlotLine &line, const ObjectSample &sample);

    RegistryService *service_;
    Lines lines_; // in the order in which they were added
    quint64 lastNumber_ = 0;
    QSet<QString> reading_; // kernel paths whose sample is not there yet
    QTimer timer_;
};
