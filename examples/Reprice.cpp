// reprice FILE KEY PRICE: an editor that keeps a large document in its file. It makes a catalogue,
// saves it, changes one price, and saves it again: only what changed is then written.
//
// A save in place is quick, not safe: a crash meanwhile leaves a mixture. Keep a copy, or write a
// new file and rename it, where that matters more.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

#include "VexXml/VexXml.h"

namespace {

// Counts what it writes. Without the counting a `FileOutStream` does the same, and faster.
class CountingOutStream : public Xml::OutStream {
public:
    explicit CountingOutStream(std::ostream& file) : mFile(file) {}

    void putChar(char c) override {
        mFile.put(c);
        ++mCount;
    }
    int getPosition() const override { return static_cast<int>(mFile.tellp()); }
    void setPosition(int position) override { mFile.seekp(position); }
    std::uintmax_t count() const { return mCount; }

private:
    std::ostream& mFile;
    std::uintmax_t mCount = 0;
};

// A document and the file that holds it, which nobody else changes meanwhile.
class Catalogue {
public:
    Catalogue(std::unique_ptr<Xml::Document> document, std::string path)
        : mDocument(std::move(document)), mPath(std::move(path)) {}

    Xml::Element* find(const std::string& key) {
        return mDocument->getRoot()->getElementByAttribute("key", key);
    }

    // The number of bytes that were written; 0 when the file could not be written.
    std::uintmax_t save() {
        // Neither emptied when it is opened, nor written from its end.
        std::fstream file(mPath, std::ios::in | std::ios::out | std::ios::binary);
        if (!file.is_open()) return 0;
        CountingOutStream out(file);
        mDocument->toStream(out);
        const std::streamoff end = file.tellp();
        file.close();
        if (!file || end < 0) return 0;
        std::error_code failure;  // the text may have become shorter
        std::filesystem::resize_file(mPath, static_cast<std::uintmax_t>(end), failure);
        return failure ? 0 : out.count();
    }

private:
    std::unique_ptr<Xml::Document> mDocument;
    std::string mPath;
};

std::unique_ptr<Xml::Document> makeCatalogue() {
    auto catalogue = std::make_unique<Xml::Element>("catalogue");
    for (int i = 0; i < 10000; ++i) {
        auto item = std::make_unique<Xml::Element>("item");
        item->setAttribute("key", i);
        item->setAttribute("price", "10.00");
        catalogue->addChild(item.release());
    }
    return std::make_unique<Xml::Document>(catalogue.release());
}

// Whether it succeeded, which is told.
bool saved(Catalogue& catalogue) {
    const std::uintmax_t count = catalogue.save();
    if (count == 0) {
        std::cerr << "cannot be written\n";
    } else {
        std::cout << count << " bytes written\n";
    }
    return count > 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: reprice FILE KEY PRICE\n";
        return 2;
    }
    Xml::Object::setRWOptimization(true);  // for the whole process, so once at its start
    std::ofstream(argv[1]).close();        // there is to be a file
    Catalogue catalogue(makeCatalogue(), argv[1]);
    if (!saved(catalogue)) return 1;
    Xml::Element* item = catalogue.find(argv[2]);
    if (item == nullptr) {
        std::cerr << "no item has the key " << argv[2] << '\n';
        return 1;
    }
    item->setAttribute("price", argv[3]);
    return saved(catalogue) ? 0 : 1;
}
