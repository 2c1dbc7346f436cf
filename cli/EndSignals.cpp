// SPDX-License-Identifier: Apache-2.0
#include "cli/EndSignals.h"

#include <csignal>
#include <pthread.h>
#include <sys/signalfd.h>

EndSignals::EndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = FileDescriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}
