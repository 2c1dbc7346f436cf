// SPDX-License-Identifier: Apache-2.0
// Follows this machine's registry in a window while virtual devices come and go, in floods of
// events, and a hasty user clicks everything, plots values and reads the log. Every half minute the
// window must show the same as a fresh capture. In parallel, captures are killed, and others meet
// devices that do not answer.
#include "Churn.h"
#include "KilledCaptures.h"
#include "SilentDevices.h"
#include "activity/DocumentActivity.h"
#include "display/TavPropertyOutlineItem.h"
#include "explorer/find/FindController.h"
#include "explorer/window/TavWindowController.h"
#include "explorer/window/ValuePreferences.h"
#include "explorer/window/WindowDocks.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/desktop/DesktopRunLoop.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/SearchField.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/EventLoop.h"
#include "tests/support/StorePrinter.h"
#include "tests/support/TreeText.h"

#include <QApplication>
#include <QFile>
#include <QMainWindow>
#include <QTemporaryDir>
#include <csignal>
#include <cstdio>
#include <functional>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace {
constexpr int skipped = 77;
constexpr qint64 checkInterval = 30'000; // milliseconds
constexpr int maxThreads = 40;

volatile std::sig_atomic_t isInterrupted = 0;

double megabytesResident()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * 4096 / 1e6;
}

int threads()
{
    return static_cast<int>(QDir(QStringLiteral("/proc/self/task")).count()) - 2; // "." and ".."
}

// Global: a sanitizer's exit handler takes no argument.
Churn *runningChurn = nullptr;

class Soak
{
public:
    Soak()
        : service_(*LinuxRegistryService::create(QStringLiteral("/sys")))
        , document_(TavDocument::createUntitled(documents_))
        , store_(document_->dataStore())
    {
        window_ = addWindow();
        store_->setAutoupdate(true);
        runningChurn = &churn_;
#ifdef __SANITIZE_ADDRESS__
        __sanitizer_set_death_callback([] {
            if (runningChurn)
                runningChurn->end();
        });
#endif
    }
    ~Soak()
    {
        runningChurn = nullptr;
    }
    Soak(const Soak &) = delete;
    Soak &operator=(const Soak &) = delete;

    bool run(qint64 milliseconds)
    {
        QElapsedTimer time;
        time.start();
        qint64 nextCheck = checkInterval;
        while (time.elapsed() < milliseconds && !isInterrupted) {
            for (auto burst = random_() % 5; burst > 0; --burst)
                churn_.step();
            if (below(100) == 0)
                churn_.flood();
            useWindow();
            turnEventLoopFor(static_cast<int>(random_() % 150));
            if (!isGood(kills_.step()) || (below(40) == 0 && !isGood(silent_.step())))
                return false;
            if (time.elapsed() < nextCheck)
                continue;
            nextCheck = time.elapsed() + checkInterval;
            if (!check(time.elapsed()))
                return false;
        }
        churn_.end();
        return check(time.elapsed());
    }

private:
    TavWindowController *addWindow()
    {
        auto window = std::make_unique<TavWindowController>(*document_);
        window->showWindow();
        TavWindowController *const added = window.get();
        document_->addWindowController(std::move(window));
        return added;
    }

    std::size_t below(std::size_t end)
    {
        return random_() % end;
    }

    void useWindow()
    {
        const auto &planes = store_->registryPlanes();
        const auto &entries = store_->registryEntries();
        const char *const queries[] = {"zram", "net", "terminated", ""};
        const std::function<void()> actions[] = {
            [&] { window_->setRegistryPlane(planes[qsizetype(below(planes.size()))], true); },
            [&] {
                const EntryRef entry = entries[below(entries.size())];
                window_->goToEntryPath(entry->entryPathInPlane(window_->registryPlane(), 0), true,
                                       false);
            },
            [&] { window_->clearTerminatedObjects(); },
            [&] { window_->updateSelectedObject(); },
            [&] { store_->setAutoupdate(!store_->isAutoupdate()); },
            [&] {
                store_->setPollInterval(0.1 + static_cast<double>(below(20)) / 10);
                store_->setPolledUpdate(!store_->isPolledUpdate());
            },
            [&] { toggleSecondWindow(); },
            [&] {
                if (below(4) == 0)
                    window_->update();
            },
            [&] { window_->findWithString(QString::fromLatin1(queries[below(4)])); },
            [&] { window_->finder().findNext(below(2) == 0, below(2) == 0, true); },
            [&] { window_->toggleShowTerminatedObjects(); },
            [&] { window_->values().toggleFollow(); },
            [&] { useLog(); },
            [&] { usePlots(); },
            [&] {
                if (store_->isPaused() || below(4) == 0)
                    window_->togglePause();
            },
            [&] { window_->browserIsVisible() ? window_->outlineView() : window_->browserView(); },
            [] {}, // now and then nothing
        };
        actions[below(std::size(actions))]();
    }
    void useLog()
    {
        const char *const filters[] = {"class ~ DxBlock", "name = eth0", "wrong =", ""};
        window_->docks().toggleLog();
        auto *const field =
            window_->window()->findChild<SearchField *>(QStringLiteral("logFilterField"));
        field->setText(QString::fromLatin1(filters[below(4)]));
        Q_EMIT field->searchRequested();
        if (below(10) == 0)
            activity().log().clear();
    }
    void usePlots()
    {
        Plots &plots = activity().plots();
        const auto &entries = store_->registryEntries();
        const EntryRef entry = entries[below(entries.size())];
        const QStringList numbers = ValuePath::ofNumbers(entry->table());
        if (!numbers.isEmpty())
            plots.add(*entry, ValuePath::parse(numbers[qsizetype(below(numbers.size()))]));
        if (plots.isFull())
            plots.remove(plots.lines()[below(plots.lines().size())]->number);
        window_->docks().togglePlots();
    }
    DocumentActivity &activity()
    {
        return DocumentActivity::of(*document_);
    }
    void toggleSecondWindow()
    {
        if (second_)
            document_->removeWindowController(*second_);
        second_ = second_ ? nullptr : addWindow();
    }

