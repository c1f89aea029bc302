#pragma once

#include <string>

#include "VexXml/Streams.h"

namespace support {

/// A stream as a caller would write one: nothing but the four operations, over a string.
class PlainInStream : public Xml::InStream {
public:
    explicit PlainInStream(std::string text);

    bool getChar(char& c) override;
    int getPosition() const override;
    void setPosition(int position) override;
    bool eof() override;

private:
    std::string mText;
    int mPosition = 0;
};

}  // namespace support
