// diff tells exactly what was done to a copy, and bears what a store may hold.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "lumivard/platform/stores.h"
#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
namespace stores = lumivard::platform::stores;

/// A tree of groups and numbers in which each name and each value is there once, so that it can be told what is what.
class Tree {
public:
    explicit Tree(unsigned int seed) : _random(seed) {
        _items.emplace_back();
        for (int i = 0; i < 150; ++i) add(anySet(), chance(3));
    }

    bool chance(int of) { return below(of) == 0; }
    int below(int end) { return std::uniform_int_distribution(0, end - 1)(_random); }

    /// Does one random thing and gives the line that tells of it; empty where it cannot be done.
    std::string change() {
        const int item = 1 + below(static_cast<int>(_items.size()) - 1);
        switch (below(5)) {
            case 0:
                return changeText(item);
            case 1:
                return addSomewhere();
            case 2:
                return remove(item);
            case 3:
                return move(item);
            default:
                return changeValue(item);
        }
    }

    /// The document, with what each set holds in any order.
    std::string document() {
        std::ostringstream out;
        out << "<root name='r'><group name='top'>";
        write(0, out);
        out << "</group></root>";
        return out.str();
    }

private:
    struct tItem {
        bool set = true;
        int parent = 0;
        std::string name;
        int value = 0;
        std::string unit;
        std::string text;
        std::vector<int> held;
        bool touched = false;  ///< something was done to it, or it was not there at first
    };

    tItem& at(int item) { return _items[static_cast<std::size_t>(item)]; }

    int add(int parent, bool set) {
        const int item = static_cast<int>(_items.size());
        tItem made;
        made.set = set;
        made.parent = parent;
        made.name = "i" + std::to_string(item);
        made.value = 1000 + item;
        if (!set && chance(2)) made.unit = chance(2) ? "Meter" : "Inch";
        if (chance(3)) made.text = "t" + std::to_string(item);
        _items.push_back(made);
        at(parent).held.push_back(item);
        return item;
    }

    int anySet() {
        for (;;) {
            const int item = below(static_cast<int>(_items.size()));
            if (at(item).set && !at(item).touched) return item;
        }
    }

    std::string path(int item) {
        std::string path = at(item).name;
        for (item = at(item).parent; item != 0; item = at(item).parent) path = at(item).name + "." + path;
        return "top." + path;
    }

    std::vector<int> subtree(int item) {
        std::vector<int> all{item};
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (const int held : at(all[i]).held) all.push_back(held);
        }
        return all;
    }

    std::string kind(int item) {
        if (!at(item).set) return "[int32]";
        const std::size_t held = subtree(item).size() - 1;
        if (held == 0) return "[group]";
        return "[group, " + std::to_string(held) + (held == 1 ? " item]" : " items]");
    }
    std::string content(int item) {
        if (at(item).set) return {};
        return " = " + std::to_string(at(item).value) + (at(item).unit.empty() ? "" : " " + at(item).unit);
    }

    std::string changeValue(int item) {
        if (at(item).set || at(item).touched) return {};
        at(item).touched = true;
        if (!at(item).unit.empty() && chance(2)) {
            const std::string unit = at(item).unit;
            at(item).unit = "Foot";
            return "~ " + path(item) + ": unit " + unit + " -> Foot";
        }
        const std::string line = "~ " + path(item) + ": " + std::to_string(at(item).value) + " -> " +
                                 std::to_string(at(item).value + 100'000);
        at(item).value += 100'000;
        return at(item).unit.empty() ? line : line + " " + at(item).unit;
    }

    std::string changeText(int item) {
        if (at(item).touched) return {};
        at(item).touched = true;
        const std::string before = at(item).text;
        at(item).text = before.empty() || chance(2) ? "new" : "";
        const auto shown = [](const std::string& text) { return text.empty() ? "(none)" : "\"" + text + "\""; };
        return "~ " + path(item) + ": text xx " + shown(before) + " -> " + shown(at(item).text);
    }

    std::string addSomewhere() {
        const int parent = anySet();
        const int item = add(parent, false);
        at(item).touched = true;
        if (parent != 0) at(parent).touched = true;
        return "+ " + path(item) + content(item) + " " + kind(item);
    }

    /// Takes an item out of its place, if nothing was done to it or below it. What it stood in stays: of a set that is
    /// gone or has moved nothing else is told.
    bool take(int item) {
        const std::vector<int> all = subtree(item);
        if (std::any_of(all.begin(), all.end(), [this](int each) { return at(each).touched; })) return false;
        for (const int each : all) at(each).touched = true;
        std::erase(at(at(item).parent).held, item);
        if (at(item).parent != 0) at(at(item).parent).touched = true;
        return true;
    }

    std::string remove(int item) {
        const std::string line = "- " + path(item) + content(item) + " " + kind(item);
        return take(item) ? line : std::string();
    }

    std::string move(int item) {
        const std::string from = path(item);
        const int old = at(item).parent;
        if (!take(item)) return {};
        const int parent = anySet();
        at(item).parent = parent;
        at(parent).held.push_back(item);
        if (parent == old) return {};
        if (parent != 0) at(parent).touched = true;
        return "> " + from + " -> " + path(item) + " " + kind(item);
    }

    void write(int set, std::ostringstream& out) {
        std::vector<int> held = at(set).held;
        std::shuffle(held.begin(), held.end(), _random);
        for (const int item : held) {
            const tItem& each = at(item);
            out << (each.set ? "<group" : "<int32") << " name='" << each.name << "'";
            if (!each.unit.empty()) out << " units='" << each.unit << "'";
            out << '>';
            if (!each.text.empty()) out << "<name locale='xx'>" << each.text << "</name>";
            if (each.set) write(item, out);
            if (!each.set) out << "<val>" << each.value << "</val>";
            out << (each.set ? "</group>" : "</int32>");
        }
    }

    std::mt19937 _random;
    std::vector<tItem> _items;
};

