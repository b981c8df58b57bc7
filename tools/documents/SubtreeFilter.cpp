#include "tools/documents/SubtreeFilter.h"

#include <cstring>

namespace lvp::tool {

const char* attribute(const char** attributes, const char* name) {
    for (; *attributes; attributes += 2) {
        if (std::strcmp(*attributes, name) == 0) return attributes[1];
    }
    return nullptr;
}

SubtreeFilter::SubtreeFilter(const std::string& path, XMLCallback& target) : _target(target) {
    if (path.empty()) return;
    std::size_t begin = 0;
    for (std::size_t dot = path.find('.'); dot != std::string::npos; dot = path.find('.', begin)) {
        _pieces.push_back(path.substr(begin, dot - begin));
        begin = dot + 1;
    }
    _pieces.push_back(path.substr(begin));
}

void SubtreeFilter::notifyStartElement(const char* name, const char** attributes) {
    if (!_inside && !_found && _matched == _depth) {
        const char* tag = attribute(attributes, "name");
        if (_depth == 0 || (tag && _pieces[_depth - 1] == tag)) ++_matched;
        _inside = _matched == _pieces.size() + 1;
        _found = _inside;
    }
    ++_depth;
    if (_inside) _target.notifyStartElement(name, attributes);
}

void SubtreeFilter::notifyEndElement(const char* name) {
    if (_inside) _target.notifyEndElement(name);
    --_depth;
    if (_inside && _depth == _pieces.size()) _inside = false;
    if (_matched > _depth) _matched = _depth;
}

void SubtreeFilter::notifyCharacterData(const char* data, int length) {
    if (_inside) _target.notifyCharacterData(data, length);
}

}  // namespace lvp::tool
