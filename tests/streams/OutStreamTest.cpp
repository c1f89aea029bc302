#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "VexXml/Streams.h"

namespace {

/// A stream as a caller would write one: nothing but the pure operations, into a string.
class PlainOutStream : public Xml::OutStream {
public:
    void putChar(char c) override { mText += c; }
    int getPosition() const override { return static_cast<int>(mText.size()); }
    void setPosition(int position) override { mText.resize(static_cast<std::size_t>(position)); }

    const std::string& text() const { return mText; }

private:
    std::string mText;
};

static_assert(std::is_abstract_v<Xml::OutStream>);
static_assert(std::has_virtual_destructor_v<Xml::OutStream>);
static_assert(std::is_copy_constructible_v<PlainOutStream>);
static_assert(std::is_copy_assignable_v<PlainOutStream>);
static_assert(std::is_move_constructible_v<PlainOutStream>);
static_assert(std::is_move_assignable_v<PlainOutStream>);

/// What is written to a stream at a level of indentation.
std::string indented(int level, const std::string& text) {
    PlainOutStream out;
    for (int i = 0; i < level; ++i) out.incTab();
    out << text;
    return out.text();
}

TEST(OutStream, IsValidUnlessToldOtherwise) { EXPECT_TRUE(PlainOutStream().isValid()); }

TEST(OutStream, WritesTextAndBytes) {
    PlainOutStream out;
    Xml::OutStream& same = out << 'a' << std::string("b\0c", 3) << '\xFF';
    EXPECT_EQ(&same, &out);
    EXPECT_EQ(out.text(), std::string("ab\0c\xFF", 5));
}

TEST(OutStream, IndentsLinesByATabForEachLevel) {
    EXPECT_EQ(indented(0, "a\nb"), "a\nb");
    EXPECT_EQ(indented(1, "a\nb\n"), "\ta\n\tb\n");
    EXPECT_EQ(indented(2, "a\nb"), "\t\ta\n\t\tb");
}

TEST(OutStream, DoesNotIndentEmptyLines) {
    EXPECT_EQ(indented(2, "\n\n"), "\n\n");
    EXPECT_EQ(indented(2, "\n\na"), "\n\n\t\ta");
}

TEST(OutStream, IndentsAnyByteButALineFeed) { EXPECT_EQ(indented(1, "\r\n \t"), "\t\r\n\t \t"); }

TEST(OutStream, IndentsSingleBytesLikeText) {
    PlainOutStream out;
    out.incTab();
    out << 'a' << 'b' << '\n' << 'c';
    EXPECT_EQ(out.text(), "\tab\n\tc");
}

TEST(OutStream, IndentsByTheLevelAtTheFirstByteOfALine) {
    PlainOutStream out;
    out << "a\n";
    out.incTab();
    out << "b";
    out.incTab();
    out << "b\nc\n";
    out.decTab();
    out << "d";
    EXPECT_EQ(out.text(), "a\n\tbb\n\t\tc\n\td");
}

TEST(OutStream, StaysAtLevelZeroWhenTheLevelIsLowered) {
    PlainOutStream out;
    out.decTab();
    out.decTab();
    out.incTab();
    out << "a";
    EXPECT_EQ(out.text(), "\ta");
}

TEST(OutStream, WritesADataHolderAsItIs) {
    PlainOutStream out;
    out.incTab();
    Xml::OutStream& same = out.writeDataHolder(Xml::DataHolder("a\nb\0", 4));
    EXPECT_EQ(&same, &out);
    EXPECT_EQ(out.text(), std::string("a\nb\0", 4));
}

TEST(OutStream, DoesNotNoteTheLinesOfADataHolder) {
    PlainOutStream out;
    out.incTab();
    out.writeDataHolder("x");
    out << "a";
    out.writeDataHolder("\n");
    out << "b\n";
    out.writeDataHolder("y");
    out << "c";
    EXPECT_EQ(out.text(), "x\ta\nb\ny\tc");
}

TEST(OutStream, CopiesItsLevelAndPlaceInTheLine) {
    PlainOutStream out;
    out.incTab();
    out << "a";
    PlainOutStream copy(out);
    copy << "b\nc";
    EXPECT_EQ(copy.text(), "\tab\n\tc");
    PlainOutStream assigned;
    assigned = out;
    assigned << "d\ne";
    EXPECT_EQ(assigned.text(), "\tad\n\te");
}

}  // namespace
