#include "platform/Disposal.h"

#include <QThreadPool>

void Disposal::later(std::shared_ptr<void> last)
{
    struct Pool : QThreadPool
    {
        Pool() { setMaxThreadCount(1); }
    };
    static Pool pool; // ends when all is freed
    pool.start([last = std::move(last)]() mutable { last.reset(); });
}
