#include <functional>
#include <memory>
#include <utility>

#include "VexXml/Readers.h"
#include "bench/CostCases.h"
#include "support/PlainInStream.h"

namespace Bench {
namespace {

using MakeText = std::function<std::string(std::size_t count)>;

// How many lines a text has is asked at the end of each of them.
template <class Stream>
void askLines(Stream& in) {
    char c = 0;
    int line = 0;
    while (in.get(c)) {
        if (c == '\r') line += in.getLine();
    }
    if (line < 0) in.setPosition(0);
}

template <class Stream>
void readDocument(Stream& in) {
    Xml::DocumentReader reader;
    reader.parse(in);
}

template <class Stream>
CostCase caseOf(const std::string& name, std::size_t smallest, const MakeText& makeText,
                void (*read)(Stream&)) {
    return {name, "byte", smallest, [=](std::size_t size) -> CostRun {
                auto text = std::make_shared<const std::string>(makeText(size));
                return {text->size(), [=] {
                            Stream in(*text);
                            read(in);
                        }};
            }};
}

class Cases {
public:
    // From a text in memory, and from a stream that has nothing but the four operations.
    void add(const std::string& name, const MakeText& makeText, std::size_t smallest = 20000) {
        mCases.push_back(caseOf(name, smallest, makeText, &readDocument<Xml::StringInStream>));
        mCases.push_back(
            caseOf("bare: " + name, smallest, makeText, &readDocument<support::PlainInStream>));
    }

    void addLines(const std::string& name, const MakeText& makeText) {
        mCases.push_back(caseOf(name, 20000, makeText, &askLines<Xml::StringInStream>));
        mCases.push_back(
            caseOf("bare: " + name, 20000, makeText, &askLines<support::PlainInStream>));
    }

    // The piece again and again, between two texts.
    void addRepeated(const std::string& before, const std::string& piece, const std::string& after,
                     std::size_t smallest = 20000) {
        add(
            before + piece + "..." + after,
            [=](std::size_t count) { return before + repeated(piece, count) + after; }, smallest);
    }

