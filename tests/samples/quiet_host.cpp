// quiet_host WAY: weighs without Qt's lines about QSocketNotifier on standard error, in one of the
// ways that host-programming.md names; "none" is the host that has them.

#include <wbalance/wbalance.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "Examples.h"

namespace {

void Weigh() {
    WithLineReadiness<examples::Balance> balance;
    double grams = 0.0;
    balance.Weight(2, &grams, nullptr);
    std::fprintf(stderr, "%.2f g\n", grams);
}

void WeighInQThread() {
    const std::unique_ptr<QThread> thread(QThread::create(Weigh));
    thread->start();
    thread->wait();
}

void WeighInThreadWithEventLoop() {
    std::thread([] {
        const QEventLoop loop;
        Weigh();
    }).join();
}

}  // namespace

int main(int count, char** words) {
    const std::string way = words[1];
    if (way == "environment") setenv("QT_LOGGING_RULES", "default.warning=false", 0);
    if (way == "none" || way == "environment") {
        Weigh();
    } else if (way == "QThread") {
        WeighInQThread();
    } else {
        const QCoreApplication application(count, words);
        way == "QEventLoop" ? WeighInThreadWithEventLoop() : Weigh();
    }
    return 0;
}
