#pragma once

/// Texts, names, numbers, references and diagnostics: what all the other families are made of.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "VexXml/Export.h"

namespace Xml {

class Dtd;

/// A text that a document carries: an attribute's value, character data, an entity's value.
///
/// Holds bytes of any value, NUL included; no encoding is interpreted. Numbers are read from and
/// turned into text on demand. A moved-from holder is empty. One that would hold 2 GiB or more
/// throws `std::length_error` and stays as it is.
class VEXXML_API DataHolder {
public:
    /// Empty.
    DataHolder();
    // NOLINTBEGIN(google-explicit-constructor): texts and numbers convert freely
    /// All bytes of the text.
    DataHolder(const std::string& text);
    /// The bytes up to the NUL; empty for null.
    DataHolder(const char* text);
    /// The number in decimal digits.
    DataHolder(int number);
    /// The number as `toString(double)` writes it, so under the float precision of the moment.
    DataHolder(double number);
    // NOLINTEND(google-explicit-constructor)
    /// Exactly `size` bytes, NULs included.
    DataHolder(const char* bytes, std::uint64_t size);
    DataHolder(const DataHolder& other);
    DataHolder(DataHolder&& other) noexcept;
    DataHolder& operator=(const DataHolder& other);
    DataHolder& operator=(DataHolder&& other) noexcept;
    ~DataHolder() {
        if (isLong()) freeStorage();
    }

    /// Appends the first `count` bytes, which may lie inside this text; none when `count` is
    /// below 1.
    void append(const char* bytes, int count);
    /// Appends one byte. Returns the holder, as `pop` does.
    DataHolder& push(char byte);
    /// Removes the last byte. Needs: not empty; an empty holder throws `std::length_error`.
    DataHolder& pop();
    /// Leaves an empty text.
    void clear();

    /// The length in bytes.
    int getSize() const { return static_cast<int>(size()); }
    /// Whether there is no byte.
    bool isEmpty() const { return size() == 0; }

    /// Makes room for `size` bytes and returns true. A size below the present length changes
    /// nothing; one below 16 gives grown storage back.
    bool reserve(std::uint64_t size);
    /// Cuts the text, or extends it with NULs. True when the length is now `size`.
    bool setSize(std::uint64_t size);
    /// Exchanges the texts, which takes no memory.
    void swap(DataHolder& other) noexcept;

    /// The bytes with a NUL behind them, valid until the next change.
    const char* toCString() const { return isLong() ? longText().bytes : mSmall; }
    /// The number at the start of the text, behind white space; 0 when there is none.
    int toInt() const;
    /// The number at the start of the text, behind white space; 0 when there is none.
    double toDouble() const;

    /// Whether both have the same bytes.
    bool operator==(const DataHolder& other) const;
    /// Whether they differ in any byte or in length.
    bool operator!=(const DataHolder& other) const;
    /// The byte at `index`, which is not checked.
    char& operator[](std::uint64_t index);
    const char& operator[](std::uint64_t index) const;
    /// All bytes, NULs included.
    operator std::string() const;  // NOLINT(google-explicit-constructor): texts convert freely

private:
    friend class BorrowedText;

    static constexpr std::size_t kSmallCapacity = 15;
    static constexpr std::uint8_t kLong = 255;

    /// A text in storage of its own, in place of a short one.
    struct LongText {
        char* bytes;
        std::uint32_t size;
        std::uint8_t grains;  ///< of 8 bytes, in the storage; 0 when the capacity stands in front
        std::uint8_t unused[kSmallCapacity - sizeof(char*) - sizeof(std::uint32_t) - 1];
        std::uint8_t tag;  ///< `kLong`
    };

    bool isLong() const { return static_cast<std::uint8_t>(mSmall[kSmallCapacity]) == kLong; }
    LongText longText() const {
        LongText text;
        std::memcpy(&text, mSmall, sizeof text);
        return text;
    }
    std::size_t size() const {
        return isLong() ? longText().size
                        : kSmallCapacity - static_cast<std::size_t>(mSmall[kSmallCapacity]);
    }
    char* bytes() { return isLong() ? longText().bytes : mSmall; }
    static LongText allocate(std::size_t capacity);
    static std::size_t capacityOf(const LongText& text);
    static DataHolder withRoomFor(std::size_t size);
    std::size_t capacity() const;
    std::size_t grownSize(std::size_t wanted) const;
    void setLongText(const LongText& text);
    void setLength(std::size_t size);
    void appendBytes(const char* bytes, std::size_t count);
    void appendInside(const char* bytes, std::size_t count);
    void freeStorage() noexcept;

