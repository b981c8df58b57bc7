#pragma once

#include <BinDrivers.hxx>
#include <TCollection_AsciiString.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_Data.hxx>
#include <TDF_Label.hxx>
#include <TDocStd_Application.hxx>
#include <TDocStd_Document.hxx>
#include <XmlDrivers.hxx>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "bench/workloads/Measure.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

namespace lvp::bench {

enum class tOcafFormat { kBinary, kXml };

/// A document of OCAF in a file, with one label on top: what the ways of putting a tree into it have in common.
class OcafDocument {
public:
    static constexpr const char* kEnding = "cbf";
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) { return {file}; }

    explicit OcafDocument(tOcafFormat format = tOcafFormat::kBinary) : _format(format) {
        BinDrivers::DefineFormat(_application);
        XmlDrivers::DefineFormat(_application);
    }
    ~OcafDocument() { close(); }
    OcafDocument(const OcafDocument&) = delete;
    OcafDocument& operator=(const OcafDocument&) = delete;

    void create(const std::filesystem::path& file) {
        _file = file;
        _application->NewDocument(_format == tOcafFormat::kXml ? "XmlOcaf" : "BinOcaf", _document);
        _top = newLabel(_document->Main(), 1);
    }

    void open(const std::filesystem::path& file, tAccess) {
        _file = file;
        require(_application->Open(file.c_str(), _document) == PCDM_RS_OK, "the document is not read");
        _top = _document->Main().FindChild(1, false);
    }

    void save() {
        require(_application->SaveAs(_document, _file.c_str()) == PCDM_SS_OK, "the document is not written");
    }

    void flush() {
        save();
        makeDurable(_file);
    }

    void close() {
        _top.Nullify();
        if (_document.IsNull()) return;
        _application->Close(_document);
        _document.Nullify();
    }

protected:
    /// Adds a label to another one, behind those that have lower numbers.
    static TDF_Label newLabel(const TDF_Label& parent, int number) { return parent.FindChild(number, true); }

    const TDF_Label& top() const { return _top; }

    /// Keeps a table from entries to labels, else an entry is found by going through the children of each label.
    void useEntries() { _document->GetData()->SetAccessByEntries(true); }

    TDF_Label at(const std::string& entry) const {
        TDF_Label label;
        require(_document->GetData()->GetLabel(entry.c_str(), label), "an entry was not found");
        return label;
    }

    /// A text as characters of one byte, as the checksum takes it.
    class Narrow {
    public:
        void take(const TCollection_ExtendedString& text) {
            const Standard_ExtString characters = text.ToExtString();
            _length = static_cast<std::size_t>(text.Length());
            require(_length <= _text.size(), "a text has another length");
            for (std::size_t i = 0; i < _length; ++i) _text[i] = static_cast<char>(characters[i]);
        }
        std::string_view view() const { return {_text.data(), _length}; }

    private:
        std::array<char, 64> _text;
        std::size_t _length = 0;
    };

private:
    tOcafFormat _format;
    Handle(TDocStd_Application) _application = new TDocStd_Application;
    Handle(TDocStd_Document) _document;
    std::filesystem::path _file;
    TDF_Label _top;
};

/// W1 to W4d of "ocaf-data".
void runOcafData(const Case& run);

}  // namespace lvp::bench
