// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/Disposal.h"

#include <QThreadPool>

namespace {
struct Pool : QThreadPool
{
    Pool() { setMaxThreadCount(1); }
};

QThreadPool &pool()
{
    static Pool only; // its destructor waits until everything is freed
    return only;
}
} // namespace

void Disposal::later(std::shared_ptr<void> last)
{
    pool().start([last = std::move(last)]() mutable { last.reset(); });
}

void Disposal::wait()
{
    pool().waitForDone();
}
