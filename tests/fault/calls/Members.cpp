#include "tests/fault/calls/Members.h"

#include <algorithm>
#include <filesystem>
#include <regex>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::test_support::fault {

namespace fs = std::filesystem;

namespace {

/// What a pair of braces encloses.
struct tScope {
    enum tKind { kOther, kNamespace, kClass };
    tKind kind = kOther;
    std::string name;
};

/// Whether clients do not call what stands here.
bool isInside(const std::vector<tScope>& scopes) {
    return std::any_of(scopes.begin(), scopes.end(), [](const tScope& scope) { return scope.name == "detail"; });
}

/// The member or function that one declaration declares: one or none.
void note(const std::string& declaration, const tScope& scope, std::set<std::string>& members) {
    static const std::regex kMember(R"(^ ?(?:public: )?(?:virtual|static) [^(]*?([~\w]+)\((.*)\)( const)?)");
    static const std::regex kFunction(R"(^ ?(?!using |static_assert)[^(=]* [&*]?(\w+)\((.*)\)()$)");
    std::smatch parts;
    if (scope.kind == tScope::kOther) return;
    if (!std::regex_search(declaration, parts, scope.kind == tScope::kClass ? kMember : kFunction)) return;
    members.insert(scope.name + "::" + parts[1].str() + "(" + parts[2].str() + ")" + parts[3].str());
}

/// The class or namespace whose body a declaration opens.
tScope opened(const std::string& declaration) {
    static const std::regex kClass(R"((?:class|struct) (?:LVP_EXPORT )?(\w+)[^()]*$)");
    static const std::regex kNamespace(R"(^ ?namespace (?:\w+::)*(\w+) ?$)");
    std::smatch parts;
    if (std::regex_search(declaration, parts, kNamespace)) return {tScope::kNamespace, parts[1].str()};
    if (std::regex_search(declaration, parts, kClass)) return {tScope::kClass, parts[1].str()};
    return {};
}

/// A declaration, up to its end or to the body that it opens.
std::string trimmed(std::string declaration) {
    while (declaration.ends_with(' ')) declaration.pop_back();
    return declaration;
}

}  // namespace

std::set<std::string> membersOf(std::string header) {
    header = std::regex_replace(header, std::regex("//[^\n]*|#[^\n]*|/\\*[^*]*\\*/"), "");
    header = std::regex_replace(header, std::regex("\\s+"), " ");
    header = std::regex_replace(header, std::regex("(public|protected|private): ?"), "");
    std::set<std::string> members;
    std::vector<tScope> scopes(1);
    std::string declaration;
    int parentheses = 0;  // what is braced in them is the value of an argument
    for (const char c : header) {
        parentheses += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (parentheses != 0 || (c != ';' && c != '{' && c != '}')) {
            declaration += c;
            continue;
        }
        if (!isInside(scopes)) note(trimmed(declaration), scopes.back(), members);
        if (c == '{') scopes.push_back(opened(declaration));
        if (c == '}' && scopes.size() > 1) scopes.pop_back();
        declaration.clear();
    }
    return members;
}

std::set<std::string> publicMembers() {
    std::set<std::string> members;
    for (const char* folder : {"/include/lumivard/platform/data", "/stores/include/lumivard/platform/stores"}) {
        for (const auto& file : fs::recursive_directory_iterator(std::string(LVP_SOURCE_DIR) + folder)) {
            if (file.path().extension() == ".h") members.merge(membersOf(bytesOf(file.path())));
        }
    }
    return members;
}

}  // namespace lumivard::platform::test_support::fault
