#include <memory>
#include <vector>

#include "VexXml/Dtd.h"
#include "fuzz/Checks.h"
#include "fuzz/Documents.h"
#include "fuzz/Dtds.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"

namespace fuzz {
namespace {

/// What of a tree is known not to come back as it is.
struct Losses {
    /// A line feed in an attribute is indented like any other, each time it is written.
    bool lineInAttribute = false;
    /// Text that begins with a quote or an ampersand is refused without the end of that, which may
    /// stand in a comment that is dropped.
    bool openText = false;
    /// Texts next to each other come back as one, empty texts not at all, and white space alone is
    /// dropped in front of markup: what is left may break the DTD.
    bool text = false;
};

void noteText(const Xml::CharData& text, bool isBehindText, Losses& losses) {
    const std::string escaped(text.getSize() > 0 ? &text[0] : "",
                              static_cast<std::size_t>(text.getSize()));
    const std::size_t first = escaped.find_first_not_of(" \t\r\n");
    if (first == std::string::npos || isBehindText) losses.text = true;
    if (first != std::string::npos && std::string("'\"&").find(escaped[first]) != std::string::npos)
        losses.openText = true;
}

Losses lossesOf(const Xml::Element& root) {
    Losses losses;
    std::vector<const Xml::Element*> pending{&root};
    while (!pending.empty()) {
        const Xml::Element& element = *pending.back();
        pending.pop_back();
        for (int i = 0; i < element.getAttributeCount(); ++i) {
            const std::string value = element.getAttribute(i)->getValue();
            if (value.find('\n') != std::string::npos) losses.lineInAttribute = true;
        }
        for (int i = 0; i < element.getChildCount(); ++i) {
            const Xml::Object& child = *element.getChild(i);
            if (child.isElement()) {
                pending.push_back(child.toElement());
            } else {
                noteText(*child.toCharData(), i > 0 && element.getChild(i - 1)->isCharData(),
                         losses);
            }
        }
    }
    return losses;
}

}  // namespace

// What the first writing loses is gone then: the second and the third are the same, and so are all
// when there is nothing to lose.
std::string checkRoundTrip(std::string_view input) {
    const support::Diagnostics diagnostics;
    const std::unique_ptr<Xml::Document> document = read(std::string(input));
    if (document == nullptr) return "";
    const bool hasDtd = document->getDtd() != nullptr;
    if (hasDtd && !isStable(*document->getDtd())) return "";
    const Losses losses = lossesOf(*document->getRoot());

    const std::string first = support::written(*document);
    const std::unique_ptr<Xml::Document> again = read(first);
    if (again == nullptr) {
        return losses.openText || (hasDtd && losses.text) ? "" : "refused:\n" + first;
    }
    const std::string second = support::written(*again);
    if (!losses.text && !losses.lineInAttribute) {
        if (second != first) return "written as\n" + second + "\nand before as\n" + first;
        if (support::dump(*again) != support::dump(*document)) return "read otherwise:\n" + first;
    }
    const std::unique_ptr<Xml::Document> last = read(second);
    if (last == nullptr) return "refused once it was read:\n" + second;
    if (losses.lineInAttribute) return "";
    const std::string third = support::written(*last);
    if (third != second) return "written as\n" + third + "\nand before as\n" + second;
    return support::dump(*last) == support::dump(*again) ? "" : "another tree in\n" + second;
}

}  // namespace fuzz
