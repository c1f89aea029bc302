#include "VexXml/Readers.h"

namespace Xml {
namespace {

// The XML declaration token by token; the ">" behind these is looked for from here on.
const char* const kDeclaration[] = {"<?xml", "version", "=", "\"1.0\"", "?"};
constexpr int kVersionAt = 3;
constexpr int kEncodingAt = 4;
constexpr int kBehindAt = 5;
constexpr int kMostTokens = 20;

}  // namespace

// Comment ::= '<!--' ... '-->'
bool CommentReader::parse(InStream& in) { return checkToken(in, "<!--") && skip(in, "-->"); }

// PI ::= '<?' ... '?>'
bool PIReader::parse(InStream& in) { return checkToken(in, "<?") && skip(in, "?>"); }

// XMLDecl ::= '<?xml' 'version' '=' "1.0" ('encoding' '=' EncName ...)? '?' '>'
//
// What stands behind an encoding is not looked at, but directly behind the version nothing else is
// allowed. Deliberate: so a standalone declaration is refused there.
bool VersionInfoReader::parse(InStream& in) {
    for (int at = 0; at < kMostTokens; ++at) {
        std::string token;
        if (!getToken(in, token)) return false;
        if (at >= kBehindAt) {
            if (token == ">") return true;
            continue;
        }
        if (token == kDeclaration[at] || (at == kVersionAt && token == "'1.0'")) continue;
        if (at != kEncodingAt || token != "encoding" || !readEncoding(in)) return false;
    }
    return false;
}

// The token behind the encoding, "?" as a rule, is dropped.
bool VersionInfoReader::readEncoding(InStream& in) {
    std::string token;
    if (!checkToken(in, "=") || !getToken(in, token)) return false;
    if (token != "\"UTF-8\"" && token != "'UTF-8'") message(in, "Unsupported encoding: " + token);
    return getToken(in, token);
}

}  // namespace Xml
