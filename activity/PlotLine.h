// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/PlotSeries.h"
#include "activity/ValuePath.h"

// A number of an entry that is read again and again.
struct PlotLine
{
    enum class State : quint8 {
        Followed,
        Absent,     // the device or the value is not there now
        NotANumber, // any more; not read again
        NoAnswer,   // likewise
    };

    bool isOver() const { return state == State::NotANumber || state == State::NoAnswer; }

    quint64 number; // of the line; not used again
    int place;      // from 0, among the lines there; decides on its colour
    quint64 entryTag;
    QString name;       // of the entry, with its location
    QString path;       // in the service plane, or else in the first that it is in
    QString kernelPath; // by which it is read
    QStringList inheritance;
    ValuePath value;
    PlotSeries::Reading reading;
    PlotSeries series;
    State state = State::Followed;
};
