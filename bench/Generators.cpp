#include "bench/Generators.h"

#include <array>
#include <random>

namespace Bench {

namespace {

const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

const std::array<const char*, 48> kWords = {
    "harbour", "lantern", "copper",  "meadow",  "thirty", "window",   "carry",   "slow",
    "river",   "paper",   "oak",     "signal",  "north",  "weaver",   "glass",   "bread",
    "under",   "seven",   "quiet",   "engine",  "salt",   "journey",  "field",   "of",
    "the",     "and",     "a",       "in",      "linen",  "orchard",  "market",  "rope",
    "silver",  "evening", "stone",   "bridge",  "to",     "with",     "painted", "early",
    "cask",    "wheel",   "feather", "compass", "amber",  "upstairs", "kettle",  "letter"};

/// A text that grows, and the numbers that choose what comes next.
class Writer {
public:
    explicit Writer(std::size_t bytes) { mText.reserve(bytes + bytes / 8); }

    Writer& operator<<(const std::string& text) {
        mText += text;
        return *this;
    }
    Writer& operator<<(int number) { return *this << std::to_string(number); }

    std::size_t size() const { return mText.size(); }
    std::string take() { return std::move(mText); }

    /// From 0 up to below `limit`.
    int choose(int limit) { return static_cast<int>(mRandom() % static_cast<unsigned>(limit)); }
    template <std::size_t count>
    std::string pick(const std::array<const char*, count>& from) {
        return from[mRandom() % count];
    }
    std::string word() { return pick(kWords); }

