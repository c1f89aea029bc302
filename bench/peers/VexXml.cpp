#include "VexXml/VexXml.h"

#include <fstream>
#include <sstream>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

std::string_view viewOf(const Xml::DataHolder& text) {
    return {text.toCString(), static_cast<std::size_t>(text.getSize())};
}

template <class Tally>
void tallyStartTag(const Xml::Element& element, Tally& tally) {
    tally.element(element.getName());
    for (int i = 0, count = element.getAttributeCount(); i < count; ++i) {
        const Xml::Attribute& attribute = *element.getAttribute(i);
        tally.attribute(attribute.getName(), viewOf(attribute.getValue()));
    }
}

struct Place {
    const Xml::Element* element;
    int next;  ///< the index of the child to be visited next
};

// `open` is empty, and keeps its memory for the next time.
template <class Tally>
void walkTree(const Xml::Element& root, std::vector<Place>& open, Tally& tally) {
    open.push_back({&root, 0});
    tallyStartTag(root, tally);
    while (!open.empty()) {
        Place& place = open.back();
        const Xml::Object* child = place.element->getChild(place.next++);
        if (child == nullptr) {
            open.pop_back();
        } else if (child->isElement()) {
            tallyStartTag(*child->toElement(), tally);
            open.push_back({child->toElement(), 0});
        } else {
            tally.text(viewOf(child->toCharData()->getData()));
        }
    }
}

class VexXmlLibrary : public Library {
public:
    VexXmlLibrary() { Xml::Message::disableOutput(false); }

    Abilities abilities() const override { return {true, true, true, true, true}; }

    bool parse(const std::string& text) override {
        Xml::StringInStream in(text);
        return read(in);
    }
    bool parseFile(const std::string& path) override {
        std::ifstream file;
        Xml::FileInStream in(path, &file);
        return read(in);
    }
    void clear() override { mDocument.reset(); }

    void walk(Sum& tally) override { walkTree(*mDocument->getRoot(), mOpen, tally); }
    void walk(Answers& tally) override { walkTree(*mDocument->getRoot(), mOpen, tally); }

    std::string write() override {
        std::ostringstream text;
        writeTo(text);
        return text.str();
    }
    std::size_t writeToMemory() override {
        std::ostringstream text;
        writeTo(text);
        return static_cast<std::size_t>(text.tellp());
    }
    bool writeFile(const std::string& path) override {
        std::ofstream file;
        {
            Xml::FileOutStream out(path, &file);
            mDocument->toStream(out);
        }
        return file.good();
    }

    std::size_t select(const std::string& expression) override {
        return Xml::XPath(mDocument.get()).GetValues(expression);
    }
    std::size_t selectedBytes(const std::string& expression) override {
        Xml::XPath query(mDocument.get());
        std::size_t bytes = 0;
        const unsigned long count = query.GetValues(expression);
        for (unsigned long i = 0; i < count; ++i) bytes += query.GetValueUTF8(i).size();
        return bytes;
    }

    // A tree that is bound to its DTD may be known to be valid.
    void prepareValidation() override { mDocument->getRoot()->setDtd(nullptr); }
    bool validate() override { return mDocument->validate(); }

private:
    bool read(Xml::InStream& in) {
        Xml::DocumentReader reader;
        const bool isRead = reader.parse(in);
        mDocument.reset(reader.extractDocument());
        return isRead;
    }
    void writeTo(std::ostream& stream) {
        Xml::FileOutStream out(&stream);
        mDocument->toStream(out);
    }

    std::unique_ptr<Xml::Document> mDocument;
    std::vector<Place> mOpen;
};

const Registration kVexXml({"VexXml", BENCH_VERSION, LibraryInfo::Kind::Ours,
                            [] { return std::make_unique<VexXmlLibrary>(); }});

}  // namespace

}  // namespace Bench
