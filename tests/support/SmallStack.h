// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QThread>
#include <memory>

// Runs a function on a small stack, to find recursion.
template<class Action>
void onSmallStack(Action action)
{
    const std::unique_ptr<QThread> thread(QThread::create(action));
    thread->setStackSize(256 * 1024);
    thread->start();
    thread->wait();
}
