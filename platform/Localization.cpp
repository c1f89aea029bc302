#include "VexSys/Localization.h"

#include <atomic>
#include <string_view>
#include <utility>

namespace VexSys {
namespace {

// Key and text, in the order of the error codes that they belong to. Behind most texts stands the
// piece of the expression that is meant.
constexpr std::pair<std::string_view, const char*> kEnglish[] = {
    {"xpat/xerr/NONE", "no error"},
    {"xpat/xerr/INDEX OUT OF BOUNDS", "there is no result or word with this index"},
    {"xpat/xerr/NODE NOT FOUND", "no such node was found"},
    {"xpat/xerr/NODE CONTAINS NO DATA", "the node contains no data"},
    {"xpat/xerr/DOUBLE SLASH AT THE END NOT ALLOWED",
     "a step is missing after the double slash at the end"},
    {"xpat/xerr/NO XPATH SPECIFIED", "the expression, or a predicate in it, is empty"},
    {"xpat/xerr/ILLEGAL CHAR AFTER ATTRIBUTEVALUE", "only an operator may follow a quoted text"},
    {"xpat/xerr/ILLEGAL CHAR AFTER FUNCTION", "only an operator may follow a function call"},
    {"xpat/xerr/ILLEGAL CHAR AFTER KINDTEST",
     "a kind test is written without parentheses, and nothing may follow it"},
    {"xpat/xerr/ILLEGAL CHAR IN NUMBER", "a number consists of digits and at most one point"},
    {"xpat/xerr/ILLEGAL CHAR AFTER PREDICATE",
     "only a predicate, a slash or an operator may follow a predicate"},
    {"xpat/xerr/NO VALID ATTRIBUTE NAME", "the name of an attribute is missing or not valid"},
    {"xpat/xerr/NO VALID NAME OR TEST", "a name or kind test is missing or not valid"},
    {"xpat/xerr/RELATIVE XPATH EXPRESSION NOT ALLOWED WITHOUT CONTEXT NODES",
     "there are no results that a relative expression could start from"},
    {"xpat/xerr/SLASH AT END NOT ALLOWED", "a step is missing after the slash at the end"},
    {"xpat/xerr/NO VALID AXIS", "there is no such axis"},
    {"xpat/xerr/NO VALID INITIAL AXIS", "an expression cannot begin with this axis"},
    {"xpat/xerr/NO VALID COMPARISON OPERATOR", "there is no such comparison operator"},
    {"xpat/xerr/MISSING QUOTE BEFORE ATTRIBUTE VALUE",
     "an opening quote is missing in front of a text"},
    {"xpat/xerr/MISSING QUOTE AFTER ATTRIBUTE VALUE", "a closing quote is missing after a text"},
    {"xpat/xerr/MISSING CLOSING BRACKET AFTER PREDICATE",
     "a closing bracket is missing after a predicate"},
    {"xpat/xerr/MISSING CLOSING PARENTHESE AFTER FUNCTION",
     "a closing parenthesis is missing after a function"},
    {"xpat/xerr/MISSING OPENING PARENTHESE AFTER FUNCTION",
     "position and last need parentheses, and no other name may begin like them"},
    {"xpat/xerr/MISSING CLOSING PARENTHESE AFTER KIND TEST",
     "a closing parenthesis is missing after a kind test"},
    {"xpat/xerr/MISSING OPENING PARENTHESE AFTER KIND TEST",
     "a name must not begin like a kind test (node, element, attribute, text, document-node)"},
    {"xpat/xerr/FIRST LAST OR NUMBER AFTER POSITION EXPECTED",
     "first, last or a number is expected after a position"},
    {"xpat/xerr/CONTEXT IS NOT A NODE", "a step can only start from nodes, not from a value"},
};

std::atomic<Localization::Translator> installed{nullptr};

}  // namespace

Uni16String Localization::GetString(const char* key, const char* module, const char* fallback) {
    if (const Translator translator = installed.load(std::memory_order_acquire)) {
        Uni16String translated = translator(key, module);
        if (!translated.empty()) return translated;
    }
    for (const auto& [known, text] : kEnglish) {
        if (known == key) return UTF8ToUni16Char(text);
    }
    return UTF8ToUni16Char(*fallback != '\0' ? fallback : key);
}

Localization::Translator Localization::InstallTranslator(Translator translator) {
    return installed.exchange(translator);
}

}  // namespace VexSys
