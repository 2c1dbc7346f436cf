// SPDX-License-Identifier: Apache-2.0
#include "activity/DocumentActivity.h"

#include "store/TavDataStore.h"
#include "store/TavDocument.h"

DocumentActivity &DocumentActivity::of(TavDocument &document)
{
    auto *const known =
        document.findChild<DocumentActivity *>(QString(), Qt::FindDirectChildrenOnly);
    return known ? *known : *new DocumentActivity(document);
}

DocumentActivity::DocumentActivity(TavDocument &document)
    : QObject(&document)
    , recorder_(document.dataStore(), log_)
    , plots_(document.dataStore()->isLive() ? document.dataStore()->service() : nullptr)
{
    connect(&recorder_, &LogRecorder::changeNoted, &recentChanges_, &RecentChanges::note);
}
