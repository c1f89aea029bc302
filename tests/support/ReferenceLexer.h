#pragma once

#include <string>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"

namespace support {

/// The lexer once more, slow and obvious: it recurses where a token meets another one, reads again
/// what it read before, and searches line starts from the first to the last.
///
/// It takes nothing from its source but bytes, the position and the end. What the operations do is
/// what `Xml::InStream` promises for those of the same name.
class ReferenceLexer {
public:
    /// `source` must outlive the lexer.
    explicit ReferenceLexer(Xml::InStream& source);

    int getPosition() const;
    void setPosition(int position);
    bool eof();

    bool get(char& c);
    void putBackChar();
    void eatWhite();
    bool getToken(std::string& token);
    bool getName(std::string& name);
    bool getString(std::string& quoted);
    bool checkToken(const std::string& expected);
    bool skip(const std::string& until);
    bool getCharData(Xml::DataHolder& text);

    int getLine() const;
    int getColumn() const;
    const std::string& getErrorMessage() const;

private:
    using Place = std::pair<int, std::size_t>;  ///< a position and the length of the buffer

    void begin();
    bool read(char& c);
    bool readIntoBuffer();
    void noteLineStart(int position);
    Place store() const;
    void restore(const Place& place);
    bool bufferEndsWith(const std::string& text) const;
    bool fail(const std::string& error);

    void skipWhite();
    bool token();
    bool reference();
    bool slash();
    bool word();
    bool markup();
    bool instruction();
    bool declaration();
    bool section();
    bool comment();
    bool name();
    bool string();
    bool check(const std::string& expected);

    Xml::InStream& mSource;
    std::string mErrorMessage;
    std::vector<int> mLineStarts;
    bool mAfterCR = false;
    std::string mBuffer;
    /// What all reads of one operation read into, so that a source which ends with one more success
    /// gives the previous byte again.
    char mByte = 0;
};

}  // namespace support
