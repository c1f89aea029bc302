#pragma once

/// Where text comes from and goes to: byte sources with the lexer that all readers share, and byte
/// sinks that indent.

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "VexXml/Export.h"
#include "VexXml/Values.h"

namespace VexSys {
class FileIO;
class FileSpec;
}  // namespace VexSys

namespace Xml {

/// A source of bytes, and the lexer over it.
///
/// A derived class supplies the bytes: `getChar`, `getPosition`, `setPosition` and `eof`. Positions
/// are byte offsets from 0 and name the next byte to be read. As they are of type `int`, a stream
/// has to end before 2 GiB.
///
/// Needs: moving back must bring the same bytes again, as the lexer looks ahead. Over a source that
/// cannot tell or change its position, a pipe say, only `get`, `skip` and `getChar` work.
///
/// Operations that answer false leave the reason in `getErrorMessage()` and their argument as it
/// was. A success leaves the text of an earlier failure there, and looking ahead may put one there
/// on the way to a success.
///
/// A stream is used by one thread at a time, `const` operations included.
///
/// Lines: only a carriage return, or a line feed, that follows a carriage return starts a line that
/// is counted. Text with plain line feeds is one line.
class VEXXML_API InStream {
public:
    /// Reads the next byte into `c`; false when there is none.
    virtual bool getChar(char& c) = 0;
    /// The byte offset of the next byte to be read.
    virtual int getPosition() const = 0;
    /// Makes the byte at that offset the next one to be read.
    virtual void setPosition(int position) = 0;
    /// True when no byte is left.
    virtual bool eof() = 0;
    virtual ~InStream();

    /// Reads the next byte into `c`, taking note of line starts.
    bool get(char& c);
    /// Moves back by one byte; does nothing at position 0.
    void putBackChar();
    /// Skips white space.
    void eatWhite();
    /// Reads one token behind white space: markup such as "<", "</", "/>", "<!--", "<![CDATA[",
    /// "<?xml", "<!NAME"; a quoted string, quotes included; "&" up to ";"; a single delimiter; or
    /// anything else up to the next delimiter or white space.
    bool getToken(std::string& token);
    /// Reads a token that must be a name. One that is not is read all the same.
    bool getName(std::string& name);
    /// Reads a string between double or single quotes, and gives it with them.
    bool getString(std::string& quoted);
    /// Reads a token and tests that it ends with `expected`, so "/>" passes for ">".
    bool checkToken(const std::string& expected);
    /// Reads up to and including the first occurrence of `until`.
    bool skip(const std::string& until);
    /// Appends bytes to `text` up to the next "<", which stays unread. What was read before a
    /// failure stays in `text`.
    bool getCharData(DataHolder& text);

    /// The line of the current position: at a line start, that line's number, counted from 1; else
    /// the number of line starts known, or 1 when there is none.
    int getLine() const;
    /// How far the current position is behind a line start: the one found just before the first
    /// that is not in front of the position. Without one, the position itself.
    int getColumn() const;
    /// Why an operation answered false; empty before the first that did.
    const std::string& getErrorMessage() const;

protected:
    InStream();
    InStream(const InStream&);
    InStream(InStream&&) noexcept;
    InStream& operator=(const InStream&);
    InStream& operator=(InStream&&) noexcept;

private:
    /// The positions at which a line begins, each once, in the order found, which may jump back
    /// when text is read again. All questions take logarithmic time.
    class LineStarts {
    public:
        void add(int position);
        /// Those inside a piece of the text, which begins at `position`.
        void addFrom(const char* piece, std::size_t size, int position);
        int lineOf(int position) const;
        int columnOf(int position) const;

    private:
        /// The first of `mHighs` whose line start is not below `position`.
        std::vector<int>::const_iterator firstNotBelow(int position) const;

        std::vector<int> mFound;
        std::vector<int> mHighs;  ///< where in `mFound` the entries above all earlier ones are
        std::unordered_map<int, int> mOthers;  ///< where in `mFound` each other entry is
    };

    friend class StreamEnd;
    friend class TextWindow;
    friend class TokenMemory;
    friend class TokenReader;

