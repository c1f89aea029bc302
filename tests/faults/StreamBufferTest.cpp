#include <gtest/gtest.h>

#include <algorithm>
#include <istream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

#include "VexXml/Readers.h"
#include "faults/Documents.h"
#include "faults/Quiet.h"
#include "support/Dump.h"

namespace {

enum class Way { End, Throws };

/// A text to be read in pieces of a few bytes, or one that is written, of which an operation fails.
///
/// Telling the position fails only for good: who could tell it once mostly can again, and who never
/// can is read otherwise.
class FailingBuffer : public std::streambuf {
public:
    /// The operation behind `count` others fails.
    FailingBuffer(std::string text, long count, Way way, bool isForGood)
        : mText(std::move(text)), mLeft(count), mWay(way), mIsForGood(isForGood) {}

    bool hasFailed() const { return mHasFailed; }
    const std::string& text() const { return mText; }

protected:
    int_type underflow() override {
        if (fails() || mNext >= mText.size()) return traits_type::eof();
        const std::size_t size = std::min(kPiece, mText.size() - mNext);
        setg(&mText[mNext], &mText[mNext], &mText[mNext] + size);
        mNext += size;
        return traits_type::to_int_type(*gptr());
    }

    pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                     std::ios_base::openmode) override {
        const auto here = static_cast<off_type>(mNext) - (egptr() - gptr());
        const bool isTelling = from == std::ios_base::cur && offset == 0;
        if (isTelling && !mIsForGood) return here;
        const auto size = static_cast<off_type>(mText.size());
        const off_type base = from == std::ios_base::beg   ? 0
                              : from == std::ios_base::cur ? here
                                                           : size;
        return moveTo(base + offset);
    }

    pos_type seekpos(pos_type position, std::ios_base::openmode) override {
        return moveTo(off_type{position});
    }

    int_type overflow(int_type c) override {
        if (fails()) return traits_type::eof();
        mText += traits_type::to_char_type(c);
        ++mNext;
        return c;
    }

private:
    static constexpr std::size_t kPiece = 16;

    pos_type moveTo(off_type position) {
        if (fails()) return pos_type(off_type{-1});
        mNext = static_cast<std::size_t>(position);
        setg(nullptr, nullptr, nullptr);
        return position;
    }

    bool fails() {
        if (mHasFailed && !mIsForGood) return false;
        if (!mHasFailed && mLeft-- > 0) return false;
        mHasFailed = true;
        if (mWay == Way::Throws) throw std::runtime_error("the buffer fails");
        return true;
    }

    std::string mText;
    long mLeft;
    Way mWay;
    bool mIsForGood;
    std::size_t mNext = 0;
    bool mHasFailed = false;
};

struct Failure {
    const char* name;
    Way way;
    bool isForGood;
};

const Failure kFailures[] = {
    {"AtOnceByItsEnd", Way::End, false},
    {"ForGoodByItsEnd", Way::End, true},
    {"AtOnceByThrowing", Way::Throws, false},
    {"ForGoodByThrowing", Way::Throws, true},
};

class FailingStreamBuffer : public testing::TestWithParam<Failure> {
protected:
    faults::Quiet mQuiet;
};

std::string readFrom(FailingBuffer& buffer) {
    std::istream stream(&buffer);
    Xml::FileInStream in(&stream);
    Xml::DocumentReader reader;
    if (!reader.parse(in)) return "error: " + reader.getErrorMessage();
    return support::dump(*reader.getDocument());
}

TEST_P(FailingStreamBuffer, IsNeverReadInPart) {
    FailingBuffer whole(faults::kBook, 1000000, Way::End, false);
    const std::string expected = readFrom(whole);
    bool hasFailed = true;
    for (long count = 0; hasFailed; ++count) {
        SCOPED_TRACE("operation " + std::to_string(count) + " fails");
        FailingBuffer buffer(faults::kBook, count, GetParam().way, GetParam().isForGood);
        const std::string found = readFrom(buffer);
        hasFailed = buffer.hasFailed();
        if (found == expected) continue;
        EXPECT_EQ(found.substr(0, 7), "error: ");
    }
}

TEST_P(FailingStreamBuffer, ShowsInTheStreamThatWasWritten) {
    FailingBuffer source(faults::kBook, 1000000, Way::End, false);
    std::istream sourceStream(&source);
    Xml::FileInStream in(&sourceStream);
    Xml::DocumentReader reader;
    reader.parse(in);
    Xml::Document& document = *reader.getDocument();
    const std::string expected = support::written(document);
    bool hasFailed = true;
    for (long count = 0; hasFailed; ++count) {
        SCOPED_TRACE("operation " + std::to_string(count) + " fails");
        FailingBuffer buffer("", count, GetParam().way, GetParam().isForGood);
        std::ostream stream(&buffer);
        Xml::FileOutStream out(&stream);
        document.toStream(out);
        hasFailed = buffer.hasFailed();
        EXPECT_TRUE(stream.good() || hasFailed);
        if (stream.good()) {
            EXPECT_EQ(buffer.text(), expected);
        }
    }
}

std::string nameOf(const testing::TestParamInfo<Failure>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Failing, FailingStreamBuffer, testing::ValuesIn(kFailures), nameOf);

}  // namespace
