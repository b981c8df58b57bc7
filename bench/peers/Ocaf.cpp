#include <BinDrivers.hxx>
#include <TDF_AttributeIterator.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDF_Data.hxx>
#include <TDataStd_AsciiString.hxx>
#include <TDataStd_Comment.hxx>
#include <TDataStd_Integer.hxx>
#include <TDataStd_IntegerArray.hxx>
#include <TDataStd_Name.hxx>
#include <TDataStd_Real.hxx>
#include <TDataStd_RealArray.hxx>
#include <TDocStd_Application.hxx>
#include <TDocStd_Document.hxx>
#include <XmlDrivers.hxx>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/peers/Ocaf.h"
#include "bench/workloads/Checksum.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

// OCAF, the framework for documents of Open CASCADE: a label for each item and property, with attributes for its name,
// value and unit. No undo and no transactions. Files are in the binary format, for W6 and W7 in the XML one; a flush
// writes the whole document, and makes it durable.
//
// Its own way to a label is the entry, a path of numbers ("ocaf", with the table of entries switched on). A path of
// names is followed by comparing the names of all children ("ocaf_names").

namespace lvp::bench {

namespace {

using tText = TCollection_ExtendedString;

tText textOf(std::string_view text) {
    return tText(std::string(text).c_str());
}

class Tree : public OcafDocument {
public:
    static constexpr bool kLasts = true;
    using tPath = std::string;
    using tName = tText;

    static tPath pathOf(Place place) {
        return "0:1:1:" + std::to_string(place.item + 1) + ":" + std::to_string(place.property + 1);
    }
    static tName nameOf(unsigned int number) { return textOf(itemName(number)); }

    using OcafDocument::OcafDocument;

    void create(const std::filesystem::path& file) {
        OcafDocument::create(file);
        TDataStd_Name::Set(top(), textOf(kTop));
    }
    void item(const std::string& name) {
        _item = newLabel(top(), ++_items);
        TDataStd_Name::Set(_item, textOf(name));
        _properties = 0;
    }
    void endItem() {}
    void real(std::string_view name, std::string_view unit, double value) {
        TDataStd_Real::Set(property(name, unit), value);
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        const auto array = TDataStd_RealArray::Set(property(name, unit), 1, static_cast<int>(value.size()));
        for (std::size_t i = 0; i < value.size(); ++i) array->SetValue(static_cast<int>(i) + 1, value[i]);
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        TDataStd_AsciiString::Set(property(name, unit),
                                  TCollection_AsciiString(value.data(), static_cast<int>(value.size())));
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        const auto array = TDataStd_IntegerArray::Set(property(name, unit), 1, static_cast<int>(value.size()));
        for (std::size_t i = 0; i < value.size(); ++i) array->SetValue(static_cast<int>(i) + 1, value[i]);
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        TDataStd_Integer::Set(property(name, unit), value ? 1 : 0);
    }
    void child(const tName& name) { TDataStd_Name::Set(newLabel(top(), ++_items), name); }

    void readTree(Checksum& sum) {
        for (TDF_ChildIterator item(top()); item.More(); item.Next()) {
            for (TDF_ChildIterator property(item.Value()); property.More(); property.Next()) {
                take(property.Value(), sum);
            }
        }
    }

    void index() { useEntries(); }
    void read(const tPath& path, Checksum& sum) { take(at(path), sum); }
    void overwrite(const tPath& path, double value) { TDataStd_Real::Set(at(path), value); }

    bool find(const tName& name) { return !find(top(), name).IsNull(); }

    std::size_t walk() {
        std::size_t length = 0;
        for (TDF_ChildIterator child(top()); child.More(); child.Next()) {
            Handle(TDataStd_Name) name;
            if (child.Value().FindAttribute(TDataStd_Name::GetID(), name)) {
                length += static_cast<std::size_t>(name->Get().Length());
            }
        }
        return length;
    }

protected:
    static TDF_Label find(const TDF_Label& parent, const tText& name) {
        for (TDF_ChildIterator child(parent); child.More(); child.Next()) {
            Handle(TDataStd_Name) found;
            if (child.Value().FindAttribute(TDataStd_Name::GetID(), found) && found->Get() == name) {
                return child.Value();
            }
        }
        return {};
    }

