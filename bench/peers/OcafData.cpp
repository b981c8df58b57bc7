#include <TColStd_HArray1OfInteger.hxx>
#include <TColStd_HArray1OfReal.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDataStd_DataMapIteratorOfDataMapOfStringByte.hxx>
#include <TDataStd_DataMapIteratorOfDataMapOfStringHArray1OfInteger.hxx>
#include <TDataStd_DataMapIteratorOfDataMapOfStringHArray1OfReal.hxx>
#include <TDataStd_DataMapIteratorOfDataMapOfStringReal.hxx>
#include <TDataStd_DataMapIteratorOfDataMapOfStringString.hxx>
#include <TDataStd_Name.hxx>
#include <TDataStd_NamedData.hxx>
#include <string>
#include <string_view>

#include "bench/peers/Ocaf.h"
#include "bench/workloads/Checksum.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

// OCAF with fewer labels: all properties of an item in one attribute, a set of named values of each kind. A unit is a
// string beside the value, under the name of the property and ".unit". A third of the time of a label for each
// property, but its XML format keeps six digits of a real, so that there is no W6 and W7 of it.

namespace lvp::bench {

namespace {

using tText = TCollection_ExtendedString;
constexpr std::string_view kUnitSuffix = ".unit";

tText textOf(std::string_view text) {
    return tText(std::string(text).c_str());
}

tText unitName(std::string_view name) {
    return textOf(std::string(name).append(kUnitSuffix));
}

class Tree : public OcafDocument {
public:
    static constexpr bool kLasts = true;
    struct tPath {
        std::string item;
        tText property;
        tText unit;
        tKind kind;
    };

    static tPath pathOf(Place place) {
        const std::string_view name = kNames[place.property];
        return {"0:1:1:" + std::to_string(place.item + 1), textOf(name), unitName(name), kindOf(place.property)};
    }

    void item(const std::string& name) {
        const TDF_Label label = newLabel(top(), ++_items);
        TDataStd_Name::Set(label, textOf(name));
        _item = TDataStd_NamedData::Set(label);
    }
    void endItem() {}
    void real(std::string_view name, std::string_view unit, double value) {
        _item->SetReal(textOf(name), value);
        _item->SetString(unitName(name), textOf(unit));
    }
    void vector(std::string_view name, std::string_view, tVector value) {
        Handle(TColStd_HArray1OfReal) array = new TColStd_HArray1OfReal(1, static_cast<int>(value.size()));
        for (std::size_t i = 0; i < value.size(); ++i) array->SetValue(static_cast<int>(i) + 1, value[i]);
        _item->SetArrayOfReals(textOf(name), array);
    }
    void text(std::string_view name, std::string_view, std::string_view value) {
        _item->SetString(textOf(name), textOf(value));
    }
    void integers(std::string_view name, std::string_view, tIntegers value) {
        Handle(TColStd_HArray1OfInteger) array = new TColStd_HArray1OfInteger(1, static_cast<int>(value.size()));
        for (std::size_t i = 0; i < value.size(); ++i) array->SetValue(static_cast<int>(i) + 1, value[i]);
        _item->SetArrayOfIntegers(textOf(name), array);
    }
    void flag(std::string_view name, std::string_view, bool value) { _item->SetByte(textOf(name), value ? 1 : 0); }

    void readTree(Checksum& sum) {
        for (TDF_ChildIterator item(top()); item.More(); item.Next()) takeAll(*itemOf(item.Value()), sum);
    }

    void index() { useEntries(); }

    void read(const tPath& path, Checksum& sum) {
        const Handle(TDataStd_NamedData) item = itemOf(at(path.item));
        Narrow name;
        name.take(path.property);
        switch (path.kind) {
            case tKind::kReal: {
                Narrow unit;
                unit.take(item->GetString(path.unit));
                return sum.real(name.view(), unit.view(), item->GetReal(path.property));
            }
            case tKind::kVector:
                return takeVector(name.view(), *item->GetArrayOfReals(path.property), sum);
            case tKind::kText: {
                Narrow value;
                value.take(item->GetString(path.property));
                return sum.text(name.view(), {}, value.view());
            }
            case tKind::kIntegers:
                return takeIntegers(name.view(), *item->GetArrayOfIntegers(path.property), sum);
            case tKind::kFlag:
                return sum.flag(name.view(), {}, item->GetByte(path.property) != 0);
        }
    }

    void overwrite(const tPath& path, double value) { itemOf(at(path.item))->SetReal(path.property, value); }

private:
    static Handle(TDataStd_NamedData) itemOf(const TDF_Label& label) {
        Handle(TDataStd_NamedData) item;
        require(label.FindAttribute(TDataStd_NamedData::GetID(), item), "an item was not found");
        return item;
    }

    static void takeVector(std::string_view name, const TColStd_HArray1OfReal& array, Checksum& sum) {
        require(array.Length() == 3, "a value has another length");
        sum.vector(name, {}, tVector(&array.First(), 3));
    }

    static void takeIntegers(std::string_view name, const TColStd_HArray1OfInteger& array, Checksum& sum) {
        require(array.Length() == 8, "a value has another length");
        sum.integers(name, {}, tIntegers(&array.First(), 8));
    }

    static void takeAll(TDataStd_NamedData& item, Checksum& sum) {
        Narrow name;
        Narrow text;
        const TDataStd_DataMapOfStringString& strings = item.GetStringsContainer();
        for (TDataStd_DataMapIteratorOfDataMapOfStringReal real(item.GetRealsContainer()); real.More(); real.Next()) {
            name.take(real.Key());
            text.take(strings.Find(unitName(name.view())));
            sum.real(name.view(), text.view(), real.Value());
        }
        for (TDataStd_DataMapIteratorOfDataMapOfStringString string(strings); string.More(); string.Next()) {
            name.take(string.Key());
            if (name.view().ends_with(kUnitSuffix)) continue;
            text.take(string.Value());
            sum.text(name.view(), {}, text.view());
        }
        for (TDataStd_DataMapIteratorOfDataMapOfStringHArray1OfReal array(item.GetArraysOfRealsContainer());
             array.More(); array.Next()) {
            name.take(array.Key());
            takeVector(name.view(), *array.Value(), sum);
        }
        for (TDataStd_DataMapIteratorOfDataMapOfStringHArray1OfInteger array(item.GetArraysOfIntegersContainer());
             array.More(); array.Next()) {
            name.take(array.Key());
            takeIntegers(name.view(), *array.Value(), sum);
        }
        for (TDataStd_DataMapIteratorOfDataMapOfStringByte byte(item.GetBytesContainer()); byte.More(); byte.Next()) {
            name.take(byte.Key());
            sum.flag(name.view(), {}, byte.Value() != 0);
        }
    }

    Handle(TDataStd_NamedData) _item;
    int _items = 0;
};

}  // namespace

void runOcafData(const Case& run) {
    if (run.workload == "W1") return buildTree<Tree>(run);
    if (run.workload == "W2") return readTree<Tree>(run);
    if (run.workload == "W3") return lookUp<Tree>(run);
    editTree<Tree>(run);
}

}  // namespace lvp::bench
