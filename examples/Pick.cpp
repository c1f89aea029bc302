// pick EXPRESSION FILE: prints what an XPath expression selects, nodes as XML and values as text.

#include <fstream>
#include <iostream>
#include <string>

#include "VexXml/VexXml.h"

namespace {

void printResults(Xml::XPath& query) {
    Xml::FileOutStream out(&std::cout);
    for (unsigned long i = 0; i < query.GetNrOfResults(); ++i) {
        const Xml::XPath::ResultItem& item = query.GetResults()[i];
        if (item.kind == Xml::XPath::Node) {
            item.node->toStream(out);
            out << "\n";
        } else {
            out << query.GetValueUTF8(i) + "\n";
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: pick EXPRESSION FILE\n";
        return 2;
    }
    std::ifstream file;
    Xml::FileInStream in(argv[2], &file);
    if (!file.is_open()) return 2;  // the stream has reported it
    Xml::DocumentReader reader;
    if (!reader.parse(in)) {
        std::cerr << argv[2] << ": " << reader.getErrorMessage() << '\n';
        return 2;
    }
    Xml::XPath query(reader.getDocument());
    if (query.GetValues(argv[1]) == 0 && query.GetErrorCode() != Xml::XPath::NodeNotFound) {
        std::cerr << query.GetErrorStringUTF8() << '\n';
        return 2;
    }
    printResults(query);
    return query.GetNrOfResults() > 0 ? 0 : 1;
}
