#include "tests/fault/calls/Members.h"

#include <filesystem>
#include <regex>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::test_support::fault {

namespace fs = std::filesystem;

namespace {

/// The members that one declaration declares: one or none.
void note(const std::string& declaration, const std::string& scope, std::set<std::string>& members) {
    static const std::regex kMember(R"(^ ?(?:public: )?(?:virtual|static) [^(]*?([~\w]+)\((.*)\)( const)?)");
    std::smatch parts;
    if (scope.empty() || !std::regex_search(declaration, parts, kMember)) return;
    members.insert(scope + "::" + parts[1].str() + "(" + parts[2].str() + ")" + parts[3].str());
}

/// The name of the class whose body a declaration opens; empty for anything else.
std::string opened(const std::string& declaration) {
    static const std::regex kClass(R"((?:class|struct) (?:LVP_EXPORT )?(\w+)[^()]*$)");
    std::smatch parts;
    return std::regex_search(declaration, parts, kClass) ? parts[1].str() : std::string();
}

}  // namespace

std::set<std::string> membersOf(std::string header) {
    header = std::regex_replace(header, std::regex("//[^\n]*|#[^\n]*|/\\*[^*]*\\*/"), "");
    header = std::regex_replace(header, std::regex("\\s+"), " ");
    header = std::regex_replace(header, std::regex("(public|protected|private): ?"), "");
    std::set<std::string> members;
    std::vector<std::string> scopes{""};
    std::string declaration;
    for (const char c : header) {
        if (c != ';' && c != '{' && c != '}') {
            declaration += c;
            continue;
        }
        note(declaration, scopes.back(), members);
        if (c == '{') scopes.push_back(opened(declaration));
        if (c == '}' && scopes.size() > 1) scopes.pop_back();
        declaration.clear();
    }
    return members;
}

std::set<std::string> publicMembers() {
    std::set<std::string> members;
    for (const auto& file : fs::recursive_directory_iterator(LVP_SOURCE_DIR "/include/lumivard/platform/data")) {
        if (file.path().extension() == ".h") members.merge(membersOf(bytesOf(file.path())));
    }
    return members;
}

}  // namespace lumivard::platform::test_support::fault
