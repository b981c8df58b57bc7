#include <iostream>
#include <memory>
#include <sstream>

#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/Kinds.h"
#include "tools/base/Text.h"
#include "tools/base/Units.h"
#include "tools/base/Values.h"
#include "tools/items/ItemJson.h"
#include "tools/items/Items.h"

namespace lvp::tool {

namespace {

struct tOptions {
    std::string store;
    std::string path;
    bool json = false;
};

/// Prints values as `set` takes them: texts one a line, anything else on one line with the unit behind it.
class ValuePrinter : public IVisitor {
public:
    void primitive(const tPrimitive& item) override {
        if (item.flags & kExternal) {
            std::cout << shown(utf8(item.uri)) << '\n';
            return;
        }
        const std::vector<std::string> values = valuesOf(item.valuetype, bytesOf(item));
        if (formOf(item.valuetype) == tForm::kTexts) {
            for (const std::string& value : values) std::cout << shown(value) << '\n';
            return;
        }
        for (std::size_t i = 0; i < values.size(); ++i) std::cout << (i == 0 ? "" : " ") << values[i];
        if (item.units != lumivard::platform::data::units::kNoUnit) {
            std::cout << (values.empty() ? "" : " ") << unitName(item.units);
        }
        std::cout << '\n';
    }

private:
    /// A program that reads on gets the text as it is.
    std::string shown(const std::string& text) const { return _terminal ? printable(text) : text; }

    bool _terminal = isTerminalOutput();
};

tExitStatus get(const tOptions& options) {
    const auto store = openToRead(options.store);
    requireSetUp(*store, options.store);
    const tItem kind = itemAt(*store, options.path);
    if (kind == tItem::kNothing) refusePath(*store, options.store, options.path);
    if (kind != tItem::kPrimitive) {
        throw Failure(kWrongUsage, options.path + " in the store " + options.store +
                                       " is no value: lvp-data ls lists what it holds, tree shows all of it");
    }
    if (options.json) {
        std::ostringstream out;  // a whole object or none
        JsonWriter json(out);
        ItemJson item(json, {.hidden = true});
        visit(*store, options.path, item);
        item.finish();
        std::cout << out.str() << '\n';
    } else {
        ValuePrinter printer;
        visit(*store, options.path, printer);
    }
    flushOutput();
    return kDone;
}

}  // namespace

void declareGet(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("get", "Print a value, with its unit", "get materials.lvp Carbon.Graphite.Density",
             [options] { return get(*options); })
        .store(options->store)
        .item(options->path)
        .json(options->json);
}

}  // namespace lvp::tool