    /// A short text and its NUL, or a `LongText`. The last byte tells: how much room there is left,
    /// which for a full text makes it the NUL, or that the text is long.
    alignas(char*) char mSmall[kSmallCapacity + 1] = {0, 0, 0, 0, 0, 0, 0, 0,
                                                      0, 0, 0, 0, 0, 0, 0, kSmallCapacity};
};

/// Space, tab, line feed or carriage return; nothing else.
VEXXML_API bool isWhite(char c);
/// An ASCII digit.
VEXXML_API bool isDigit(char c);
/// An ASCII letter.
VEXXML_API bool isLetter(char c);
/// An ASCII letter or digit, "-", ".", ":" or "_".
VEXXML_API bool isNameChar(char c);
/// Whether the `count` bytes are a letter, "_" or ":" and then only name characters.
VEXXML_API bool isName(const char* bytes, int count);
VEXXML_API bool isName(const std::string& text);

/// The number at the start of the text, behind white space; 0 when there is none, the nearest limit
/// when it is too large.
VEXXML_API int toInt(const std::string& text);
/// The number at the start of the text, behind white space; 0 when there is none.
VEXXML_API double toDouble(const std::string& text);
/// The number in decimal digits.
VEXXML_API std::string toString(int number);
/// The number in fixed notation, rounded to the float precision, without zeros at its end.
///
/// With a precision of 0 the zeros of a whole number count too: 100.0 gives "1".
VEXXML_API std::string toString(double number);
/// Sets how many digits behind the point `toString(double)` starts from, for the whole process, and
/// returns the previous setting (2 at first). A negative number changes nothing. Like all settings
/// of the process, it may be changed at any time by any thread.
VEXXML_API int setFloatPrecision(int digits);
/// What `setFloatPrecision` has set.
VEXXML_API int getFloatPrecision();

/// Replaces every reference in the text, such as "&lt;", "&#65;" or "&#x41;", by what it stands
/// for. Returns the text.
///
/// Entities beyond the predefined five are looked up in `dtd`, which may be null. What is unknown
/// stays, and replacements are not searched again. An "&" without a ";" takes the rest of the text
/// as its name.
VEXXML_API DataHolder& replaceEntities(DataHolder& text, const Dtd* dtd);
/// Replaces each of & < > " ' by its reference. Returns the text.
VEXXML_API DataHolder& insertStdEntities(DataHolder& text);
/// The text with its special characters as references, between double quotes.
VEXXML_API std::string toXmlString(const DataHolder& text);
/// What the reference `name` (without "&" and ";") stands for, or that reference when it is
/// unknown.
VEXXML_API DataHolder getEntityValue(const std::string& name, const Dtd* dtd);
/// The name under which the text can be written as a reference, or the text when it has none.
VEXXML_API std::string getEntityName(const DataHolder& value, const Dtd* dtd);
/// Whether the name is predefined, declared in `dtd`, or "#" and anything behind it.
VEXXML_API bool isEntityName(const std::string& name, const Dtd* dtd);
/// Whether the text is one special character or the value of an entity that `dtd` declares.
VEXXML_API bool isEntityValue(const DataHolder& value, const Dtd* dtd);

/// The diagnostic channel: making a `Message` reports its text.
///
/// Misuse is reported here and then repaired; nothing is thrown. The last text, the switch and the
/// handler belong to the whole process. Any thread may use them at any time: the handler is called
/// in the thread that reports, so it may run in several at once.
class VEXXML_API Message {
public:
    /// Receives the text as a zero-terminated string. Further arguments are never passed.
    using Handler = void (*)(const char* text, ...);

    /// Makes `text` the last message and hands it to the handler.
    explicit Message(const std::string& text);
    /// Formats in the manner of `printf`. The last message becomes `format` itself; the handler
    /// gets the formatted text behind one byte that holds its length modulo 256 (255 if it could
    /// not be formatted).
    explicit Message(const char* format, ...);

    /// Needs: not null. At first texts go to the standard error stream, one on a line.
    static void InstallMessageHandler(Handler handler);
    /// Switches the handler on (true) or off (false), whatever the name says; returns the previous
    /// setting, true at first.
    static bool disableOutput(bool enabled);
    /// The text of the last message of all threads, reported or not; empty before the first. What
    /// is referred to lives as long as the thread, and changes only when this thread makes a
    /// message or asks again; at the very end of a thread, when others make messages, too.
    static const std::string& getLastMessage();
};

}  // namespace Xml
