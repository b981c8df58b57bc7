#include "tests/fault/disk/Workload.h"

#include <functional>
#include <string_view>

namespace lumivard::platform::stores::disk {
namespace {

constexpr std::size_t kManyRecords = 50;
constexpr std::size_t kLongest = 40000;  // bytes, beyond which a record is not extended

class Mixer {
public:
    void add(std::uint64_t number) {
        _value = (_value ^ number) * 0x9E3779B97F4A7C15;
        _value ^= _value >> 32;
    }
    void add(std::string_view bytes) {
        add(bytes.size());
        add(std::hash<std::string_view>()(bytes));
    }
    std::uint64_t value() const { return _value; }

private:
    std::uint64_t _value = 1;
};

}  // namespace

std::uint64_t fingerprint(IDataStore& store) {
    Mixer mixer;
    mixer.add(store.extent());
    mixer.add(store.version());
    std::string bytes;
    for (unsigned int offset = 0; offset < store.extent(); ++offset) {
        bytes.assign(store.size(offset), '\0');
        store.read(offset, bytes.data(), static_cast<unsigned int>(bytes.size()));
        mixer.add(bytes);
    }
    return mixer.value();
}

/// One batch under way.
class Workload::Batch {
public:
    Batch(Workload& model, IDataStore* store)
        : _model(model), _store(store), _random(model._seed + 0x9E3779B97F4A7C15 * model._history.size()) {}

    void run() {
        setVersion();
        const std::uint64_t count = 1 + below(below(4) == 0 ? 25 : 6);
        for (std::uint64_t i = 0; i < count; ++i) step();
    }

private:
    std::uint64_t below(std::uint64_t limit) { return _random() % limit; }

    void step() {
        const std::uint64_t kind = below(10);
        if (_model._living.empty() || (kind < 4 && _model._living.size() < kManyRecords)) return create();
        if (kind < 7) return update();
        if (kind < 8) return append();
        erase();
    }

    std::string bytes() {
        static constexpr std::uint64_t kLimits[] = {40, 40, 40, 40, 40, 40, 700, 700, 1500, 4000, 12000};
        std::string all(1 + below(kLimits[below(std::size(kLimits))]), '\0');
        std::uint64_t pattern = _random();
        for (char& byte : all) {
            byte = static_cast<char>(pattern >> 56);
            pattern = pattern * 6364136223846793005 + 1;
        }
        return all;
    }

    std::size_t some() { return below(_model._living.size()); }

    void setVersion() {
        _model._version = static_cast<unsigned int>(_random());
        if (_store) _store->version(_model._version);
    }

    void create() {
        const std::string all = bytes();
        _model._living.push_back(static_cast<unsigned int>(_model._records.size()));
        _model._records.push_back(all);
        if (_store) _store->create(all.data(), static_cast<unsigned int>(all.size()));
    }

    void update() {
        const unsigned int offset = _model._living[some()];
        const std::string all = bytes();
        _model._records[offset] = all;
        if (_store) _store->update(offset, all.data(), static_cast<unsigned int>(all.size()), true);
    }

    void append() {
        const unsigned int offset = _model._living[some()];
        if (_model._records[offset].size() > kLongest) return;
        const std::string more = bytes();
        _model._records[offset] += more;
        if (_store) _store->append(offset, more.data(), static_cast<unsigned int>(more.size()));
    }

    void erase() {
        const std::size_t which = some();
        const unsigned int offset = _model._living[which];
        _model._living[which] = _model._living.back();
        _model._living.pop_back();
        _model._records[offset].clear();
        if (_store) _store->erase(offset);
    }

    Workload& _model;
    IDataStore* _store;
    std::mt19937_64 _random;
};

Workload::Workload(std::uint64_t seed) : _seed(seed) {
    _history.push_back(fingerprint());
}

void Workload::next(IDataStore* store) {
    Batch(*this, store).run();
    _history.push_back(fingerprint());
}

std::uint64_t Workload::fingerprint() const {
    Mixer mixer;
    mixer.add(_records.size());
    mixer.add(_version);
    for (const std::string& record : _records) mixer.add(record);
    return mixer.value();
}

}  // namespace lumivard::platform::stores::disk
