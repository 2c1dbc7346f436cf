// SPDX-License-Identifier: Apache-2.0
#include "cli/ObjectSampling.h"

#include "model/RegistryService.h"

#include <QEventLoop>

ObjectSample sampleNow(RegistryService &service, const ObjectSample::Request &request)
{
    QEventLoop loop;
    ObjectSample taken;
    service.sample(request, [&](const ObjectSample &sample) {
        taken = sample;
        loop.exit();
    });
    loop.exec();
    return taken;
}
