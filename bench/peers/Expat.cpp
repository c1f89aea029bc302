#include <expat.h>

#include <fstream>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

/// Reads events and keeps nothing but their number: a lower bound for what has to keep a tree.
class ExpatLibrary : public Library {
public:
    Abilities abilities() const override { return {true, false, false, false, false}; }

    bool parse(const std::string& text) override {
        const Parser parser = makeParser();
        return XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) ==
               XML_STATUS_OK;
    }
    bool parseFile(const std::string& path) override {
        const Parser parser = makeParser();
        std::ifstream file(path, std::ios::binary);
        bool isRead = true;
        while (isRead && file) {
            void* buffer = XML_GetBuffer(parser.get(), kBlock);
            file.read(static_cast<char*>(buffer), kBlock);
            isRead = XML_ParseBuffer(parser.get(), static_cast<int>(file.gcount()), !file) ==
                     XML_STATUS_OK;
        }
        return isRead;
    }
    void clear() override {}

private:
    using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

    static constexpr int kBlock = 1 << 16;

    Parser makeParser() {
        Parser parser(XML_ParserCreate(nullptr), XML_ParserFree);
        XML_SetUserData(parser.get(), &mEvents);
        XML_SetStartElementHandler(parser.get(), [](void* data, const char*, const char**) {
            ++*static_cast<std::size_t*>(data);
        });
        XML_SetEndElementHandler(
            parser.get(), [](void* data, const char*) { ++*static_cast<std::size_t*>(data); });
        XML_SetCharacterDataHandler(
            parser.get(), [](void* data, const char*, int) { ++*static_cast<std::size_t*>(data); });
        return parser;
    }

    std::size_t mEvents = 0;
};

std::string version() {
    return std::to_string(XML_MAJOR_VERSION) + "." + std::to_string(XML_MINOR_VERSION) + "." +
           std::to_string(XML_MICRO_VERSION);
}

const Registration kExpat({"expat", version(), LibraryInfo::Kind::Events,
                           [] { return std::make_unique<ExpatLibrary>(); }});

}  // namespace

}  // namespace Bench
