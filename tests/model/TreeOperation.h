#pragma once

#include <array>
#include <string>
#include <vector>

#include "tests/model/TreeObject.h"

namespace lumivard::platform::model {

/// One thing to do to a tree, with its arguments. It is done through an object that was opened before and kept, or
/// through one that is opened for it by its path.
struct TreeOperation {
    // What can be done to all items, to properties, to sets, to containers, to tables and to primitives.
    enum tCode {
        kLook,
        kParent,
        kRename,
        kDescribe,
        kKeep,
        kOn,
        kOff,
        kDestroy,
        kFind,
        kMakePrimitive,
        kMakeTable,
        kWalk,
        kMakeContainer,
        kHas,
        kAgain,
        kConforms,
        kCopy,
        kClone,
        kClonePath,
        kCloneTo,
        kTarget,
        kFollow,
        kAt,
        kMakeByGroup,
        kDefaults,
        kSet,
        kReset,
        kGet,
        kUri,
        kSchema,
        kValueLocale,
        kWrite,
        // Objects that are let go: one, or all, with the stores being closed and opened again.
        kDrop,
        kDropAll
    };

    static constexpr unsigned int kSlots = 24;
    static constexpr unsigned int kNone = kSlots;

    tCode code = kLook;
    unsigned int store = 0;
    unsigned int slot = kNone;  ///< the kept object; `kNone` for one that is opened
    std::wstring path{};        ///< what is opened then
    unsigned int source = 0;    ///< the slot of a second object
    unsigned int into = kNone;  ///< where the result is kept
    std::wstring name{};
    std::wstring text{};
    unsigned int number = 0;
    unsigned int count = 0;
    int schema = -1;
};

/// A tree with the objects that a client keeps.
class TreeClient {
public:
    explicit TreeClient(Tree& tree) : _tree(tree) {}

    /// Does it and tells all that came of it.
    std::wstring perform(const TreeOperation& operation);

    bool keeps(unsigned int slot) const { return _kept[slot] != nullptr; }

    /// Of a model: whether an operation will go through an object over something that another process has destroyed.
    bool isGone(const TreeOperation& operation) const;

    /// Lets all kept objects go.
    void dropAll();

    /// The kind of what an operation will be done to, or -1 for nothing.
    int target(const TreeOperation& operation);

    /// All that there is in a container and below it, a line for each item.
    std::wstring everything(unsigned int store, const std::wstring& top);

private:
    TreeObject::tPtr open(unsigned int store, const std::wstring& path);
    std::wstring perform(TreeObject& object, const TreeOperation& operation);
    std::wstring performOnContainer(TreeObject& object, const TreeOperation& operation);
    std::wstring performOnProperty(TreeObject& object, const TreeOperation& operation);
    std::wstring keep(TreeObject::tPtr result, unsigned int slot);

    Tree& _tree;
    std::array<TreeObject::tPtr, TreeOperation::kSlots> _kept;
};

/// A line for a person, in UTF-8.
std::string described(const TreeOperation& operation);

/// The first lines that do not agree of what two clients told, likewise.
std::string firstDifference(const std::wstring& found, const std::wstring& expected);

}  // namespace lumivard::platform::model
