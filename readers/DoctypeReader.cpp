#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "VexXml/Readers.h"
#include "readers/CopyOf.h"
#include "readers/LimitedRead.h"
#include "readers/Quotes.h"

namespace Xml {
namespace {

// Makes the path that of the file itself if the file is in the folder.
bool isBelow(const std::string& folder, std::string& path) {
    std::error_code error;
    const auto top = std::filesystem::canonical(folder, error);
    if (error) return false;
    const auto absolute = std::filesystem::absolute(path, error);
    if (error) return false;
    const auto file = std::filesystem::weakly_canonical(absolute, error);
    if (error) return false;
    const auto [topEnd, fileEnd] = std::mismatch(top.begin(), top.end(), file.begin(), file.end());
    if (topEnd != top.end() || fileEnd == file.end()) return false;
    path = file.string();
    return true;
}

}  // namespace

DoctypeReader::DoctypeReader() = default;

DoctypeReader::DoctypeReader(const DoctypeReader& other)
    : Reader(other), mDtd(copyOf(other.mDtd)) {}

DoctypeReader::DoctypeReader(DoctypeReader&&) noexcept = default;

DoctypeReader& DoctypeReader::operator=(const DoctypeReader& other) {
    if (this != &other) *this = DoctypeReader(other);
    return *this;
}

DoctypeReader& DoctypeReader::operator=(DoctypeReader&&) noexcept = default;
DoctypeReader::~DoctypeReader() = default;

Dtd* DoctypeReader::extractDtd() { return mDtd.release(); }

bool DoctypeReader::parse(InStream& in) {
    LimitedRead read(*this, in);
    mDtd.reset();
    return read.end(readDeclaration(in));
}

// doctypedecl ::= '<!DOCTYPE' Name ('SYSTEM' SystemLiteral | '[' markupdecl* ']') '>'
bool DoctypeReader::readDeclaration(InStream& in) {
    std::string name;
    std::string token;
    if (!checkToken(in, "<!DOCTYPE") || !getName(in, name) || !getToken(in, token)) return false;
    DTDReader declarations(name);
    bool areRead = false;
    if (token == "SYSTEM") {
        areRead = readFile(in, declarations);
    } else if (token == "[") {
        declarations.setInternal(true);
        areRead = parseWith(declarations, in);
    } else {
        message(in, "Unexpected token \"" + token + '"');
    }
    if (!areRead || !checkToken(in, ">")) return false;
    mDtd.reset(declarations.extractDtd());
    return true;
}

bool DoctypeReader::readFile(InStream& in, DTDReader& declarations) {
    std::string path;
    if (!getString(in, path)) return false;
    path = unquoted(path);
    if (!mayOpen(in, path)) return false;
    std::ifstream file;
    FileInStream external(path, &file);
    LimitedRead read(*this, external);
    return read.end(parseWith(declarations, external));
}

// A path that is allowed is replaced by that of the file itself, so that links are not followed
// once more when it is opened. Whoever may change the folder meanwhile can still make it lead
// elsewhere.
bool DoctypeReader::mayOpen(InStream& in, std::string& path) {
    if (limits() == nullptr) return true;
    if (!limits()->mayOpenFiles) {
        message(in, "not allowed to open a file: " + path);
        return false;
    }
    if (limits()->folder.empty()) return true;
    if (isBelow(limits()->folder, path)) return true;
    message(in, "not allowed to open a file outside " + limits()->folder + ": " + path);
    return false;
}

}  // namespace Xml
