#pragma once

#include <string>
#include <vector>

#include "tools/diff/Glob.h"
#include "tools/diff/Model.h"

namespace lvp::tool {

/// What of a side is left out.
struct tExtent {
    bool hidden = false;                 ///< take in hidden defaults
    const std::vector<Glob>* ignored{};  ///< paths that are not looked at
    std::string as;                      ///< the path under which patterns see the item that is compared
};

/// Takes a store, or an item of it, into a model.
class ModelReader : public IVisitor {
public:
    ModelReader(TextPool& pool, Model& model, const tExtent& extent, bool wholeStore);

    void root(const tRoot& shown) override;
    void primitive(const tPrimitive& item) override;
    bool table(const tTable& item) override;
    bool container(const tContainer& item) override;
    void text(std::wstring_view locale, std::wstring_view text) override;
    void unitDefault(tUnit units, lumivard::platform::data::metadata::tValue valuetype) override;
    void leave() override;

    /// The path of the set that is being read.
    std::string where() const;

    /// Ends the reading. Before it the model must not be used.
    void finish();

private:
    bool takes(std::wstring_view name, unsigned char flags);
    bool isIgnored(std::wstring_view name);
    void add(Model::tItem& item, std::wstring_view name);
    void enter(Model::tItem& item, std::wstring_view name);
    void note(tAspect aspect, std::wstring_view text, std::uint32_t key = 0);

    TextPool& _pool;
    Model& _model;
    const tExtent& _extent;
    std::vector<Model::tIndex> _open;                ///< the sets that are entered, innermost last
    std::vector<std::vector<Glob::tState>> _states;  ///< of the patterns behind their paths, and the dot if one comes
    std::vector<Glob::tState> _here;                 ///< of the item that is looked at
    Model::tIndex _last = Model::kNone;              ///< the item of which texts come, if any
};

}  // namespace lvp::tool
