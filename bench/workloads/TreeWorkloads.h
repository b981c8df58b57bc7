#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Data.h"
#include "bench/workloads/Measure.h"
#include "bench/workloads/Program.h"

// The workloads on a tree, W1 to W5, for whatever can hold one. An engine is a class that has:
//
//     kEnding                     what its files end with
//     kLasts                      whether a tree outlives the engine in a file; if not, `open` is never called
//     tPath, pathOf(place)        a property's path in the form that a client of the engine would keep it in
//     tName, nameOf(number)       the same for the name of a child
//     create(file)                begins a new tree in a new file, with its top group
//     item(name), endItem()       an item under the top; what comes in between are its properties, for which the engine
//                                 is a sink (see `give`)
//     child(name)                 a child of the top without properties
//     open(file, access)          opens a tree that lasts
//     flush()                     makes everything so far durable
//     close()                     gives everything back
//     readTree(sum)               walks over all and adds each property to a sum
//     index()                     gets ready for lookups, where the client has to do something for that; may be missing
//     read(path, sum)             adds one property to a sum
//     overwrite(path, value)      puts another value into a double
//     find(name)                  whether the top has a child of that name, as far as it takes to use the child
//     walk()                      the sum of the lengths of all children's names
//     files(file)                 the files that a tree lies in, the first of them first
//
// Only what its workloads need has to be there. Paths and names are made and indexes built before the clock runs;
// opening is a part of W2 and of no other workload, and closing of none. Whatever was written is read back and compared
// after the clock has stopped.

