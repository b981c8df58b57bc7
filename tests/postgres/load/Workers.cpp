#include "tests/postgres/load/Workers.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <memory>
#include <string_view>
#include <thread>

#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tests/postgres/load/Ledger.h"
#include "tests/postgres/load/Notes.h"

namespace lumivard::platform::stores::load {
namespace {

using tLock = std::unique_ptr<IDataStore::ILock>;

constexpr std::chrono::milliseconds kPause{10};

// How the store says what became of a step.
constexpr std::string_view kUnknown = "it is not known whether it was done";
constexpr std::string_view kGivenUp = "somebody else has changed the store since";
constexpr std::string_view kNotStored = "nothing was stored";

volatile std::sig_atomic_t stopped = 0;

void listenForTheEnd() {
    std::signal(SIGTERM, [](int) { stopped = 1; });
}

bool says(std::string_view message, std::string_view words) {
    return message.find(words) != std::string_view::npos;
}

// Waits as long as nothing may be begun, and tells whoever has asked for that.
void waitWhileHeld(const tTask& task, const char* who) {
    const auto hold = task.folder / "hold";
    if (!std::filesystem::exists(hold)) return;
    const auto held = task.folder / (std::string("held.") + who + "." + std::to_string(task.number));
    std::ofstream(held).flush();
    while (!stopped && std::filesystem::exists(hold)) std::this_thread::sleep_for(kPause);
    std::filesystem::remove(held);
}

class Writer {
public:
    explicit Writer(const tTask& task) : _task(task), _notes(task.folder / ("writer." + std::to_string(task.number))) {}

    void run() {
        for (std::uint64_t done = 0; (_task.steps == 0 || done < _task.steps) && !stopped;) {
            waitWhileHeld(_task, "writer");
            try {
                _step();
                ++done;
            } catch (const StoreError& error) {
                _hear(error.what());
            }
        }
    }

private:
    void _step() {
        _storing = false;
        if (!_store) _store = postgres(_task.location, tMode::kWrite);
        Ledger ledger(*_store);
        {
            const tLock guard(_store->lock());
            const Ledger::tTotals totals = ledger.look();
            _requirePromises(totals.counters.at(_task.number));
            _begun = totals.counters[_task.number] + 1;
            ledger.step(_task.number, totals);
            _storing = true;
            if (_begun % 2 == 0) _store->flush();
        }
        // What the end of the guard could not store is told here.
        _store->flush();
        _last = _begun;
        _notes.add(tOutcome::kAcknowledged, _last);
    }

    void _requirePromises(std::uint64_t stored) {
        const std::string words = "writer " + std::to_string(_task.number) + " finds its step " +
                                  std::to_string(stored) + ", of which the last was " + std::to_string(_last);
        if (stored < _last) throw Fault("an acknowledged flush is lost: " + words);
        if (stored > _last + (_doubtful ? 1 : 0)) throw Fault("what was said not to be stored is there: " + words);
        _last = stored;
        _doubtful = false;
    }

    void _hear(const std::string& message) {
        const bool givenUp = says(message, kGivenUp) || says(message, kNotStored);
        if (_storing) {
            _doubtful = says(message, kUnknown);
            const tOutcome otherwise = givenUp ? tOutcome::kGivenUp : tOutcome::kRefused;
            _notes.add(_doubtful ? tOutcome::kUnknown : otherwise, _begun, message);
        } else {
            _notes.add(givenUp ? tOutcome::kGivenUp : tOutcome::kFailed, _last + 1, message);
        }
        if (!givenUp) _store.reset();
        std::this_thread::sleep_for(kPause);
    }

    const tTask& _task;
    Notes _notes;
    std::unique_ptr<IDataStore> _store;
    std::uint64_t _last = 0;   // step that is known to be stored
    std::uint64_t _begun = 0;  // step that is under way
    bool _storing = false;     // whether it may be stored by now
    bool _doubtful = false;    // whether the step behind the last may be stored
};

}  // namespace

void write(const tTask& task) {
    listenForTheEnd();
    Writer(task).run();
}

void read(const tTask& task) {
    listenForTheEnd();
    const Notes notes(task.folder / ("reader." + std::to_string(task.number)));
    std::unique_ptr<IDataStore> store;
    std::uint64_t last = 0;
    std::uint64_t states = 0;
    while (!stopped) {
        try {
            if (!store) store = postgres(task.location, tMode::kRead);
            const tLock guard(store->lock());
            const std::uint64_t tally = Ledger(*store).look().tally;
            if (tally < last) {
                throw Fault("a reader goes back from " + std::to_string(last) + " to " + std::to_string(tally));
            }
            if (tally != last) ++states;
            last = tally;
        } catch (const StoreError& error) {
            notes.add(says(error.what(), kGivenUp) ? tOutcome::kGivenUp : tOutcome::kFailed, last, error.what());
            std::this_thread::sleep_for(kPause);
        }
    }
    notes.add(tOutcome::kLooked, states);
}

}  // namespace lumivard::platform::stores::load
