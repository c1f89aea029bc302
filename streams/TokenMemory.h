#pragma once

#include <string>
#include <vector>

#include "VexXml/Streams.h"

namespace Xml {

/// Reads tokens of a stream for a reader that puts most of them back, and keeps what looking ahead
/// has told of the text behind each.
///
/// A reference goes on to the next ";", however far that is, and what "<!" and "<?" are depends on
/// the token behind them. Looking for that again and again would cost with the square of the text.
/// As moving back brings the same bytes again, each place need be looked at but once. What reading
/// leaves in the stream is the same.
///
/// Nothing but readers of one parse may move the stream for as long as this lives.
class TokenMemory {
public:
    explicit TokenMemory(InStream& in) : mIn(in) {}
    ~TokenMemory();
    TokenMemory(const TokenMemory&) = delete;
    TokenMemory& operator=(const TokenMemory&) = delete;

    /// As that of the stream, but of a reference that is known, "&" alone is the token.
    bool getToken(std::string& token);
    /// As that of the stream.
    bool checkToken(const std::string& expected);

private:
    friend class TokenReader;

    /// A "<!" or "<?" that was met in front of the place where a token came to be taken.
    struct Opener {
        int behind;        ///< the position behind those two bytes
        int end;           ///< the position behind the token
        std::string text;  ///< the token
        bool hasError;     ///< it leaves an error text
        std::string error;
        bool isAfterCR;  ///< the last byte that was read for it is a carriage return
    };

    /// Where the reference goes to whose "&" stands in front of the position. So does each that
    /// begins inside.
    struct Reference {
        int begin = -1;  ///< -1 for none
        int end = -1;    ///< behind the ";", or behind all of the text
        bool isEnded = false;
        bool isAfterCR = false;
        std::string text;  ///< empty when it is not kept
    };

    bool knowsReference(int position) const;
    void keepReference(Reference reference);
    const Opener* openerAt(int position);
    void leaveNotAName(int position);
    void giveErrorText();

    InStream& mIn;
    std::vector<Opener> mOpeners;  ///< the next one last
    Reference mReference;
    int mNotAName = -1;  ///< the position of the reference that the error text tells of, and -1
                         ///< when it is in the stream; in its place there is an empty one
};

}  // namespace Xml
