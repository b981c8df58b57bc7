#include "tests/postgres/SharedModel.h"

#include "tests/model/AnyOperation.h"

namespace lumivard::platform::model {

SharedModel::SharedModel() : _clients{TreeClient(_tree), TreeClient(_tree), TreeClient(_tree), TreeClient(_tree)} {
    for (const wchar_t* const top : kTops) _tree.toplevel(0, top);
}

void SharedModel::repeat(const tDeed& deed) {
    if (deed.isNew) begin(deed.process);
    for (const TreeOperation& operation : deed.operations) perform(deed.process, operation);
}

std::optional<std::wstring> SharedModel::perform(unsigned int process, const TreeOperation& operation) {
    TreeClient& own = client(process);
    if (own.isGone(operation) && operation.code != TreeOperation::kDrop) return std::nullopt;
    return own.perform(operation);
}

void SharedModel::begin(unsigned int process) {
    _tree.process(process, true);
    _clients.at(process).dropAll();
    _tree.process(process);
}

TreeClient& SharedModel::client(unsigned int process) {
    _tree.process(process);
    return _clients.at(process);
}

std::string differenceBetween(TreeClient& real, TreeClient& plain) {
    for (const wchar_t* const top : kTops) {
        const std::wstring found = real.everything(0, top);
        const std::wstring expected = plain.everything(0, top);
        if (found != expected) return firstDifference(found, expected);
    }
    return {};
}

}  // namespace lumivard::platform::model
