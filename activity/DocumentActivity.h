// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/EventLog.h"
#include "activity/LogRecorder.h"
#include "activity/Plots.h"
#include "activity/RecentChanges.h"

class TavDocument;

// What is remembered of a document's registry while it is watched, for all its windows.
class DocumentActivity : public QObject
{
    Q_OBJECT
public:
    // Made when it is first asked for; from then on it follows the document.
    static DocumentActivity &of(TavDocument &document);

    EventLog &log() { return log_; }
    RecentChanges &recentChanges() { return recentChanges_; }
    Plots &plots() { return plots_; }

private:
    explicit DocumentActivity(TavDocument &document);

    EventLog log_;
    LogRecorder recorder_;
    RecentChanges recentChanges_;
    Plots plots_;
};
