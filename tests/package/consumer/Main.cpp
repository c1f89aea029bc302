// Prints the root element of a file and what a query finds in it.

#include <iostream>
#include <string>

#include "VexSys/FileIO.h"
#include "VexSys/Uni16.h"
#include "VexXml/VexXml.h"

namespace {

// A class of the library's, derived from outside.
class TextOutStream : public Xml::OutStream {
public:
    void putChar(char c) override { text += c; }
    int getPosition() const override { return static_cast<int>(text.size()); }
    void setPosition(int position) override { text.resize(static_cast<std::size_t>(position)); }

    std::string text;
};

}  // namespace

int main(int, char** arguments) {
    const VexSys::FileSpec file(arguments[1]);
    Xml::FileSpecInStream in(file);
    Xml::DocumentReader reader;
    if (!reader.parse(in)) {
        std::cerr << reader.getErrorMessage() << '\n';
        return 1;
    }
    Xml::Document& document = *reader.getDocument();
    Xml::XPath query(&document);
    std::cout << VexSys::Uni16CharToUTF8(query.GetValue(VexSys::Uni16String(L"/a/@b"))) << '\n';

    document.getRoot()->setAttribute("c", 3);
    TextOutStream out;
    document.getRoot()->toStream(out);
    std::cout << out.text << '\n';
}
