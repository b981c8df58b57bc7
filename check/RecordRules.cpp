#include "check/RecordRules.h"

#include <algorithm>

#include "check/TextRules.h"
#include "check/Units.h"
#include "design/Stride.h"
#include "record/Anatomy.h"
#include "record/Container.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"

namespace lumivard::platform::data::Check {

namespace {

using Record::tSection;

/// The judgement of one record.
class Judge {
public:
    Judge(Case& subject, tNode& node) : _case(subject), _node(node) {}

    void run() {
        _node.kind = Record::peek(&_case.store, _node.offset);
        switch (_node.kind) {
            case Record::kRoot:
                return entity(Record::Root(&_case.store, _node.offset));
            case Record::kContainer:
                return container(Record::Container(&_case.store, _node.offset));
            case Record::kTable:
                return table(Record::Table(&_case.store, _node.offset));
            case Record::kPrimitive:
                return primitive(Record::Primitive(&_case.store, _node.offset));
            case Record::kOffsets:
                return list(Record::Offsets(&_case.store, _node.offset));
            case Record::kLocale:
                return locale(Record::Locale(&_case.store, _node.offset));
        }
        add(kKind, "its kind is " + std::to_string(_node.kind));
    }

private:
    void add(tRule rule, std::string found, std::string repair = {}) {
        _case.findings.add(rule, _node.offset, std::move(found), std::move(repair));
    }

    /// What all records are judged by; false for one that is too short for its kind.
    bool form(const Record::Base& record) {
        _node.size = record.size();
        const Record::Anatomy anatomy(record);
        if (!anatomy.fits()) {
            add(kShort, std::string(kindName(_node.kind)) + " of " + std::to_string(record.size()) +
                            " bytes in place of " + std::to_string(anatomy.fixed()));
            return false;
        }
        if (!anatomy.zeros()) add(kReserved, "bytes of the fixed part that mean nothing are not 0");
        _node.sound = true;
        for (const tSection& section : anatomy.sections()) {
            if (section.fits()) continue;
            _node.sound = false;
            add(kSection, std::string(nameOf(section.field)) + " claims " + std::to_string(section.claimed) +
                              " bytes, of which " + std::to_string(section.bytes.size()) + " are there");
        }
        if (!anatomy.rest().empty() && _node.kind != Record::kOffsets) {
            add(kRest, std::to_string(anatomy.rest().size()) + " bytes lie behind the last section");
        }
        for (const tSection& section : anatomy.sections()) {
            if (section.fits() && isText(section.field)) {
                judgeText(_case, _node.offset, nameOf(section.field), section.bytes, section.field == nameField());
            }
        }
        return true;
    }

    /// The position of the length of the name.
    unsigned int nameField() const {
        switch (_node.kind) {
            case Record::kRoot:
                return Record::Root::kNameLength;
            case Record::kContainer:
                return Record::Container::kName;
            case Record::kTable:
                return Record::Table::kName;
            default:
                return Record::Primitive::kName;
        }
    }

    /// All sections are texts but for values and localized names, which are looked at elsewhere.
    bool isText(unsigned int field) const {
        return _node.kind != Record::kLocale &&
               !(_node.kind == Record::kPrimitive && field == Record::Primitive::kValue);
    }

    const char* nameOf(unsigned int field) const {
        if (_node.kind == Record::kLocale) return "the texts' section";
        if (field == nameField()) return "its name";
        if (_node.kind == Record::kContainer) return field == Record::Container::kBase ? "its base" : "its target";
        if (_node.kind == Record::kTable || field == Record::Primitive::kBase) return "its base";
        return field == Record::Primitive::kValue ? "its value" : "the locale of its value";
    }

    void entity(const Record::Entity& record) {
        form(record);
        _node.whole = record.whole();
        _node.parent = record.parent();
        _node.refs = record.refs();
        _node.locale = record.locale();
        _node.children = record.children();
        constexpr unsigned int kShared = Record::kOptional | Record::kInherited | Record::kHidden;
        const unsigned int meant = _node.kind == Record::kPrimitive ? kShared | Record::kExternal : kShared;
        if (record.flags() & ~meant) add(kFlags, "its flags are " + std::to_string(record.flags()));
    }

    void container(const Record::Container& record) {
        entity(record);
        constexpr unsigned char kLast = 2;
        if (record.kind() > kLast) add(kContainerType, "its type is " + std::to_string(record.kind()));
    }

    void table(const Record::Table& record) {
        entity(record);
        _node.defaults = record.defaults();
    }

    void primitive(const Record::Primitive& record) {
        entity(record);
        if (record.size() < Record::Primitive::kFixed) return;
        if (!isUnit(record.units())) add(kUnit, "its unit is " + std::to_string(record.units()));
        const auto kind = static_cast<metadata::tValue>(record.valuetype());
        const unsigned int stride = Design::stride(kind);
        if (stride == 0) add(kValueKind, "its kind of value is " + std::to_string(record.valuetype()));
        if (!_node.sound) return;
        const auto value = record.section(Record::Primitive::kValue);
        if (record.flags() & Record::kExternal) {
            judgeText(_case, _node.offset, "its URI", value, true);
        } else if (stride != 0) {
            values(kind, stride, value);
        }
    }

    void values(metadata::tValue kind, unsigned int stride, std::span<const char> value) {
        if (value.size() % stride != 0) {
            add(kValueSize, std::to_string(value.size()) + " bytes, in elements of " + std::to_string(stride));
        }
        if (!_case.options.whole) return;
        const bool isText = kind >= metadata::kUUID && kind <= metadata::kVersion;
        if (isText && !areCharacters(value)) add(kValueContent, "a text holds a number that is no character");
        const auto isTruth = [](char byte) { return byte == 0 || byte == 1; };
        if (kind == metadata::kBool && !std::all_of(value.begin(), value.end(), isTruth)) {
            add(kValueContent, "a truth value is neither 0 nor 1");
        }
    }

    void list(const Record::Offsets& record) {
        if (!form(record)) return;
        const auto part = Record::Anatomy(record).rest().size();
        if (part == 0) return;
        // Entries are added behind the last byte: the next one would be torn.
        const std::string found = "the list ends in " + std::to_string(part) + " bytes of an entry";
        if (_case.findings.add(kListSize, _node.offset, found, "the part is cut off")) _case.edits.cut(_node.offset);
    }

    void locale(const Record::Locale& record) {
        if (!form(record) || !_node.sound) return;
        judgePairs(_case, _node.offset, Record::Anatomy(record).sections().front().bytes);
    }

    Case& _case;
    tNode& _node;
};

}  // namespace

void judgeRecord(Case& subject, unsigned int number) {
    subject.reading(number, [&] { Judge(subject, subject.census[number]).run(); });
}

}  // namespace lumivard::platform::data::Check
