#include "tests/postgres/OperationLog.h"

#include <cstring>
#include <stdexcept>
#include <string>

namespace lumivard::platform::model {

namespace {

constexpr unsigned int kMark = 0x676f6c21;  // at the head of the list

/// A deed as bytes, or what has been written so.
class Bytes {
public:
    Bytes() = default;
    explicit Bytes(std::string bytes) : _bytes(std::move(bytes)) {}

    void put(unsigned int number) { _bytes.append(reinterpret_cast<const char*>(&number), sizeof number); }
    void put(const std::wstring& text) {
        put(static_cast<unsigned int>(text.size()));
        _bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
    }
    const std::string& all() const { return _bytes; }

    unsigned int number() {
        unsigned int number = 0;
        take(&number, sizeof number);
        return number;
    }
    std::wstring text() {
        const std::size_t size = number();
        if (size > _bytes.size()) throw std::runtime_error("the log is not as it was written");
        std::wstring text(size, L'\0');
        take(text.data(), size * sizeof(wchar_t));
        return text;
    }

private:
    void take(void* to, std::size_t size) {
        if (size > _bytes.size() - _at) throw std::runtime_error("the log is not as it was written");
        if (size != 0) std::memcpy(to, _bytes.data() + _at, size);
        _at += size;
    }

    std::string _bytes;
    std::size_t _at = 0;
};

std::string recordAt(core::storage::datastore::IDataStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    store.read(offset, bytes.data(), 0xFFFFFFFF);
    return bytes;
}

std::string written(const tDeed& deed) {
    Bytes bytes;
    bytes.put(deed.process);
    bytes.put(deed.isNew ? 1 : 0);
    bytes.put(static_cast<unsigned int>(deed.operations.size()));
    for (const TreeOperation& operation : deed.operations) {
        for (const unsigned int number :
             {static_cast<unsigned int>(operation.code), operation.store, operation.slot, operation.source,
              operation.into, operation.number, operation.count, static_cast<unsigned int>(operation.schema + 1)}) {
            bytes.put(number);
        }
        for (const std::wstring& text : {operation.path, operation.name, operation.text}) bytes.put(text);
    }
    return bytes.all();
}

tDeed read(const std::string& record) {
    Bytes bytes(record);
    tDeed deed;
    deed.process = bytes.number();
    deed.isNew = bytes.number() != 0;
    for (unsigned int left = bytes.number(); left > 0; --left) {
        TreeOperation operation;
        operation.code = static_cast<TreeOperation::tCode>(bytes.number());
        for (unsigned int* const number : {&operation.store, &operation.slot, &operation.source, &operation.into,
                                           &operation.number, &operation.count}) {
            *number = bytes.number();
        }
        operation.schema = static_cast<int>(bytes.number()) - 1;
        for (std::wstring* const text : {&operation.path, &operation.name, &operation.text}) *text = bytes.text();
        deed.operations.push_back(std::move(operation));
    }
    return deed;
}

}  // namespace

void OperationLog::make(IDataStore& store) {
    store.version(store.create(&kMark, sizeof kMark));
}

std::vector<tDeed> OperationLog::news() {
    const std::vector<unsigned int> offsets = list();
    if (offsets.size() < _known) throw std::runtime_error("the log has become shorter");
    std::vector<tDeed> deeds;
    for (; _known < offsets.size(); ++_known) {
        deeds.push_back(read(recordAt(*_store, offsets[_known])));
        _operations += deeds.back().operations.size();
    }
    return deeds;
}

void OperationLog::note(const tDeed& deed) {
    const std::string bytes = written(deed);
    const unsigned int offset = _store->create(bytes.data(), static_cast<unsigned int>(bytes.size()));
    _store->append(_store->version(), &offset, sizeof offset);
    ++_known;
    _operations += deed.operations.size();
}

void OperationLog::remove() {
    for (const unsigned int offset : list()) _store->erase(offset);
    _store->erase(_store->version());
    _store->version(0);
}

std::vector<unsigned int> OperationLog::list() {
    const std::string bytes = recordAt(*_store, _store->version());
    if (bytes.size() < sizeof kMark || std::memcmp(bytes.data(), &kMark, sizeof kMark) != 0) {
        throw std::runtime_error("there is no log");
    }
    std::vector<unsigned int> offsets(bytes.size() / sizeof(unsigned int) - 1);
    if (!offsets.empty()) std::memcpy(offsets.data(), bytes.data() + sizeof kMark, offsets.size() * sizeof offsets[0]);
    return offsets;
}

}  // namespace lumivard::platform::model
