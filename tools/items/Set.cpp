#include <memory>

#include "lumivard/platform/data/metadata/IPrimitive.h"
#include "tools/Verbs.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/Files.h"
#include "tools/base/Kinds.h"
#include "tools/base/Units.h"
#include "tools/items/Items.h"
#include "tools/items/Texts.h"
#include "tools/items/Typed.h"

namespace lvp::tool {

using lumivard::platform::data::metadata::IPrimitive;
namespace units = lumivard::platform::data::units;

namespace {

struct tOptions {
    std::string store;
    std::string path;
    std::vector<std::string> words;
    std::string unit;
    std::string uri;
    std::vector<std::string> texts;
};

/// A value is a label on numbers and never converted, so its unit stays what it is.
void requireUnit(const tOptions& options, units::tUnit given, units::tUnit has) {
    if (given == units::kNoUnit || given == has) return;
    const std::string item = options.path + " in the store " + options.store;
    throw Failure(kWrongUsage, (has == units::kNoUnit ? item + " has no unit" : item + " is in " + unitName(has)) +
                                   ", and a value keeps the unit that it was made with: rm and mk make it anew");
}

void setValue(IDataStore& store, const tOptions& options) {
    const auto property = propertyAt(store, options.path);
    IPrimitive* const primitive = IPrimitive::to(property.get());
    if (!primitive) {
        const tItem kind = itemAt(store, options.path);
        if (kind == tItem::kNothing) refusePath(store, options.store, options.path);
        throw Failure(kWrongUsage, options.path + " in the store " + options.store +
                                       (kind == tItem::kPrimitive ? " stands at the top, where values cannot be changed"
                                                                  : " is no value: only its texts can be set"));
    }
    if (!options.uri.empty()) {
        if (!options.words.empty()) throw Failure(kWrongUsage, "give values or --uri, not both");
        if (!primitive->uri(wide(options.uri))) throw Failure(kCannotFinish, "the URI is too long");
        return;
    }
    const tTyped value = typedValue(primitive->valuetype(), options.words, options.unit);
    const bool ofBytes = formOf(primitive->valuetype()) == tForm::kBytes && !options.words.empty();
    if (value.bytes.empty() && !ofBytes) throw Failure(kWrongUsage, "give the value before its unit");
    requireUnit(options, value.unit, primitive->units());
    if (!put(*primitive, value)) throw Failure(kCannotFinish, "the value is too long");
}

tExitStatus set(const tOptions& options) {
    ChangedStore store(options.store, false);
    requireSetUp(*store, options.store);
    if (itemAt(*store, options.path) == tItem::kNothing) refusePath(*store, options.store, options.path);
    const bool ofValue = !options.words.empty() || !options.uri.empty() || !options.unit.empty();
    if (!ofValue && options.texts.empty()) throw Failure(kWrongUsage, "nothing to set: give values, --uri or --text");
    if (ofValue) setValue(*store, options);
    setTexts(*store, options.store, options.path, options.texts);
    store.keep();
    return kDone;
}

}  // namespace

void declareSet(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("set", "Change a value, or what an item is called in a language",
             "set materials.lvp Carbon.Graphite.Density 1800 KilogramPerCubicMeter",
             [options] { return set(*options); })
        .store(options->store)
        .item(options->path)
        .optionalArguments("VALUE", options->words,
                           "Numbers, truth values, texts, or bytes in base64; behind numbers the unit")
        .option("--unit", options->unit, "The unit by name; it must be the one that the value has")
        .option("--uri", options->uri, "Where the value is to be found, in its place")
        .options("--text", options->texts, "LOCALE=TEXT: what the item is called; no TEXT removes it");
}

}  // namespace lvp::tool