    Writer& words(int count) {
        for (int i = 0; i < count; ++i) *this << (i == 0 ? "" : " ") << word();
        return *this;
    }
    Writer& element(const std::string& name, int wordCount) {
        *this << "<" << name << ">";
        return words(wordCount) << "</" << name << ">";
    }

private:
    std::string mText;
    std::minstd_rand mRandom{20};  // the standard fixes its sequence
};

void addMail(Writer& out) {
    out << "      <mail>\n        ";
    out.element("from", 2) << "\n        ";
    out.element("to", 2) << "\n        <date>" << 1 + out.choose(28) << "/" << 1 + out.choose(12)
                         << "/2001</date>\n        ";
    out.element("body", 20 + out.choose(30)) << "\n      </mail>\n";
}

void addRecord(Writer& out, int number) {
    out << "  <item id=\"item" << number << "\" category=\"c" << out.choose(50) << "\""
        << (out.choose(10) == 0 ? " featured=\"yes\"" : "") << ">\n    ";
    out.element("location", 2) << "\n    <quantity>" << 1 + out.choose(9) << "</quantity>\n    ";
    out.element("name", 3) << "\n    <payment>Cash &amp; Creditcard</payment>\n    <description>\n"
                           << "      ";
    for (int i = 1 + out.choose(3); i > 0; --i) out.element("para", 10 + out.choose(40));
    out << "\n    </description>\n    <mailbox>\n";
    for (int i = out.choose(3); i > 0; --i) addMail(out);
    out << "    </mailbox>\n  </item>\n";
    if (number % 10 == 0) out << "  <!-- lot " << number << " -->\n";
}

std::string makeSite(const std::string& prolog, std::size_t bytes) {
    Writer out(bytes);
    out << prolog << "<site>\n";
    for (int i = 0; out.size() < bytes; ++i) addRecord(out, i);
    out << "</site>\n";
    return out.take();
}

/// A piece of text that holds references, and does not begin or end with white space.
void addReferences(Writer& out) {
    static const std::array<const char*, 6> references = {"&amp;",  "&lt;",   "&gt;",
                                                          "&quot;", "&apos;", "&#65;"};
    out << out.word() << (out.choose(2) == 0 ? " " : "\n") << out.pick(references) << " ";
    out.words(1 + out.choose(4)) << out.pick(references) << out.word();
}

void addParagraph(Writer& out, int number) {
    out << "<p n=\"" << number << "\" title=\"" << out.word() << " &amp; " << out.word() << "\">";
    for (int i = 2 + out.choose(6); i > 0; --i) {
        addReferences(out);
        out << " ";
        out.element(out.choose(2) == 0 ? "em" : "strong", 1 + out.choose(3)) << ", ";
    }
    if (number % 8 == 0) out << "see<![CDATA[ if (a < b && b < c) ]]>";
    addReferences(out);
    out << "</p>\n";
}

void addSections(Writer& out, int depth) {
    for (int i = 0; i < depth; ++i) {
        out << "<section level=\"" << i << "\">";
        out.element("title", 2) << "\n";
    }
    out.element("para", 12);
    for (int i = 0; i < depth; ++i) out << "</section>\n";
}

}  // namespace

std::string makeRecords(std::size_t bytes) { return makeSite(kDeclaration, bytes); }

std::string makeFlat(int count) {
    Writer out(static_cast<std::size_t>(count) * 32);
    out << kDeclaration << "<rows>\n";
    for (int i = 0; i < count; ++i) {
        out << "<row id=\"" << i << "\">" << out.word() << "</row>\n";
    }
    out << "</rows>\n";
    return out.take();
}

std::string makeAttributes(std::size_t bytes) {
    Writer out(bytes);
    out << kDeclaration << "<points>\n";
    for (int i = 0; out.size() < bytes; ++i) {
        out << "  <point id=\"p" << i << "\" x=\"" << out.choose(4096) << "\" y=\""
            << out.choose(4096) << "\" width=\"" << out.choose(99) << "\" height=\""
            << out.choose(99) << "\" fill=\"" << out.word() << "\" stroke=\"none\" label=\"";
        out.words(4) << "\" style=\"font-size:" << out.choose(40) << "px;display:inline\" class=\""
                     << out.word() << "\" note=\"a &lt; b\" visible=\"true\"/>\n";
    }
    out << "</points>\n";
    return out.take();
}

std::string makeMixed(std::size_t bytes) {
    Writer out(bytes);
    out << kDeclaration << "<book>\n";
    for (int i = 0; out.size() < bytes; ++i) addParagraph(out, i);
    out << "</book>\n";
    return out.take();
}

std::string makeDeep(std::size_t bytes) {
    constexpr int kDepth = 90;  // a peer reads no more than 100 levels
    Writer out(bytes);
    out << kDeclaration << "<report>\n";
    while (out.size() < bytes) addSections(out, kDepth);
    out << "</report>\n";
    return out.take();
}

std::string makeChain(int levels) {
    Writer out(static_cast<std::size_t>(levels) * 30);
    out << kDeclaration;
    for (int i = 0; i < levels; ++i) out << "<level n=\"" << i % 100 << "\">\n";
    out << "bottom";
    for (int i = 0; i < levels; ++i) out << "</level>\n";
    return out.take();
}

std::string makeQuotes(std::size_t bytes) {
    Writer out(bytes);
    out << kDeclaration << "<play>\n";
    for (int i = 0; out.size() < bytes; ++i) {
        out << "  <line n=\"" << i << "\">";
        if (i % 3 == 0) {
            out.element("b", 1) << "'tis the ";
            out.words(4);
        } else {
            out << "\"";
            out.words(3 + out.choose(5)) << ",\" said the ";
            out.words(2);
        }
        out << "</line>\n";
    }
    out << "  <line n=\"last\">\"'tis 'done'\"</line>\n</play>\n";
    return out.take();
}

std::string makeValid(std::size_t bytes) {
    return makeSite(std::string(kDeclaration) +
                        "<!DOCTYPE site [\n"
                        "<!ELEMENT site (item*)>\n"
                        "<!ELEMENT item (location, quantity, name, payment?, description, "
                        "(mailbox | note))>\n"
                        "<!ATTLIST item id CDATA #REQUIRED category CDATA #REQUIRED\n"
                        "          featured CDATA #IMPLIED>\n"
                        "<!ELEMENT location (#PCDATA)>\n"
                        "<!ELEMENT quantity (#PCDATA)>\n"
                        "<!ELEMENT name (#PCDATA)>\n"
                        "<!ELEMENT payment (#PCDATA)>\n"
                        "<!ELEMENT description (para | list)+>\n"
                        "<!ELEMENT para (#PCDATA)>\n"
                        "<!ELEMENT list (para+)>\n"
                        "<!ELEMENT mailbox (mail*)>\n"
                        "<!ELEMENT mail (from, to, date, body)>\n"
                        "<!ELEMENT from (#PCDATA)>\n"
                        "<!ELEMENT to (#PCDATA)>\n"
                        "<!ELEMENT date (#PCDATA)>\n"
                        "<!ELEMENT body (#PCDATA | em)*>\n"
                        "<!ELEMENT em (#PCDATA)>\n"
                        "<!ELEMENT note (#PCDATA)>\n"
                        "]>\n",
                    bytes);
}

}  // namespace Bench