class DiffRandom : public Tool {
protected:
    static std::string sorted(const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) lines.push_back(line + "\n");
        std::sort(lines.begin(), lines.end());
        std::string all;
        for (const std::string& line : lines) all += line;
        return all;
    }

    void write(const std::string& name, const std::string& document) const { std::ofstream(path(name)) << document; }
};

TEST_F(DiffRandom, ChangesOfACopyAreTold) {
    const unsigned int first = std::random_device()();
    for (unsigned int seed = first; seed != first + 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Tree tree(seed);
        write("a.xml", tree.document());
        std::string expected;
        for (int i = tree.below(12); i > 0; --i) {
            const std::string line = tree.change();
            if (!line.empty()) expected += line + "\n";
        }
        write("b.xml", tree.document());
        const tRun told = run("diff " + path("a.xml") + " " + path("b.xml"));
        ASSERT_EQ(sorted(told.out), sorted(expected)) << told.err;
        ASSERT_EQ(told.status, expected.empty() ? 0 : 1);
    }
}

TEST_F(DiffRandom, RecordsOfAnyBytesAreBorne) {
    const unsigned int first = std::random_device()();
    const std::string sound = path("sound.lvp");
    ASSERT_EQ(run("import " + materials + " " + sound + " --schemas " + schemas).status, 0);
    for (unsigned int seed = first; seed != first + 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto below = [&](unsigned long long end) {
            return static_cast<unsigned int>(std::uniform_int_distribution<unsigned long long>(0, end - 1)(random));
        };
        const std::string spoilt = path("spoilt.lvp");
        std::filesystem::copy_file(sound, spoilt, std::filesystem::copy_options::overwrite_existing);
        {
            const auto store = stores::file(spoilt, stores::tMode::kWrite);
            for (unsigned int i = 1 + below(100); i > 0; --i) {
                const unsigned int offset = below(store->extent());
                std::string bytes(store->size(offset), '\0');
                if (bytes.empty()) continue;
                store->read(offset, bytes.data(), 0xFFFFFFFFu);
                for (unsigned int j = 1 + below(8); j > 0; --j) {
                    bytes[below(bytes.size())] = static_cast<char>(below(3) == 0 ? below(256) : below(8));
                }
                if (below(4) == 0) bytes.resize(1 + below(bytes.size()));
                store->update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
            }
            store->flush();
        }
        const std::string options[] = {"", "--json", "--html", "--hidden --order", "--tolerance 1e-3 --ignore '**.D*'"};
        const std::string with = " " + options[below(std::size(options))];
        for (const std::string& both : {sound + " " + spoilt, spoilt + " " + sound, spoilt + " " + spoilt}) {
            const tRun told = run("diff " + both + with);
            ASSERT_TRUE(told.status == 0 || told.status == 1 || told.status == 3) << told.status << told.err;
            ASSERT_EQ(told.err.find("runtime error"), told.err.npos) << told.err;
        }
    }
}

}  // namespace
