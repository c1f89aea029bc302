#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "streams/TokenMemory.h"

namespace Xml {

/// Gathers one token at the end of a stream's parse buffer.
///
/// What "<?" and "<!" are depends on the token behind them: a name, "[", or neither, in which case
/// that token is not taken. It may begin with "<!" itself, and so on; and where it is asked about
/// twice, doing so step by step would double the work at each of these openers. So openers wait on
/// a list instead of the call stack, and no token is read twice: reading it again would find the
/// same bytes, end at the same place and leave the same error text. Only the line start that its
/// first byte may give rise to is noted anew.
///
/// Bytes that one step of the lexer reads go into one variable: where a file stream succeeds once
/// more at its end, the step sees its previous byte again, and callers know the resulting tokens.
class TokenReader {
public:
    /// With a memory, what that has kept is not read again.
    explicit TokenReader(InStream& in, TokenMemory* memory = nullptr);

    /// Reads a token, behind white space.
    bool read();
    /// Reads the rest of a token that began with "<".
    bool readMarkup();

private:
    /// The error text that reading leaves behind, which a success may do as well.
    struct LeftBehind {
        enum class Text {
            None,             ///< none was set
            EndOfStream,      ///< the stream's own text
            NotAName,         ///< `begin` and `size` tell which bytes of the parse buffer are meant
            AsItIs,           ///< the one that the stream has
            BracketExpected,  ///< "[" was
            CDataExpected     ///< "CDATA" was
        };
        Text text = Text::None;
        std::size_t begin = 0;
        std::size_t size = 0;
    };

    /// What reading has come to.
    struct Outcome {
        enum class State { Failed, Complete, AwaitsToken };
        State state;
        LeftBehind left;
    };

    /// A "<?" or "<!" whose rest is not known yet.
    struct Opener {
        /// What the token that is being read may turn out to be.
        enum class Awaits { Target, DeclarationName, Bracket, CData, SecondBracket };
        Awaits awaits;
        std::pair<int, int> behindOpener;
        std::pair<int, int> behindBracket;
        LeftBehind left;
    };

    bool finish(Outcome outcome);
    Outcome startToken();
    Outcome startMarkup();
    Outcome readRest(char first);
    Outcome readReference();
    Outcome readReferenceText();
    bool recallsReference(int begin) const;
    Outcome recallReference();
    Outcome readString();
    Outcome readSlash();

    Outcome recall(const TokenMemory::Opener& known);
    void remember(const Opener& opener, const Outcome& outcome);

    Outcome resume(const Outcome& token);
    void leaveNotAName(const std::string& target);
    Outcome resumeTarget(Opener& opener, const Outcome& token);
    Outcome resumeDeclaration(Opener& opener, const Outcome& token);
    Outcome resumeBracket(Opener& opener, const Outcome& token);
    Outcome resumeCData(Opener& opener, const Outcome& token);
    Outcome resumeSecondBracket(Opener& opener, const Outcome& token);
    Outcome refuseCData(Opener& opener, LeftBehind left);
    Outcome readDashes(Opener& opener);

    bool rewindsTo(int position);
    void noteLineStartAt(int position);
    Outcome failedAtEnd() const;
    bool endsWith(std::string_view text) const;
    void setErrorText(const LeftBehind& left);
    std::string errorText(const LeftBehind& left) const;

    InStream& mIn;
    TokenMemory* mMemory;       ///< null for none
    bool mRemembers = false;    ///< the openers in the memory are of this token
    int mReferenceAt = -1;      ///< behind the "&" of the last reference; with a memory only
    bool mIsRecalled = false;   ///< and it was not read
    std::vector<Opener> mOpen;  ///< outermost first
    int mRefusedAt = -1;        ///< where "CDATA[" was last looked for in vain; -1 for nowhere
    LeftBehind mRefusal;        ///< what that left behind
};

}  // namespace Xml