    std::vector<CostCase> take() { return std::move(mCases); }

private:
    std::vector<CostCase> mCases;
};

void addOpeners(Cases& cases) {
    for (const char* before : {"", "<a>", "<a ", "<!DOCTYPE a [", "<!DOCTYPE a PUBLIC ",
                               "<!DOCTYPE a [<!ELEMENT a ", "<!DOCTYPE a [<!ATTLIST a "}) {
        for (const char* piece : {"<!", "<?", "<!["}) cases.addRepeated(before, piece, "");
    }
    cases.addRepeated("<!DOCTYPE a PUBLIC ", "<![CDATA[", "");
    cases.addRepeated("<!DOCTYPE a PUBLIC ", "<?x ", "");
    cases.addRepeated("<!DOCTYPE a PUBLIC ", "<! ", "><a/>");
    cases.addRepeated("<!DOCTYPE a PUBLIC [", "<!---->", "]><a/>");
}

void addReferencesAndQuotes(Cases& cases) {
    cases.addRepeated("<a>", "&", ";</a>");
    cases.addRepeated("<a>", "&<b/>", ";</a>", 4000);
    cases.addRepeated("<a>", "&<b\r/>", ";</b>", 4000);
    cases.addRepeated("<a>", "&<b/>", "</a>", 4000);
    cases.addRepeated("<a k='", "&", ";'/>");
    cases.addRepeated("<a k='", "&x;", "'/>");
    cases.addRepeated("<a>", "\"<b/>", "\"</a>");
    cases.addRepeated("<a>", "\"<b/>'<b/>", "\"'</a>");
    cases.addRepeated("<a>", "\"\r<b\r\n/>", "\"</b>");
    cases.addRepeated("<a>", "<?&?>", "</a>", 4000);
    cases.addRepeated("", "<?&?>", "<a/>", 4000);
    cases.addRepeated("<a/>", "<?&?>", "", 4000);
}

void addMarkup(Cases& cases) {
    cases.addRepeated("<a>", "<b/>", "</a>");
    cases.addRepeated("<a>", "<b>", "");
    cases.addRepeated("<a>", "x<b></b>", "</a>");
    cases.addRepeated("<a>", "<b/>", "<!--");
    cases.addRepeated("<a>", "<b/>", "<![CDATA[");
    cases.addRepeated("<a>", "<b/>", "<?x");
    cases.addRepeated("<a>", "<b/>", "<b k='");
    cases.addRepeated("<a>", "<b/>", "</b>");
    cases.addRepeated("<a>", "<!---->", "</a>");
    cases.addRepeated("<a>", "<![CDATA[]]>", "</a>");
    cases.addRepeated("<a>", "<?x?>", "</a>");
    cases.addRepeated("<a>", "<!--->", "</a>");
    cases.addRepeated("", "<!---->", "<a/>");
    cases.addRepeated("", "<?x?>", "<a/>");
    cases.addRepeated("<a/>", "<?x?>", "");
    cases.addRepeated("<a>", "]]", "</a>");
    cases.addRepeated("<a><![CDATA[", "]]", "]]></a>");
    cases.addRepeated("<a><!--", "-", "></a>");
    cases.addRepeated("<a>", " ", "</a>", 100000);
    cases.addRepeated("<a", " ", "/>", 100000);
    cases.addRepeated("<", "a", "/>", 100000);
    cases.addRepeated("<a>", "x", "</a>", 100000);
    cases.addRepeated("<a k='", "x", "'/>", 100000);
    cases.addRepeated("<a>", "x\r\n<b\r\n/>\r\n", "</b>");
    cases.addRepeated("<a>", "x\r<b\r/>\r", "</b>");
    cases.add("n nested elements",
              [](std::size_t count) { return repeated("<a>", count) + repeated("</a>", count); });
}

void addAttributes(Cases& cases) {
    const auto attributes = [](std::size_t count, const auto& numberAt) {
        std::string text = "<a";
        for (std::size_t i = 0; i < count; ++i) {
            text += " a" + std::to_string(10000000 + numberAt(i)) + "=''";
        }
        return text + "/>";
    };
    cases.add("n attributes, ascending", [=](std::size_t count) {
        return attributes(count, [](std::size_t i) { return i; });
    });
    cases.add("n attributes, descending", [=](std::size_t count) {
        return attributes(count, [=](std::size_t i) { return count - i; });
    });
    cases.add("n attributes, scattered", [=](std::size_t count) {
        return attributes(count, [=](std::size_t i) { return i * 7919 % count; });
    });
    cases.addRepeated("<a", " b=''", "/>");
}

// A declaration n times, with numbers for "#", and behind the DTD another text.
void addDeclared(Cases& cases, const std::string& declaration, const std::string& before,
                 const std::string& piece, const std::string& after) {
    cases.add(
        declaration + "... " + before + piece + "..." + after,
        [=](std::size_t count) {
            return "<!DOCTYPE a [<!ELEMENT a ANY>" + numbered(declaration, count) + "]>" + before +
                   numbered(piece, count) + after;
        },
        5000);
}

// A model that holds the piece n times, for a document.
void addModel(Cases& cases, const std::string& before, const std::string& piece,
              const std::string& after, const std::string& document, const std::string& inner,
              const std::string& documentEnd) {
    cases.add(
        "(model) " + before + piece + "..." + after + " " + document + inner + "..." + documentEnd,
        [=](std::size_t count) {
            return "<!DOCTYPE r [<!ELEMENT r " + before + numbered(piece, count) + after +
                   "><!ELEMENT a EMPTY>]>" + document + repeated(inner, count) + documentEnd;
        },
        5000);
}

void addDeclarations(Cases& cases) {
    addDeclared(cases, "<!ENTITY e# 'v'>", "<a k='", "&e#;", "'/>");
    addDeclared(cases, "<!ENTITY e# 'v'>", "<a>", "&e#;<a/>", "</a>");
    addDeclared(cases, "<!ELEMENT e# ANY>", "<a>", "<e#/>", "</a>");
    addDeclared(cases, "<!ATTLIST e# k CDATA 'v'>", "<a/>", "", "");
    addDeclared(cases, "<!ATTLIST a k# CDATA 'v'>", "<a", " k#=''", "/>");
    addDeclared(cases, "<!ATTLIST a k# CDATA #REQUIRED>", "<a", "", "/>");
    addDeclared(cases, "<!---->", "<a/>", "", "");
    addModel(cases, "(", "a#|", "b)", "<r>", "", "<a/></r>");
    addModel(cases, "(", "a#|", "a)*", "<r>", "<a/>", "</r>");
    addModel(cases, "(", "a#|", "a)*", "<r>", "<a/>", "<b/></r>");
    addModel(cases, "(#PCDATA", "|a#", "|a)*", "<r>", "<a/>", "</r>");
    addModel(cases, "(", "a#?,", "a*)", "<r>", "<a/>", "</r>");
    addModel(cases, "(", "a?,", "a?)", "<r>", "<a/>", "</r>");
    addModel(cases, "(", "(", "a", "<r>", "", "<a/></r>");
    cases.add(
        "(model) ((((a)))) <r><a/></r>",
        [](std::size_t count) {
            return "<!DOCTYPE r [<!ELEMENT r " + repeated("(", count) + "a" + repeated(")", count) +
                   "><!ELEMENT a EMPTY>]><r><a/></r>";
        },
        5000);
    const auto nested = [](const std::string& model) {
        return [=](std::size_t count) {
            return "<!DOCTYPE a [<!ELEMENT a " + model + "><!ELEMENT b EMPTY>]>" +
                   repeated("<a>", count) + repeated("</a>", count);
        };
    };
    for (const char* model : {"((a,b)|a)?", "((a,b)|(a,b)|a)?", "(a*,b?)", "((a|b)*)"}) {
        cases.add(std::string("(model) ") + model + " <a><a>...", nested(model));
    }
    for (const char* model : {"(a)*", "((a,a)|a)*", "((a)|b)+", "((a,b)*,a*)"}) {
        addModel(cases, model, "", "", "<r>", "<a/>", "</r>");
        addModel(cases, model, "", "", "<r>", "<a/>", "x</r>");
    }
}

void addLineEnds(Cases& cases) {
    for (const char* end : {"\r\n", "\r"}) {
        const std::string name = end[1] == '\0' ? "CR" : "CR LF";
        cases.addLines(name + ", getLine", [=](std::size_t count) {
            return repeated(std::string("text") + end, count);
        });
    }
}

// Bytes that are not to be seen have a name instead.
void showNames(std::vector<CostCase>& cases) {
    for (CostCase& shown : cases) {
        std::string name;
        for (const char c : shown.name)
            name += c == '\r' ? "\\r" : c == '\n' ? "\\n" : std::string(1, c);
        shown.name = name;
    }
}

}  // namespace

std::string repeated(const std::string& piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) text += piece;
    return text;
}

std::string numbered(const std::string& piece, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t at = 0; at < piece.size(); ++at) {
            const bool isNumber = piece[at] == '#' && piece.compare(at, 2, "#R") != 0;
            isNumber ? text += std::to_string(i) : text += piece[at];
        }
    }
    return text;
}

std::vector<CostCase> costsOfReading() {
    Cases cases;
    addOpeners(cases);
    addReferencesAndQuotes(cases);
    addMarkup(cases);
    addAttributes(cases);
    addDeclarations(cases);
    addLineEnds(cases);
    std::vector<CostCase> all = cases.take();
    showNames(all);
    return all;
}

}  // namespace Bench
