#include <fcntl.h>
#include <google/protobuf/arena.h>
#include <tree.pb.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

// Protocol buffers: one message on an arena holds the tree, in repeated fields that keep the order, and becomes a file
// as a whole. The way from names to items is the client's own.

namespace lvp::bench {

namespace {

using google::protobuf::Arena;

google::protobuf::ArenaOptions arenaOptions() {
    google::protobuf::ArenaOptions options;
    options.start_block_size = 1 << 16;
    options.max_block_size = 4 << 20;
    return options;
}

/// An open file, closed in the end.
class Descriptor {
public:
    Descriptor(const std::filesystem::path& file, int flags) : _descriptor(::open(file.c_str(), flags, 0644)) {
        require(_descriptor >= 0, "the file is not opened");
    }
    ~Descriptor() { ::close(_descriptor); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    operator int() const { return _descriptor; }

private:
    int _descriptor;
};

class Tree {
public:
    static constexpr const char* kEnding = "pb";
    static constexpr bool kLasts = true;
    using tPath = Path;

    static tPath pathOf(Place place) { return bench::pathOf(place); }
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) { return {file}; }

    void create(const std::filesystem::path& file) {
        begin(file);
        _top->set_name(kTop.data(), kTop.size());
    }
    void item(const std::string& name) {
        _item = _top->add_groups();
        _item->set_name(name);
        _item->mutable_properties()->Reserve(kPropertiesOfItem);
    }
    void endItem() {}
    void real(std::string_view name, std::string_view unit, double value) {
        add(name, tKind::kReal, unit).set_real(value);
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        add(name, tKind::kVector, unit).mutable_vector()->Add(value.begin(), value.end());
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        add(name, tKind::kText, unit).set_text(value.data(), value.size());
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        add(name, tKind::kIntegers, unit).mutable_integers()->Add(value.begin(), value.end());
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        add(name, tKind::kFlag, unit).set_flag(value);
    }

    void open(const std::filesystem::path& file, tAccess) {
        begin(file);
        std::string bytes(bytesOf(file), '\0');
        const Descriptor descriptor(file, O_RDONLY | O_CLOEXEC);
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t count = ::read(descriptor, bytes.data() + done, bytes.size() - done);
            require(count > 0, "the file is not read");
            done += static_cast<std::size_t>(count);
        }
        require(_top->ParseFromArray(bytes.data(), static_cast<int>(bytes.size())), "the message is not read");
    }

    void flush() {
        std::string bytes;
        require(_top->SerializeToString(&bytes), "the message is not written");
        const Descriptor descriptor(_file, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC);
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
            require(count > 0, "the file is not written");
            done += static_cast<std::size_t>(count);
        }
        require(::fsync(descriptor) == 0, "the file is not flushed");
    }

    void close() {
        _items.clear();
        _top = _item = nullptr;
        _arena.reset();
    }

    void readTree(Checksum& sum) {
        for (const wire::Group& item : _top->groups()) {
            for (const wire::Property& property : item.properties()) take(property, sum);
        }
    }

    void index() {
        for (wire::Group& item : *_top->mutable_groups()) _items.emplace(item.name(), &item);
    }

    void read(const tPath& path, Checksum& sum) { take(find(path), sum); }
    void overwrite(const tPath& path, double value) { find(path).set_real(value); }

private:
    void begin(const std::filesystem::path& file) {
        _file = file;
        _arena = std::make_unique<Arena>(arenaOptions());
        _top = Arena::CreateMessage<wire::Group>(_arena.get());
    }

    wire::Property& add(std::string_view name, tKind kind, std::string_view unit) {
        wire::Property& property = *_item->add_properties();
        property.set_name(name.data(), name.size());
        property.set_kind(static_cast<std::uint32_t>(kind));
        if (!unit.empty()) property.set_unit(unit.data(), unit.size());
        return property;
    }

    wire::Property& find(const Path& path) {
        for (wire::Property& property : *_items.at(path.item)->mutable_properties()) {
            if (property.name() == path.property) return property;
        }
        throw std::runtime_error("a property was not found");
    }

    static void take(const wire::Property& property, Checksum& sum) {
        const std::string_view name = property.name();
        const std::string_view unit = property.unit();
        switch (static_cast<tKind>(property.kind())) {
            case tKind::kReal:
                return sum.real(name, unit, property.real());
            case tKind::kVector:
                require(property.vector_size() == 3, "a value has another length");
                return sum.vector(name, unit, tVector(property.vector().data(), 3));
            case tKind::kText:
                return sum.text(name, unit, property.text());
            case tKind::kIntegers:
                require(property.integers_size() == 8, "a value has another length");
                return sum.integers(name, unit, tIntegers(property.integers().data(), 8));
            case tKind::kFlag:
                return sum.flag(name, unit, property.flag());
        }
    }

    std::filesystem::path _file;
    std::unique_ptr<Arena> _arena;
    wire::Group* _top = nullptr;
    wire::Group* _item = nullptr;
    std::unordered_map<std::string, wire::Group*> _items;
};

constexpr Row kRows[] = {
    {"protobuf", "W1", buildTree<Tree>}, {"protobuf", "W2", readTree<Tree>},  {"protobuf", "W3", lookUp<Tree>},
    {"protobuf", "W4", editTree<Tree>},  {"protobuf", "W4d", editTree<Tree>},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
