#include <iostream>
#include <memory>
#include <string>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

//! [rewrite]
// Reads a text and writes it back, or tells why it is refused.
void rewrite(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    if (!reader.parse(in)) {
        std::cout << "refused: " << reader.getErrorMessage() << '\n';
        return;
    }
    Xml::FileOutStream out(&std::cout);
    reader.getDocument()->getRoot()->toStream(out);
    std::cout << '\n';
}
//! [rewrite]

void skipped() {
    //! [skipped]
    rewrite("<menu> <!-- no dish --> <?print twice?> <dish>  Soup </dish> </menu>");
    rewrite("<menu><![CDATA[Fish & chips]]></menu>");
    rewrite("<menu>Today: <dish/> <drink/></menu>");
    //! [skipped]
}

void refused() {
    //! [refused]
    rewrite("<?xml version='1.0' standalone='yes'?><menu/>");
    rewrite("<!DOCTYPE menu [<!ATTLIST menu day (Friday | Saturday) 'Friday'>]><menu/>");
    rewrite("<caf\xC3\xA9/>");
    rewrite("<menu>& chips</menu>");
    //! [refused]
}

void references() {
    //! [references]
    rewrite(
        "<!DOCTYPE menu [<!ENTITY chef 'Ann &amp; Bob'> <!ELEMENT menu ANY>"
        "<!ATTLIST menu by CDATA #REQUIRED at CDATA #IMPLIED>]>"
        "<menu by='&chef;' at='&unknown;'>&chef; &unknown; &#65;</menu>");
    //! [references]
}

}  // namespace

int main() { runAll({{"skipped", skipped}, {"refused", refused}, {"references", references}}); }
