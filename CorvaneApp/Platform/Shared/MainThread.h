#pragma once

#include <QCoreApplication>
#include <QThread>

namespace corvane {

/// Aborts the program unless called on the application's main thread, the only one that may use windows.
inline void requireMainThread() {
    if (QThread::currentThread() != QCoreApplication::instance()->thread()) {
        qFatal("Called from another thread than the main thread");
    }
}

} // namespace corvane
