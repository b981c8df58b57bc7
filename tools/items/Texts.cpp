#include "tools/items/Texts.h"

#include "tools/base/ExitStatus.h"
#include "tools/items/Items.h"

namespace lvp::tool {

namespace {

/// Sees whether an item is called something in a locale.
class Localized : public IVisitor {
public:
    explicit Localized(std::string locale) : _locale(std::move(locale)) {}

    void primitive(const tPrimitive&) override { ++_items; }
    bool table(const tTable&) override { return _items++ == 0; }
    bool container(const tContainer&) override { return _items++ == 0; }
    void text(std::wstring_view locale, std::wstring_view) override {
        if (_items == 1 && utf8(locale) == _locale) found = true;
    }

    bool found = false;

private:
    std::string _locale;
    unsigned int _items = 0;
};

}  // namespace

void setTexts(IDataStore& store, const std::string& storeName, const std::string& path,
              const std::vector<std::string>& texts) {
    // An object goes by stale places once it has removed a text: each text gets one of its own.
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == 0 || equals == std::string::npos) {
            throw Failure(kWrongUsage, "\"" + text + "\" is no text: give LOCALE=TEXT, such as de-de=Stahl");
        }
        const WideString locale = wide(text.substr(0, equals));
        const WideString words = wide(text.substr(equals + 1));
        if (const auto container = containerAt(store, path)) {
            container->describe(locale, words);
        } else if (const auto property = propertyAt(store, path)) {
            property->describe(locale, words);
        } else {
            throw Failure(kWrongUsage, path + " in the store " + storeName +
                                           " stands at the top beside containers, where texts cannot be changed");
        }
        if (words.length() != 0) continue;
        Localized seen(text.substr(0, equals));
        visit(store, path, seen);
        if (!seen.found) continue;
        throw Failure(kCannotFinish, "what " + path + " is called in " + text.substr(0, equals) +
                                         " is its only text, and the last text of an item cannot be removed: give "
                                         "another one");
    }
}

}  // namespace lvp::tool