namespace lvp::bench {

constexpr unsigned int kLookups = 100'000;
constexpr unsigned int kEdits = 10'000;
constexpr unsigned int kDurableEdits = 200;

/// Between how many steps the clock is looked at: steps take from 0.1 microseconds to 20 milliseconds.
constexpr unsigned int kStride = 16;

enum class tAccess { kRead, kWrite };

template <class Engine>
std::uintmax_t bytesOfTree(const std::filesystem::path& file) {
    std::uintmax_t sum = 0;
    for (const auto& part : Engine::files(file)) sum += bytesOf(part);
    return sum;
}

template <class Engine>
void removeTree(const std::filesystem::path& file) {
    for (const auto& part : Engine::files(file)) std::filesystem::remove(part);
}

template <class Engine>
void build(Engine& engine, const std::filesystem::path& file, unsigned int properties) {
    engine.create(file);
    for (unsigned int item = 0; item < properties / kPropertiesOfItem; ++item) {
        engine.item(itemName(item));
        giveItem(item, engine);
        engine.endItem();
    }
}

/// Opens the tree that W1 has left, or makes it where none lasts, for lookups.
template <class Engine>
void standUp(Engine& engine, const Case& run, const std::filesystem::path& file, tAccess access) {
    if constexpr (Engine::kLasts) {
        engine.open(file, access);
    } else {
        build(engine, file, run.count);
    }
    if constexpr (requires { engine.index(); }) engine.index();
}

/// W1: builds the tree in a new file, with one durable flush at the end.
template <class Engine>
void buildTree(const Case& run) {
    const auto file = run.file(Engine::kEnding);
    removeTree<Engine>(file);
    Engine engine;
    const Measure measure = measured([&] {
        build(engine, file, run.count);
        engine.flush();
    });
    engine.close();
    run.report("W1", run.count, measure, bytesOfTree<Engine>(file));
}

/// W2: opens the file, walks over everything, and reads each property's name, kind, unit and value.
template <class Engine>
void readTree(const Case& run) {
    const auto file = run.file(Engine::kEnding);
    Engine engine;
    if constexpr (!Engine::kLasts) build(engine, file, run.count);
    Checksum sum;
    const Measure measure = measured([&] {
        if constexpr (Engine::kLasts) engine.open(file, tAccess::kRead);
        engine.readTree(sum);
    });
    run.report("W2", run.count, measure, bytesOfTree<Engine>(file));
    verify(sum, checksumOfTree(run.count));
}

/// W3: looks up random properties by path and reads their values, as many as there is patience for.
template <class Engine>
void lookUp(const Case& run) {
    const std::vector<Place> places = lookupsIn(run.count, kLookups);
    std::vector<typename Engine::tPath> paths;
    paths.reserve(places.size());
    for (const Place place : places) paths.push_back(Engine::pathOf(place));
    const auto file = run.file(Engine::kEnding);
    Engine engine;
    standUp(engine, run, file, tAccess::kRead);
    Checksum sum;
    unsigned int done = 0;
    const Measure measure = measured(
        [&] { done = repeat(kLookups, kStride, [&](unsigned int number) { engine.read(paths[number], sum); }); });
    run.report("W3", kLookups, done, measure, bytesOfTree<Engine>(file));
    verify(sum, checksumOfPlaces(places, done));
}

/// W4: overwrites random values, with one flush at the end. W4d: with one after each, as many as there is patience for.
template <class Engine>
void editTree(const Case& run) {
    const bool eachDurable = run.workload == "W4d";
    const unsigned int wanted = eachDurable ? kDurableEdits : kEdits;
    const std::vector<Place> edits = editsIn(run.count, wanted);
    std::vector<typename Engine::tPath> paths;
    paths.reserve(edits.size());
    for (const Place place : edits) paths.push_back(Engine::pathOf(place));
    const auto file = run.scratch(Engine::kEnding);
    if constexpr (Engine::kLasts) {
        removeTree<Engine>(file);
        copyFile(run.file(Engine::kEnding), file);
    }
    Engine engine;
    standUp(engine, run, file, tAccess::kWrite);
    unsigned int done = 0;
    const Measure measure = measured([&] {
        if (eachDurable) {
            done = repeat(wanted, 1, [&](unsigned int number) {
                engine.overwrite(paths[number], editOf(number));
                engine.flush();
            });
        } else {
            done =
                repeat(wanted, kStride, [&](unsigned int number) { engine.overwrite(paths[number], editOf(number)); });
            engine.flush();
        }
    });
    run.report(run.workload, wanted, done, measure, bytesOfTree<Engine>(file));
    if constexpr (Engine::kLasts) {
        engine.close();
        engine.open(file, tAccess::kRead);
    }
    Checksum sum;
    engine.readTree(sum);
    verify(sum, checksumAfterEdits(run.count, edits, done));
    engine.close();
    removeTree<Engine>(file);
}

/// W5: one group of N children is built, each child is looked up by name once, and all are walked over.
template <class Engine>
void wideSet(const Case& run) {
    std::vector<typename Engine::tName> names;
    names.reserve(run.count);
    std::uintmax_t length = 0;
    for (unsigned int number = 0; number < run.count; ++number) {
        names.push_back(Engine::nameOf(number));
        length += itemName(number).size();
    }
    const std::vector<unsigned int> order = shuffled(run.count, 1);
    const auto file = run.scratch(Engine::kEnding);
    removeTree<Engine>(file);
    Engine engine;
    const Measure building = measured([&] {
        engine.create(file);
        for (const auto& name : names) engine.child(name);
        engine.flush();
    });
    run.report("W5.build", run.count, building, bytesOfTree<Engine>(file));

    unsigned int found = 0;
    unsigned int done = 0;
    const Measure looking = measured([&] {
        done = repeat(run.count, kStride, [&](unsigned int number) { found += engine.find(names[order[number]]); });
    });
    run.report("W5.lookup", run.count, done, looking, 0);
    require(found == done, "a child was not found");

    std::uintmax_t walked = 0;
    const Measure walking = measured([&] { walked = engine.walk(); });
    run.report("W5.walk", run.count, walking, 0);
    require(walked == length, "the walk over the children has missed some");
    engine.close();
    removeTree<Engine>(file);
}

}  // namespace lvp::bench
