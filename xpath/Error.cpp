#include "xpath/Error.h"

#include <iterator>

namespace Xml {
namespace {

struct ErrorText {
    const char* key;
    bool showsDetail;
};

// By code. Translations are found by these keys, so their spelling ("PARENTHESE") stays.
constexpr ErrorText kErrorTexts[] = {
    {"xpat/xerr/NONE", false},
    {"xpat/xerr/INDEX OUT OF BOUNDS", false},
    {"xpat/xerr/NODE NOT FOUND", true},
    {"xpat/xerr/NODE CONTAINS NO DATA", true},
    {"xpat/xerr/DOUBLE SLASH AT THE END NOT ALLOWED", true},
    {"xpat/xerr/NO XPATH SPECIFIED", false},
    {"xpat/xerr/ILLEGAL CHAR AFTER ATTRIBUTEVALUE", true},
    {"xpat/xerr/ILLEGAL CHAR AFTER FUNCTION", true},
    {"xpat/xerr/ILLEGAL CHAR AFTER KINDTEST", true},
    {"xpat/xerr/ILLEGAL CHAR IN NUMBER", true},
    {"xpat/xerr/ILLEGAL CHAR AFTER PREDICATE", true},
    {"xpat/xerr/NO VALID ATTRIBUTE NAME", true},
    {"xpat/xerr/NO VALID NAME OR TEST", true},
    {"xpat/xerr/RELATIVE XPATH EXPRESSION NOT ALLOWED WITHOUT CONTEXT NODES", true},
    {"xpat/xerr/SLASH AT END NOT ALLOWED", true},
    {"xpat/xerr/NO VALID AXIS", true},
    {"xpat/xerr/NO VALID INITIAL AXIS", true},
    {"xpat/xerr/NO VALID COMPARISON OPERATOR", true},
    {"xpat/xerr/MISSING QUOTE BEFORE ATTRIBUTE VALUE", true},
    {"xpat/xerr/MISSING QUOTE AFTER ATTRIBUTE VALUE", true},
    {"xpat/xerr/MISSING CLOSING BRACKET AFTER PREDICATE", true},
    {"xpat/xerr/MISSING CLOSING PARENTHESE AFTER FUNCTION", true},
    {"xpat/xerr/MISSING OPENING PARENTHESE AFTER FUNCTION", true},
    {"xpat/xerr/MISSING CLOSING PARENTHESE AFTER KIND TEST", true},
    {"xpat/xerr/MISSING OPENING PARENTHESE AFTER KIND TEST", true},
    {"xpat/xerr/FIRST LAST OR NUMBER AFTER POSITION EXPECTED", true},
    {"xpat/xerr/CONTEXT IS NOT A NODE", false},
};

static_assert(std::size(kErrorTexts) == XPath::ContextIsNotANode + 1);

}  // namespace

const char* errorKey(XPath::ErrorCode code) {
    return code < std::size(kErrorTexts) ? kErrorTexts[code].key : nullptr;
}

bool showsDetail(XPath::ErrorCode code) {
    return code < std::size(kErrorTexts) && kErrorTexts[code].showsDetail;
}

}  // namespace Xml
