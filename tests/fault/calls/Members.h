#pragma once

#include <set>
#include <string>

namespace lumivard::platform::test_support::fault {

/// The virtual and static members of all classes in a header's text, destructors among them, in the form
/// "IGroup::to(IContainer* container)" or "IGroup::container() const", and its functions, which stand in no class, with
/// the last part of their namespace: "check::rules()". What stands in a namespace `detail` is none of them.
std::set<std::string> membersOf(std::string header);

/// Those of all public headers of the data library and of the stores.
std::set<std::string> publicMembers();

}  // namespace lumivard::platform::test_support::fault
