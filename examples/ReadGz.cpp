// read_gz FILE: reads a compressed document and prints its titles.

#include <zlib.h>

#include <iostream>
#include <limits>
#include <memory>
#include <string>

#include "VexXml/VexXml.h"

namespace {

// Unpacks as much of a file as is asked for, and keeps it, as readers look ahead and move back. So
// a small file that unpacks to a huge one is harmless as long as its reader has a limit.
class GzInStream : public Xml::InStream {
public:
    explicit GzInStream(const std::string& path) : mFile(gzopen(path.c_str(), "rb")) {}

    bool isOpen() const { return mFile != nullptr; }
    // Whether the file is damaged or cannot be read. Its text then ends there.
    bool hasFailed() const { return mHasFailed; }

    bool getChar(char& c) override {
        if (eof()) return false;
        c = mText[mPosition++];
        return true;
    }
    int getPosition() const override { return static_cast<int>(mPosition); }
    void setPosition(int position) override { mPosition = static_cast<std::size_t>(position); }
    bool eof() override {
        while (mPosition >= mText.size()) {
            if (!unpackMore()) return true;
        }
        return false;
    }

private:
    struct Closer {
        void operator()(gzFile file) const { gzclose(file); }
    };

    bool unpackMore() {
        constexpr std::size_t kMost = std::numeric_limits<int>::max();  // positions are an int
        if (mFile == nullptr || mHasFailed || mText.size() > kMost - sizeof mBlock) return false;
        const int size = gzread(mFile.get(), mBlock, sizeof mBlock);
        int error = Z_OK;
        gzerror(mFile.get(), &error);
        mHasFailed = size < 0 || error != Z_OK;  // Z_BUF_ERROR for a file that is cut off
        if (size > 0) mText.append(mBlock, static_cast<std::size_t>(size));
        return size > 0;
    }

    std::unique_ptr<gzFile_s, Closer> mFile;
    char mBlock[65536] = {};
    std::string mText;
    std::size_t mPosition = 0;
    bool mHasFailed = false;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: read_gz FILE\n";
        return 2;
    }
    GzInStream in(argv[1]);
    if (!in.isOpen()) {
        std::cerr << argv[1] << ": cannot be opened\n";
        return 2;
    }
    Xml::DocumentReader reader;
    reader.setLimits(Xml::ReadLimits::untrusted());
    const bool isRead = reader.parse(in);
    if (!isRead || in.hasFailed()) {
        std::cerr << argv[1] << ": "
                  << (in.hasFailed() ? "is damaged" : reader.getErrorMessage().c_str()) << '\n';
        return 1;
    }
    for (const Xml::Element* title : reader.getDocument()->findAll("title")) {
        std::cout << title->getCharData().toCString() << '\n';
    }
}
