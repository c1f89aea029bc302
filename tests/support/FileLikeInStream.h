#pragma once

#include <string>

#include "VexXml/Streams.h"

namespace support {

/// A stream over a string that ends as one over a standard input stream does.
///
/// At the end of the text one more `getChar` succeeds and leaves its argument as it was. From then
/// on the stream has failed: it gives nothing, its position is -1, and moving it clears the
/// end-of-file flag but not the failure.
class FileLikeInStream : public Xml::InStream {
public:
    explicit FileLikeInStream(std::string text);

    bool getChar(char& c) override;
    int getPosition() const override;
    void setPosition(int position) override;
    bool eof() override;

private:
    std::string mText;
    int mPosition = 0;
    bool mFailed = false;
    bool mMetEnd = false;
};

}  // namespace support
