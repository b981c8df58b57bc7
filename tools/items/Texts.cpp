#include "tools/items/Texts.h"

#include "tools/base/ExitStatus.h"
#include "tools/items/Items.h"

namespace lvp::tool {

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
    }
}

}  // namespace lvp::tool