    /// All of the text, where it lies in memory and positions count its bytes; otherwise null.
    virtual const DataHolder* textInMemory() const;
    /// Appends up to `count` bytes from `position` on to `ahead`, fewer where there are no more.
    /// True when that leaves no trace but another position, which the caller then has to set; false
    /// when it cannot be done, and nothing has changed.
    virtual bool readAhead(std::size_t position, std::size_t count, std::string& ahead);
    /// Moves back by one byte without asking where that is; false, having done nothing, where that
    /// is not known to be the same.
    virtual bool stepBack();

    bool getCharInFrontOfEnd(char& c);
    void noteLineStart(int position);
    /// Those that reading the text in memory from `begin` to just before `end` finds.
    void noteLineStarts(int begin, int end);
    const LineStarts& lineStarts() const;
    bool getTokenInParseBuffer();
    bool getTokenltInParseBuffer();
    bool getNameInParseBuffer();
    bool getStringInParseBuffer();
    bool checkTokenInParseBuffer(const char* expected, int size);
    bool expectAtEnd(const char* expected, int size);
    bool CheckParseBufferEnd(const char* expected, int size) const;
    std::pair<int, int> StorePosition() const;
    void RestorePosition(const std::pair<int, int>& stored);

    std::string mErrorMessage;
    mutable LineStarts mLineStarts;
    /// What is to be added to them before they are used: what stands in the text in memory from one
    /// position to just before another, or a single one and -1. Hardly anyone asks for lines.
    mutable std::vector<std::pair<int, int>> mNotedLines;
    bool mAfterCR = false;
    std::string mParseBuffer;
    int mEnd = -1;  ///< where a reader has put an end to it, and -1 for nowhere
    bool mHasMetEnd = false;
};

/// A sink of bytes that indents: a byte other than a line feed at the start of a line gets one tab
/// per level in front of it.
class VEXXML_API OutStream {
public:
    virtual ~OutStream();
    /// False when what is written is lost.
    virtual bool isValid() const;
    /// Writes one byte as it is.
    virtual void putChar(char c) = 0;
    /// The byte offset of the next byte to be written.
    virtual int getPosition() const = 0;
    /// Goes on writing at that offset, over what stands there. Called by the read/write
    /// optimisation alone.
    virtual void setPosition(int position) = 0;

    /// Writes one byte, indented at the start of a line. Returns the stream.
    OutStream& operator<<(char c);
    /// Writes all bytes, each line indented. Returns the stream.
    OutStream& operator<<(const std::string& text);
    /// Writes the bytes as they are: nothing is indented, and whether a line starts is not noted.
    OutStream& writeDataHolder(const DataHolder& text);

    /// Indents by one level more.
    void incTab();
    /// Indents by one level less; does nothing at level 0.
    void decTab();

protected:
    OutStream();
    OutStream(const OutStream&);
    OutStream& operator=(const OutStream&);

private:
    friend class OutWindow;

    /// The standard stream, where all that writing does is to put bytes into it; otherwise null.
    virtual std::ostream* standardStream();

    void put(char c);
    void put(const std::string& text);

    int mTabs = 0;
    bool mAtLineStart = true;
};

/// Reads a text in memory, of which it keeps a copy.
///
/// A text of 2 GiB or more is refused with a `Message` and reads as empty.
class VEXXML_API StringInStream : public InStream {
public:
    /// At the start of the text.
    explicit StringInStream(const std::string& text);
    StringInStream(const StringInStream&);
    StringInStream(StringInStream&&) noexcept;
    StringInStream& operator=(const StringInStream&);
    StringInStream& operator=(StringInStream&&) noexcept;
    ~StringInStream() override;

    bool getChar(char& c) override;
    int getPosition() const override;
    /// Not checked: behind the end nothing is left, and in front of the start nothing can be read.
    void setPosition(int position) override;
    bool eof() override;

private:
    const DataHolder* textInMemory() const override;

    DataHolder mText;
    int mPos = 0;
};

/// Reads a standard input stream, usually a file.
///
/// At the end of the source, one more `getChar` succeeds and leaves its argument as it was; callers
/// rely on it. The standard stream itself stays its owner's and must outlive this one. A source of
/// 2 GiB or more is refused with a `Message` and reads as empty, as does a moved-from stream.
class VEXXML_API FileInStream : public InStream {
public:
    /// Opens `path` in `*file`, closing what was open there, and closes it when destroyed. A file
    /// that cannot be opened is reported as a `Message`, and every read fails; so does what is not
    /// a regular file. Null reads as empty.
    FileInStream(const std::string& path, std::ifstream* file);
    /// Reads the stream as it is, from where it stands, and never closes it.
    explicit FileInStream(std::istream* stream);
    /// Refers to the same standard stream, but never closes it.
    FileInStream(const FileInStream&);
    FileInStream(FileInStream&&) noexcept;
    FileInStream& operator=(const FileInStream&);
    FileInStream& operator=(FileInStream&&) noexcept;
    ~FileInStream() override;

