#include <hdf5.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

// HDF5: an item is a group and a property an attribute of it, which costs a fifth of what a dataset does. An attribute
// has no attributes, so a double with a unit is a compound of both. The newest format, attributes kept in the group's
// own header, no times, blocks of 1 MB and a cache of 64 MB for what is no raw data. A flush is H5Fflush and fsync.

namespace lvp::bench {

namespace {

hid_t check(hid_t identifier) {
    require(identifier >= 0, "HDF5 has failed");
    return identifier;
}

/// An identifier of the library's, which is given back in the end.
class Id {
public:
    Id() = default;
    Id(hid_t identifier, herr_t (*close)(hid_t)) : _identifier(check(identifier)), _close(close) {}
    Id(Id&& other) noexcept : _identifier(std::exchange(other._identifier, -1)), _close(other._close) {}
    Id& operator=(Id&& other) noexcept {
        std::swap(_identifier, other._identifier);
        std::swap(_close, other._close);
        return *this;
    }
    ~Id() {
        if (_identifier >= 0) _close(_identifier);
    }
    operator hid_t() const { return _identifier; }

private:
    hid_t _identifier = -1;
    herr_t (*_close)(hid_t) = nullptr;
};

struct RealWithUnit {
    static constexpr std::size_t kUnitLength = 24;
    double value;
    char unit[kUnitLength];
};

Id textType(std::size_t length) {
    Id type(H5Tcopy(H5T_C_S1), H5Tclose);
    check(H5Tset_size(type, length));
    check(H5Tset_strpad(type, H5T_STR_NULLPAD));
    return type;
}

Id realType() {
    Id type(H5Tcreate(H5T_COMPOUND, sizeof(RealWithUnit)), H5Tclose);
    check(H5Tinsert(type, "value", HOFFSET(RealWithUnit, value), H5T_NATIVE_DOUBLE));
    check(H5Tinsert(type, "unit", HOFFSET(RealWithUnit, unit), textType(RealWithUnit::kUnitLength)));
    return type;
}

Id space(hsize_t elements) {
    return {H5Screate_simple(1, &elements, nullptr), H5Sclose};
}

Id groupProperties() {
    Id properties(H5Pcreate(H5P_GROUP_CREATE), H5Pclose);
    check(H5Pset_attr_phase_change(properties, 16, 8));
    check(H5Pset_obj_track_times(properties, false));
    return properties;
}

Id accessProperties() {
    Id properties(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
    check(H5Pset_libver_bounds(properties, H5F_LIBVER_LATEST, H5F_LIBVER_LATEST));
    check(H5Pset_meta_block_size(properties, 1 << 20));
    H5AC_cache_config_t cache;
    cache.version = H5AC__CURR_CACHE_CONFIG_VERSION;
    check(H5Pget_mdc_config(properties, &cache));
    cache.set_initial_size = true;
    cache.initial_size = 32 << 20;
    cache.max_size = 64 << 20;
    cache.min_size = 8 << 20;
    check(H5Pset_mdc_config(properties, &cache));
    return properties;
}

class Tree {
public:
    static constexpr const char* kEnding = "h5";
    static constexpr bool kLasts = true;
    struct tPath {
        std::string group;
        const char* property;
    };
    using tName = std::string;

    static tPath pathOf(Place place) { return {"/top/" + itemName(place.item), kNames[place.property].data()}; }
    static tName nameOf(unsigned int number) { return itemName(number); }
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) { return {file}; }

    void create(const std::filesystem::path& file) {
        _file = Id(H5Fcreate(file.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, accessProperties()), H5Fclose);
        _top = newGroup(_file, kTop.data());
    }
    void item(const std::string& name) { _item = newGroup(_top, name.c_str()); }
    void endItem() { _item = Id(); }
    void real(std::string_view name, std::string_view unit, double value) {
        const RealWithUnit real = withUnit(value, unit);
        add(name, _real, _one, _real, &real);
    }
    void vector(std::string_view name, std::string_view, tVector value) {
        add(name, H5T_NATIVE_DOUBLE, _three, H5T_NATIVE_DOUBLE, value.data());
    }
    void text(std::string_view name, std::string_view, std::string_view value) {
        add(name, _text, _one, _text, value.data());
    }
    void integers(std::string_view name, std::string_view, tIntegers value) {
        add(name, H5T_NATIVE_INT32, _eight, H5T_NATIVE_INT32, value.data());
    }
    void flag(std::string_view name, std::string_view, bool value) {
        const std::uint8_t byte = value ? 1 : 0;
        add(name, H5T_NATIVE_UINT8, _one, H5T_NATIVE_UINT8, &byte);
    }
    void child(const tName& name) { newGroup(_top, name.c_str()); }

    void open(const std::filesystem::path& file, tAccess access) {
        const unsigned int flags = access == tAccess::kWrite ? H5F_ACC_RDWR : H5F_ACC_RDONLY;
        _file = Id(H5Fopen(file.c_str(), flags, accessProperties()), H5Fclose);
        _top = openGroup(_file, kTop.data());
    }

    void flush() {
        check(H5Fflush(_file, H5F_SCOPE_GLOBAL));
        int* descriptor = nullptr;
        check(H5Fget_vfd_handle(_file, H5P_DEFAULT, reinterpret_cast<void**>(&descriptor)));
        require(::fsync(*descriptor) == 0, "the file is not flushed");
    }

    void close() {
        _item = Id();
        _top = Id();
        _file = Id();
    }

    void readTree(Checksum& sum) {
        Visit visit{*this, sum};
        check(H5Literate(_top, H5_INDEX_NAME, H5_ITER_NATIVE, nullptr, visitItem, &visit));
    }

    void read(const tPath& path, Checksum& sum) {
        const Id property(H5Aopen_by_name(_file, path.group.c_str(), path.property, H5P_DEFAULT, H5P_DEFAULT),
                          H5Aclose);
        take(property, path.property, sum);
    }

    void overwrite(const tPath& path, double value) {
        // An attribute that was opened by the path of its group cannot be written in this version.
        const Id group = openGroup(_file, path.group.c_str());
        const Id property(H5Aopen(group, path.property, H5P_DEFAULT), H5Aclose);
        const auto number = static_cast<unsigned int>(path.property[5] - '0');
        const RealWithUnit real = withUnit(value, unitOf(number));
        check(H5Awrite(property, _real, &real));
    }

    bool find(const tName& name) { return openGroup(_top, name.c_str()) >= 0; }

    std::size_t walk() {
        std::size_t length = 0;
        check(H5Literate(_top, H5_INDEX_NAME, H5_ITER_NATIVE, nullptr, visitName, &length));
        return length;
    }

private:
    struct Visit {
        Tree& tree;
        Checksum& sum;
    };

    static RealWithUnit withUnit(double value, std::string_view unit) {
        RealWithUnit real{value, {}};
        std::memcpy(real.unit, unit.data(), unit.size());
        return real;
    }

    Id newGroup(hid_t parent, const char* name) {
        return {H5Gcreate2(parent, name, H5P_DEFAULT, _groupProperties, H5P_DEFAULT), H5Gclose};
    }
    static Id openGroup(hid_t parent, const char* name) { return {H5Gopen2(parent, name, H5P_DEFAULT), H5Gclose}; }

    void add(std::string_view name, hid_t fileType, hid_t space, hid_t memoryType, const void* value) {
        const Id property(H5Acreate2(_item, name.data(), fileType, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
        check(H5Awrite(property, memoryType, value));
    }

    /// Adds an attribute whose kind shows in its type and its number of elements.
    void take(hid_t property, std::string_view name, Checksum& sum) {
        const Id type(H5Aget_type(property), H5Tclose);
        switch (H5Tget_class(type)) {
            case H5T_COMPOUND: {
                RealWithUnit real;
                check(H5Aread(property, _real, &real));
                return sum.real(name, {real.unit, ::strnlen(real.unit, sizeof(real.unit))}, real.value);
            }
            case H5T_FLOAT: {
                std::array<double, 3> value;
                require(elements(property) == value.size(), "a value has another length");
                check(H5Aread(property, H5T_NATIVE_DOUBLE, value.data()));
                return sum.vector(name, {}, tVector(value));
            }
            case H5T_STRING: {
                std::array<char, kTextLength> value;
                require(H5Tget_size(type) == value.size(), "a value has another length");
                check(H5Aread(property, _text, value.data()));
                return sum.text(name, {}, {value.data(), value.size()});
            }
            default:
                if (H5Tget_size(type) == sizeof(std::int32_t)) {
                    std::array<std::int32_t, 8> value;
                    require(elements(property) == value.size(), "a value has another length");
                    check(H5Aread(property, H5T_NATIVE_INT32, value.data()));
                    return sum.integers(name, {}, tIntegers(value));
                }
                std::uint8_t byte = 0;
                check(H5Aread(property, H5T_NATIVE_UINT8, &byte));
                return sum.flag(name, {}, byte != 0);
        }
    }

    static std::size_t elements(hid_t property) {
        const Id space(H5Aget_space(property), H5Sclose);
        return static_cast<std::size_t>(H5Sget_simple_extent_npoints(space));
    }

    // The library calls these from C: what they throw stops at them.
    static herr_t visitItem(hid_t top, const char* name, const H5L_info_t*, void* data) noexcept {
        const Id group = openGroup(top, name);
        return H5Aiterate2(group, H5_INDEX_NAME, H5_ITER_NATIVE, nullptr, visitProperty, data);
    }
    static herr_t visitProperty(hid_t group, const char* name, const H5A_info_t*, void* data) noexcept {
        auto& visit = *static_cast<Visit*>(data);
        const Id property(H5Aopen(group, name, H5P_DEFAULT), H5Aclose);
        visit.tree.take(property, name, visit.sum);
        return 0;
    }
    static herr_t visitName(hid_t, const char* name, const H5L_info_t*, void* data) noexcept {
        *static_cast<std::size_t*>(data) += std::strlen(name);
        return 0;
    }

    Id _real = realType();
    Id _text = textType(kTextLength);
    Id _one{H5Screate(H5S_SCALAR), H5Sclose};
    Id _three = space(3);
    Id _eight = space(8);
    Id _groupProperties = groupProperties();
    Id _file;
    Id _top;
    Id _item;
};

constexpr Row kRows[] = {
    {"hdf5", "W1", buildTree<Tree>}, {"hdf5", "W2", readTree<Tree>},  {"hdf5", "W3", lookUp<Tree>},
    {"hdf5", "W4", editTree<Tree>},  {"hdf5", "W4d", editTree<Tree>}, {"hdf5", "W5", wideSet<Tree>},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