    static void take(const TDF_Label& label, Checksum& sum) {
        Narrow name;
        Narrow unit;
        const TDF_Attribute* value = nullptr;
        for (TDF_AttributeIterator attribute(label); attribute.More(); attribute.Next()) {
            const TDF_Attribute* const next = attribute.PtrValue();
            if (next->ID() == TDataStd_Name::GetID()) {
                name.take(static_cast<const TDataStd_Name*>(next)->Get());
            } else if (next->ID() == TDataStd_Comment::GetID()) {
                unit.take(static_cast<const TDataStd_Comment*>(next)->Get());
            } else {
                value = next;
            }
        }
        require(value, "a property has no value");
        if (value->ID() == TDataStd_Real::GetID()) {
            sum.real(name.view(), unit.view(), static_cast<const TDataStd_Real*>(value)->Get());
        } else if (value->ID() == TDataStd_RealArray::GetID()) {
            const auto& array = static_cast<const TDataStd_RealArray*>(value)->Array();
            require(array->Length() == 3, "a value has another length");
            sum.vector(name.view(), unit.view(), tVector(&array->First(), 3));
        } else if (value->ID() == TDataStd_AsciiString::GetID()) {
            const TCollection_AsciiString& text = static_cast<const TDataStd_AsciiString*>(value)->Get();
            sum.text(name.view(), unit.view(), {text.ToCString(), static_cast<std::size_t>(text.Length())});
        } else if (value->ID() == TDataStd_IntegerArray::GetID()) {
            const auto& array = static_cast<const TDataStd_IntegerArray*>(value)->Array();
            require(array->Length() == 8, "a value has another length");
            sum.integers(name.view(), unit.view(), tIntegers(&array->First(), 8));
        } else {
            sum.flag(name.view(), unit.view(), static_cast<const TDataStd_Integer*>(value)->Get() != 0);
        }
    }

private:
    TDF_Label property(std::string_view name, std::string_view unit) {
        const TDF_Label label = newLabel(_item, ++_properties);
        TDataStd_Name::Set(label, textOf(name));
        if (!unit.empty()) TDataStd_Comment::Set(label, textOf(unit));
        return label;
    }

    TDF_Label _item;
    int _items = 0;
    int _properties = 0;
};

/// The way by names.
class NamedTree : public Tree {
public:
    using tPath = std::pair<tText, tText>;
    static tPath pathOf(Place place) { return {textOf(itemName(place.item)), textOf(kNames[place.property])}; }
    void index() {}
    void read(const tPath& path, Checksum& sum) { take(Tree::find(Tree::find(top(), path.first), path.second), sum); }
};

/// W6: writes a document that is there already, in OCAF's own form of XML; W7 reads that one.
void writeDocument(const Case& run) {
    const auto document = run.file("xml");
    Tree tree(tOcafFormat::kXml);
    build(tree, document, run.count);
    const Measure measure = measured([&] { tree.save(); });
    run.report("W6", run.count, measure, bytesOf(document));
}

void readDocument(const Case& run) {
    const auto document = run.file("xml");
    Tree tree(tOcafFormat::kXml);
    const Measure measure = measured([&] { tree.open(document, tAccess::kRead); });
    run.report("W7", run.count, measure, bytesOf(document));
    Checksum sum;
    tree.readTree(sum);
    verify(sum, checksumOfTree(run.count));
}

constexpr Row kRows[] = {
    {"ocaf", "W1", buildTree<Tree>},  {"ocaf", "W2", readTree<Tree>},    {"ocaf", "W3", lookUp<Tree>},
    {"ocaf", "W4", editTree<Tree>},   {"ocaf", "W4d", editTree<Tree>},   {"ocaf", "W5", wideSet<Tree>},
    {"ocaf", "W6", writeDocument},    {"ocaf", "W7", readDocument},      {"ocaf_names", "W3", lookUp<NamedTree>},
    {"ocaf-data", "W1", runOcafData}, {"ocaf-data", "W2", runOcafData},  {"ocaf-data", "W3", runOcafData},
    {"ocaf-data", "W4", runOcafData}, {"ocaf-data", "W4d", runOcafData},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