    bool agrees()
    {
        store_->clearTerminatedObjects();
        const auto service = *LinuxRegistryService::create(QStringLiteral("/sys"));
        const auto fresh = TavDataStore::initFromDxRegistry(*service);
        fresh->update(); // sorts children by the names of every plane
        for (const EntryRef &entry : store_->registryEntries())
            entry->clearIsNew();
        shown_ = StorePrinter::planes(*store_);
        captured_ = StorePrinter::planes(*fresh);
        return shown_ == captured_;
    }

    bool check(qint64 elapsed)
    {
        store_->setPaused(false);
        store_->setAutoupdate(true);
        turnEventLoopFor(1000);
        const bool good = waitFor([this] { return agrees(); }, 60'000);
        const auto number = [](auto count) { return static_cast<unsigned long long>(count); };
        const EventLog &log = activity().log();
        std::printf("%4llu s: %llu changes, %llu events in floods, %llu captures with silent "
                    "devices, %llu killed, %llu written; %llu rows in the log, %llu dropped, %llu "
                    "lost; %zu entries, %d threads, %.0f MB%s\n",
                    number(elapsed / 1000), number(churn_.changes()), number(churn_.events()),
                    number(silent_.captures()), number(kills_.kills()), number(kills_.written()),
                    number(log.endNumber() - log.firstNumber()), number(log.dropped()),
                    number(log.lost()), store_->registryEntries().size(), threads(),
                    megabytesResident(), good ? "" : "; the store differs from a fresh capture");
        if (!good)
            std::puts(firstDifference(shown_, captured_).c_str());
        std::fflush(stdout);
        const bool pilesUp = threads() > maxThreads;
        return good && isGood(pilesUp ? QStringLiteral("threads pile up") : QString());
    }
    static bool isGood(const QString &problem)
    {
        if (!problem.isNull())
            std::puts(qPrintable(problem));
        return problem.isNull();
    }

    std::mt19937 random_{std::random_device()()};
    std::unique_ptr<LinuxRegistryService> service_;
    TavDocumentController documents_{*service_};
    std::unique_ptr<TavDocument> document_;
    std::shared_ptr<TavDataStore> store_; // the document's
    TavWindowController *window_ = nullptr;
    TavWindowController *second_ = nullptr; // or null
    Churn churn_{random_};
    KilledCaptures kills_{random_};
    SilentDevices silent_{random_};
    std::string shown_; // of the last comparison
    std::string captured_;
};
} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    bool isNumber = argc == 2;
    const int seconds = isNumber ? QByteArray(argv[1]).toInt(&isNumber) : 0;
    if (!isNumber || seconds <= 0) {
        std::fputs("usage: vandrel_soak SECONDS\n", stderr);
        return 2;
    }
    if (!Churn::isPossible()) {
        std::puts("skipped: no virtual device can be added here "
                  "(needs root, and the zram module or iproute2)");
        return skipped;
    }
    const QTemporaryDir settings;
    PreferencesStore::setFolder(settings.path());
    PreferencesStore::standard().registerDefaults(TavPropertyOutlineItem::defaultsToRegister());
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    for (const int signal : {SIGINT, SIGTERM})
        std::signal(signal, [](int) { isInterrupted = 1; });
    const DesktopRunLoop runLoop;
    return Soak().run(1000LL * seconds) ? 0 : 1;
}