    bool getChar(char& c) override;
    /// -1 when the standard stream has failed.
    int getPosition() const override;
    /// A plain seek: it does not bring back a stream that has failed.
    void setPosition(int position) override;
    /// Whether the end has been met, which takes a read beyond the last byte.
    bool eof() override;

private:
    bool readAhead(std::size_t position, std::size_t count, std::string& ahead) override;
    bool stepBack() override;
    void close();

    std::istream* mStream;
    bool mOpened;
};

/// Writes a standard output stream, usually a file, which stays its owner's.
///
/// Whether writing succeeded is to be asked of the standard stream: `isValid` is always true.
class VEXXML_API FileOutStream : public OutStream {
public:
    /// Opens `path` in `*file` for writing from its start, dropping what it held, and closes it
    /// when destroyed. A file that cannot be opened is reported as a `Message`.
    FileOutStream(const std::string& path, std::ofstream* file);
    /// Writes the stream as it is and never closes it.
    explicit FileOutStream(std::ostream* stream);
    /// Refers to the same standard stream, but never closes it.
    FileOutStream(const FileOutStream&);
    FileOutStream(FileOutStream&&) noexcept;
    FileOutStream& operator=(const FileOutStream&);
    FileOutStream& operator=(FileOutStream&&) noexcept;
    ~FileOutStream() override;

    void putChar(char c) override;
    /// -1 when the standard stream has failed.
    int getPosition() const override;
    void setPosition(int position) override;

private:
    std::ostream* standardStream() override;
    void close();

    std::ostream* mStream;
    bool mOpened;
};

/// Reads a file of the platform's file layer.
///
/// The length is taken once, when the stream is made. A file of 2 GiB or more is refused with a
/// `Message` and reads as empty, as does a moved-from stream.
class VEXXML_API FileSpecInStream : public InStream {
public:
    /// Reads the open file from where it stands. The file must outlive the stream.
    explicit FileSpecInStream(VexSys::FileIO& file);
    /// Opens the file. One that cannot be opened reads as empty; nothing is reported.
    explicit FileSpecInStream(const VexSys::FileSpec& spec);
    /// Refers to the same file, but never deletes it.
    FileSpecInStream(const FileSpecInStream&);
    FileSpecInStream(FileSpecInStream&&) noexcept;
    FileSpecInStream& operator=(const FileSpecInStream&);
    FileSpecInStream& operator=(FileSpecInStream&&) noexcept;
    ~FileSpecInStream() override;

    bool getChar(char& c) override;
    /// -1 without a file.
    int getPosition() const override;
    void setPosition(int position) override;
    bool eof() override;

private:
    void close();
    void takeLength();

    VexSys::FileIO* mFile;
    bool mOwnsFile;
    std::uint64_t mLength;
};

/// Writes a file of the platform's file layer. Without a file, bytes are dropped silently.
///
/// Whether writing succeeded is known to the file alone, in the end by closing it. So who needs to
/// know opens the file and hands it over.
class VEXXML_API FileSpecOutStream : public OutStream {
public:
    /// Writes the open file from where it stands. The file must outlive the stream.
    explicit FileSpecOutStream(VexSys::FileIO& file);
    /// Creates the file, or empties it, and opens it. `isValid()` tells whether that succeeded.
    explicit FileSpecOutStream(const VexSys::FileSpec& spec);
    /// Refers to the same file, but never deletes it.
    FileSpecOutStream(const FileSpecOutStream&);
    FileSpecOutStream(FileSpecOutStream&&) noexcept;
    FileSpecOutStream& operator=(const FileSpecOutStream&);
    FileSpecOutStream& operator=(FileSpecOutStream&&) noexcept;
    ~FileSpecOutStream() override;

    /// Whether there is a file to write.
    bool isValid() const override;
    void putChar(char c) override;
    /// -1 without a file.
    int getPosition() const override;
    void setPosition(int position) override;

private:
    void close();

    VexSys::FileIO* mFile;
    bool mOwnsFile;
};

}  // namespace Xml
