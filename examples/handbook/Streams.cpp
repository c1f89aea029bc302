#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

//! [in]
// Reads a text that arrived in pieces, without putting them together.
class PiecesInStream : public Xml::InStream {
public:
    explicit PiecesInStream(std::vector<std::string> pieces) : mPieces(std::move(pieces)) {}

    bool getChar(char& c) override {
        if (eof()) return false;
        c = mPieces[mPiece][mOffset++];
        return true;
    }
    int getPosition() const override {
        std::size_t position = mOffset;
        for (std::size_t i = 0; i < mPiece; ++i) position += mPieces[i].size();
        return static_cast<int>(position);
    }
    void setPosition(int position) override {
        mPiece = 0;
        mOffset = static_cast<std::size_t>(position);
        while (mPiece < mPieces.size() && mOffset > mPieces[mPiece].size()) {
            mOffset -= mPieces[mPiece++].size();
        }
    }
    bool eof() override {
        while (mPiece < mPieces.size() && mOffset == mPieces[mPiece].size()) {
            mOffset = 0;
            ++mPiece;
        }
        return mPiece >= mPieces.size();
    }

private:
    std::vector<std::string> mPieces;
    std::size_t mPiece = 0;
    std::size_t mOffset = 0;
};
//! [in]

void reading() {
    //! [reading]
    PiecesInStream in({"<menu><di", "sh>So", "", "up</dish></menu>"});
    Xml::DocumentReader reader;
    if (!reader.parse(in)) std::cerr << reader.getErrorMessage() << '\n';
    std::cout << reader.getDocument()->getRoot()->getElementCharData("dish").toCString() << '\n';
    //! [reading]
}

//! [out]
// Writes to the end of a string.
class AppendingOutStream : public Xml::OutStream {
public:
    explicit AppendingOutStream(std::string& text) : mText(text) {}

    void putChar(char c) override { mText += c; }
    int getPosition() const override { return static_cast<int>(mText.size()); }
    void setPosition(int /*position*/) override {}  // only the read/write optimisation moves

private:
    std::string& mText;
};
//! [out]

void writing() {
    //! [writing]
    Xml::Element menu("menu");
    menu.addElement("dish", "Soup");
    std::string text = "Today: ";
    AppendingOutStream out(text);
    menu.toStream(out);
    std::cout << text << '\n';
    //! [writing]
}

void lexer() {
    //! [lexer]
    Xml::StringInStream in("width = \"12\"; height = 'auto';");
    std::string name, value;
    while (in.getName(name) && in.checkToken("=") && in.getString(value)) {
        std::cout << name << " is " << value << '\n';
        in.checkToken(";");
        in.eatWhite();
        if (in.eof()) break;
    }
    //! [lexer]
}

void indenting() {
    //! [indenting]
    Xml::FileOutStream out(&std::cout);
    out << "menu {\n";
    out.incTab();
    out << "soup;\n";
    out.decTab();
    out << "}\n";
    //! [indenting]
}

}  // namespace

int main() {
    runAll(
        {{"reading", reading}, {"writing", writing}, {"lexer", lexer}, {"indenting", indenting}});
}
