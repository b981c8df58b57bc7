// What work on a store in a database costs, beside the round trip of a single statement on the same server in the same
// run. The argument is a location that names no store; the store that is worked on is made and removed again.
#include <libpq-fe.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"

namespace {

using namespace lumivard::platform;
using Clock = std::chrono::steady_clock;
using core::storage::datastore::IDataStore;
using tLock = std::unique_ptr<IDataStore::ILock>;

constexpr unsigned int kRecord = 300;  // bytes

double roundTrip = 0;  // seconds

double secondsOf(const std::function<void()>& work) {
    const auto begin = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// A row of the table: the median, and the value that one in a hundred is above.
void tell(const std::string& what, std::vector<double> seconds, double per = 1, const char* unit = "") {
    std::sort(seconds.begin(), seconds.end());
    const double median = seconds[seconds.size() / 2] / per;
    const double high = seconds[seconds.size() * 99 / 100] / per;
    std::cout << "| " << what << " | " << std::setprecision(3) << median * 1e6 << ' ' << unit << " | " << high * 1e6
              << " | " << median / roundTrip << " |\n";
}

std::vector<double> often(int times, const std::function<void(int)>& work) {
    std::vector<double> seconds;
    for (int i = 0; i < times; ++i) seconds.push_back(secondsOf([&] { work(i); }));
    return seconds;
}

void measureRoundTrip(const std::string& location) {
    const std::unique_ptr<PGconn, void (*)(PGconn*)> connection(PQconnectdb(location.c_str()), PQfinish);
    PQclear(PQprepare(connection.get(), "one", "SELECT 1", 0, nullptr));
    auto seconds =
        often(5000, [&](int) { PQclear(PQexecPrepared(connection.get(), "one", 0, nullptr, nullptr, nullptr, 1)); });
    if (PQstatus(connection.get()) != CONNECTION_OK) throw std::runtime_error(PQerrorMessage(connection.get()));
    std::sort(seconds.begin(), seconds.end());
    roundTrip = seconds[seconds.size() / 2];
    tell("`SELECT 1` by libpq", seconds);
}

class Bench {
public:
    explicit Bench(std::string location)
        : _location(std::move(location) + "?store=bench"), _other(_location + "&keep=0") {
        try {
            stores::runInPostgres(_location, stores::postgresRemoval(_location));
        } catch (const stores::StoreError&) {
            // There are no tables yet.
        }
        stores::runInPostgres(_location, stores::postgresCreation(_location));
    }
    ~Bench() { stores::runInPostgres(_location, stores::postgresRemoval(_location)); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    void run() {
        fill();
        guards();
        news();
        loads();
        longRecords();
        trees();
        contention();
        tell("opening a store", often(30, [&](int) { open(); }));
    }

private:
    std::unique_ptr<IDataStore> open(bool keeps = true, stores::tMode mode = stores::tMode::kWrite) const {
        return stores::postgres(keeps ? _location : _other, mode);
    }

    void fill() {
        const auto store = open();
        const std::string record(kRecord, 'x');
        std::vector<double> seconds{secondsOf([&] {
            for (unsigned int i = 0; i < kCount; ++i) store->create(record.data(), kRecord);
            store->flush();
        })};
        tell("storing 200,000 new records of 300 bytes in one flush, each", seconds, kCount);
    }

    void guards() {
        for (const bool keeps : {false, true}) {
            const auto store = open(keeps);
            const std::string suffix = keeps ? ", kept" : "";
            tell("guard, nothing written" + suffix, often(3000, [&](int) { const tLock guard(store->lock()); }));
            for (const unsigned int count : {1U, 10U, 100U, 1000U}) {
                const auto write = [&](int round) {
                    const std::string record(kRecord, static_cast<char>('a' + round % 26));
                    const tLock guard(store->lock());
                    for (unsigned int i = 0; i < count; ++i) store->update(i, record.data(), kRecord, true);
                };
                write(0);
                tell("guard, " + std::to_string(count) + " records of 300 bytes written" + suffix,
                     often(count > 100 ? 100 : 1000, write));
            }
        }
        const auto store = open();
        const tLock guard(store->lock());
        std::string record(kRecord, ' ');
        store->read(0, record.data(), kRecord);
        const std::vector<double> seconds{secondsOf([&] {
            for (int i = 0; i < 1'000'000; ++i) store->read(0, record.data(), kRecord);
        })};
        tell("reading a known record under a guard", seconds, 1'000'000);
    }

    // What a guard costs when others have changed records that are known.
    void news() {
        const auto writer = open(false);
        const auto reader = open(false, stores::tMode::kRead);
        for (const unsigned int count : {0U, 10U, 100U, 1000U}) {
            std::vector<double> seconds;
            for (int round = 0; round < 50; ++round) {
                const std::string record(kRecord, static_cast<char>('a' + round % 26));
                std::string found(kRecord, ' ');
                const auto readAll = [&] {
                    const tLock guard(reader->lock());
                    for (unsigned int i = 0; i < count; ++i) reader->read(i, found.data(), kRecord);
                };
                readAll();
                {
                    const tLock guard(writer->lock());
                    for (unsigned int i = 0; i < count; ++i) writer->update(i, record.data(), kRecord, true);
                }
                seconds.push_back(secondsOf(readAll));
            }
            tell("guard and reading, " + std::to_string(count) + " known records changed by others", seconds);
        }
    }

    void loads() {
        const auto inOrder = open(false, stores::tMode::kRead);
        std::string record(kRecord, ' ');
        tell("reading 200,000 records for the first time in their order, each", {secondsOf([&] {
                 const tLock guard(inOrder->lock());
                 for (unsigned int i = 0; i < kCount; ++i) inOrder->read(i, record.data(), kRecord);
             })},
             kCount);
        const auto scattered = open(false, stores::tMode::kRead);
        const tLock guard(scattered->lock());
        std::mt19937 random(1);
        tell("reading a record for the first time, anywhere", often(300, [&](int) {
                 scattered->read(static_cast<unsigned int>(random() % kCount), record.data(), kRecord);
             }));
    }

    void longRecords() {
        const auto store = open(false);
        const std::string bytes(1 << 20, 'x');
        const unsigned int offset = store->create(bytes.data(), 1 << 20);
        store->flush();
        tell("writing a record of 1 MiB", often(30, [&](int round) {
                 const std::string other(1 << 20, static_cast<char>('a' + round % 26));
                 store->update(offset, other.data(), 1 << 20, true);
                 store->flush();
             }));
        tell("appending 200 bytes to it", often(300, [&](int) {
                 store->append(offset, bytes.data(), 200);
                 store->flush();
             }));
        std::string found(1 << 20, ' ');
        std::vector<double> seconds;
        for (int i = 0; i < 30; ++i) {
            const auto other = open(false, stores::tMode::kRead);
            const tLock guard(other->lock());
            seconds.push_back(secondsOf([&] { other->read(offset, found.data(), 1 << 20); }));
        }
        tell("reading it for the first time", seconds);
    }

    void trees() {
        using namespace data;
        const std::string location = _location + "%20tree";
        stores::runInPostgres(location, stores::postgresCreation(location));
        {
            const auto store = stores::postgres(location, stores::tMode::kWrite);
            const auto model = structure::IContainerFrontEnd::toplevel(store.get(), L"model");
            const double value = 1.5;
            const auto length = model->create(L"length", metadata::kDouble);
            length->set(&value, 0, 1);
            double found = 0;
            tell("`IPrimitive::get`, no guard around it, kept", often(2000, [&](int) { length->get(&found, 0, 1); }));
            tell("`IPrimitive::set`, no guard around it, kept", often(1000, [&](int) { length->set(&value, 0, 1); }));
            const tLock guard(store->lock());
            tell("`IPrimitive::set` under a guard", often(2000, [&](int) { length->set(&value, 0, 1); }));
        }
        stores::runInPostgres(location, stores::postgresRemoval(location));
    }

    void contention() {
        constexpr int kGuards = 500;
        for (const bool keeps : {false, true}) {
            const double seconds = secondsOf([&] {
                std::vector<std::thread> threads;
                for (int client = 0; client < 4; ++client) {
                    threads.emplace_back([&] {
                        const auto store = open(keeps);
                        const std::string record(kRecord, 'c');
                        for (int i = 0; i < kGuards; ++i) {
                            const tLock guard(store->lock());
                            for (unsigned int r = 0; r < 10; ++r) store->update(r, record.data(), kRecord, true);
                        }
                    });
                }
                for (std::thread& thread : threads) thread.join();
            });
            tell(std::string("guard, 10 records, four clients on one store") + (keeps ? ", kept" : ""), {seconds},
                 4 * kGuards);
        }
    }

    static constexpr unsigned int kCount = 200'000;
    const std::string _location;
    const std::string _other;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: lvp_bench_postgres postgresql://USER@HOST:PORT/DATABASE\n";
        return 2;
    }
    try {
        std::cout << "| | median, us | 99 of 100, us | round trips |\n|---|---|---|---|\n";
        measureRoundTrip(argv[1]);
        Bench(argv[1]).run();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
