#pragma once

#include <array>
#include <optional>
#include <string>

#include "tests/model/PlainTree.h"
#include "tests/postgres/OperationLog.h"

namespace lumivard::platform::model {

/// The model of a tree that several processes change together, with the objects that each of them keeps. By the log of
/// what they did it comes to the state that the tree had, whoever does so.
class SharedModel {
public:
    static constexpr std::size_t kProcesses = PlainItem::kProcesses;

    SharedModel();

    /// Does what a process did.
    void repeat(const tDeed& deed);

    /// Does one thing for a process, and tells what comes of it. Where that is done through an object over something
    /// that another process has destroyed, nothing is done, and nothing is told: of such an object no more is promised
    /// than that it does no harm.
    std::optional<std::wstring> perform(unsigned int process, const TreeOperation& operation);

    /// A process has begun anew, without having let its objects go.
    void begin(unsigned int process);

    const PlainTree& tree() const { return _tree; }

    /// The objects of a process, for what is done in its name from now on.
    TreeClient& client(unsigned int process);

private:
    PlainTree _tree;
    std::array<TreeClient, kProcesses> _clients;
};

/// Compares what a client sees of the containers at the top with the model. Gives the first difference, or nothing.
std::string differenceBetween(TreeClient& real, TreeClient& plain);

}  // namespace lumivard::platform::model
