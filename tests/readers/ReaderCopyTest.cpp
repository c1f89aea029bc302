#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Dump.h"

namespace {

template <class... Readers>
constexpr bool canBeCopiedAndMoved() {
    return (... && (std::is_copy_constructible<Readers>::value &&
                    std::is_copy_assignable<Readers>::value &&
                    std::is_nothrow_move_constructible<Readers>::value &&
                    std::is_nothrow_move_assignable<Readers>::value &&
                    std::has_virtual_destructor<Readers>::value));
}

static_assert(
    canBeCopiedAndMoved<Xml::ElementReader, Xml::CommentReader, Xml::PIReader,
                        Xml::VersionInfoReader, Xml::DTDReader, Xml::DoctypeReader,
                        Xml::EntityReader, Xml::ElementDeclReader, Xml::MixedSpecReader,
                        Xml::ChildrenSpecReader, Xml::AttListReader, Xml::DocumentReader>(),
    "readers are values");

Xml::Dtd& sharedDtd() {
    static Xml::Dtd dtd("d");
    return dtd;
}

// How each reader that owns its result is made, what it reads here, and how the result shows. What
// is read ends in a failure that leaves a message beside the result, where the reader allows that.

struct Elements {
    using Reader = Xml::ElementReader;
    static Reader make() { return Reader(nullptr); }
    static constexpr const char* kInput = "<a x='1'><b>t</b></c>";
    static constexpr const char* kResult = "a(x=\"1\" b(\"t\"))";
    static constexpr bool kHasMessage = true;
    static std::string take(Reader& reader) {
        const std::unique_ptr<Xml::Element> root(reader.extractRoot());
        return root != nullptr ? support::dump(*root) : "none";
    }
};

struct Dtds {
    using Reader = Xml::DTDReader;
    static Reader make() { return Reader("d"); }
    static constexpr const char* kInput = "<!ELEMENT a (b)>x";
    static constexpr const char* kResult = "<!DOCTYPE d [\n<!ELEMENT a (b)>\n]>\n";
    static constexpr bool kHasMessage = true;
    static std::string take(Reader& reader) {
        const std::unique_ptr<Xml::Dtd> dtd(reader.extractDtd());
        return dtd != nullptr ? support::written(*dtd) : "none";
    }
};

struct Doctypes {
    using Reader = Xml::DoctypeReader;
    static Reader make() { return Reader(); }
    static constexpr const char* kInput = "<!DOCTYPE d [<!ELEMENT a (b)>]>";
    static constexpr const char* kResult = "<!DOCTYPE d [\n<!ELEMENT a (b)>\n]>\n";
    static constexpr bool kHasMessage = false;
    static std::string take(Reader& reader) {
        const std::unique_ptr<Xml::Dtd> dtd(reader.extractDtd());
        return dtd != nullptr ? support::written(*dtd) : "none";
    }
};

struct MixedModels {
    using Reader = Xml::MixedSpecReader;
    static Reader make() { return Reader(&sharedDtd()); }
    static constexpr const char* kInput = "(#PCDATA | a)";
    static constexpr const char* kResult = "(#PCDATA | a)*";
    static constexpr bool kHasMessage = true;
    static std::string take(Reader& reader) {
        const std::unique_ptr<Xml::MixedSpec> model(reader.extractMixedSpec());
        return model != nullptr ? reading::written(*model) : "none";
    }
};

struct Models {
    using Reader = Xml::ChildrenSpecReader;
    static Reader make() { return Reader(&sharedDtd()); }
    static constexpr const char* kInput = "(a, (b | c | #PCDATA)*)";
    static constexpr const char* kResult = "(a, (b | c | #PCDATA)*)";
    static constexpr bool kHasMessage = true;
    static std::string take(Reader& reader) {
        const std::unique_ptr<Xml::ChildrenSpec> model(reader.extractChildrenSpec());
        return model != nullptr ? reading::written(*model) : "none";
    }
};

struct Documents {
    using Reader = Xml::DocumentReader;
    static Reader make() { return Reader(); }
    static constexpr const char* kInput = "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>x</a>";
    static constexpr const char* kResult = "<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\na(\"x\")";
    static constexpr bool kHasMessage = true;
    static std::string take(Reader& reader) {
        const std::unique_ptr<Xml::Document> document(reader.extractDocument());
        return document != nullptr ? support::dump(*document) : "none";
    }
};

/// A reader that has read, with its result and perhaps a message.
template <class Kind>
typename Kind::Reader usedReader() {
    typename Kind::Reader reader = Kind::make();
    reading::read(reader, Kind::kInput);
    EXPECT_NE(reader.getErrorMessage().empty(), Kind::kHasMessage);
    return reader;
}

template <class Check>
void forEachReader(const Check& check) {
    check(Elements());
    check(Dtds());
    check(Doctypes());
    check(MixedModels());
    check(Models());
    check(Documents());
}

TEST(OwningReaders, AreCopiedDeeply) {
    forEachReader([](auto kind) {
        SCOPED_TRACE(kind.kInput);
        auto reader = usedReader<decltype(kind)>();
        auto copy = reader;
        EXPECT_EQ(copy.getErrorMessage(), reader.getErrorMessage());
        EXPECT_EQ(kind.take(reader), kind.kResult);
        EXPECT_EQ(kind.take(copy), kind.kResult);
    });
}

TEST(OwningReaders, AreCopyAssignedDeeply) {
    forEachReader([](auto kind) {
        SCOPED_TRACE(kind.kInput);
        auto reader = usedReader<decltype(kind)>();
        const std::string message = reader.getErrorMessage();
        auto copy = kind.make();
        copy = reader;
        const auto& same = copy;
        copy = same;
        EXPECT_EQ(kind.take(reader), kind.kResult);
        EXPECT_EQ(kind.take(copy), kind.kResult);
        EXPECT_EQ(copy.getErrorMessage(), message);
    });
}

TEST(OwningReaders, HandTheirResultOnWhenMoved) {
    forEachReader([](auto kind) {
        SCOPED_TRACE(kind.kInput);
        auto reader = usedReader<decltype(kind)>();
        const std::string message = reader.getErrorMessage();
        auto moved = std::move(reader);
        // NOLINTNEXTLINE(bugprone-use-after-move): this is what is tested
        EXPECT_EQ(kind.take(reader), "none");
        EXPECT_EQ(reader.getErrorMessage(), "");
        EXPECT_EQ(moved.getErrorMessage(), message);
        EXPECT_EQ(kind.take(moved), kind.kResult);
    });
}

TEST(OwningReaders, HandTheirResultOnWhenMoveAssigned) {
    forEachReader([](auto kind) {
        SCOPED_TRACE(kind.kInput);
        auto reader = usedReader<decltype(kind)>();
        auto target = usedReader<decltype(kind)>();
        const std::string message = reader.getErrorMessage();
        target = std::move(reader);
        // NOLINTNEXTLINE(bugprone-use-after-move): this is what is tested
        EXPECT_EQ(kind.take(reader), "none");
        EXPECT_EQ(target.getErrorMessage(), message);
        EXPECT_EQ(kind.take(target), kind.kResult);
    });
}

TEST(OwningReaders, AreCopiedBeforeTheyRead) {
    forEachReader([](auto kind) {
        SCOPED_TRACE(kind.kInput);
        const auto reader = kind.make();
        auto copy = reader;
        reading::read(copy, kind.kInput);
        EXPECT_EQ(kind.take(copy), kind.kResult);
    });
}

// A DTD reader adds to the DTD that it has; the others begin anew.
TEST(OwningReaders, ForgetTheirResultWhenAnotherParseFails) {
    forEachReader([](auto kind) {
        SCOPED_TRACE(kind.kInput);
        auto reader = usedReader<decltype(kind)>();
        EXPECT_EQ(reading::read(reader, "").substr(0, 10), "false at 0");
        const bool adds = std::is_same<decltype(kind), Dtds>::value;
        EXPECT_EQ(kind.take(reader), adds ? kind.kResult : "none");
    });
}

TEST(OwningReaders, ReadAgainBehindAMove) {
    forEachReader([](auto kind) {
        SCOPED_TRACE(kind.kInput);
        auto reader = usedReader<decltype(kind)>();
        const auto moved = std::move(reader);
        // NOLINTNEXTLINE(bugprone-use-after-move): this is what is tested
        reading::read(reader, kind.kInput);
        EXPECT_EQ(reader.getErrorMessage(), moved.getErrorMessage());
        EXPECT_NE(kind.take(reader), "none");
    });
}

/// What the reader tells, and the DTD as it is written then.
std::string dtdAfter(Xml::Reader& reader, const std::string& declaration, Xml::Dtd& dtd) {
    const std::string outcome = reading::read(reader, declaration);
    return outcome + " " + support::written(dtd);
}

template <class Reader>
void expectCopiesToFillTheSameDtd(const std::string& declaration, const std::string& expected) {
    Xml::Dtd other("o");
    {
        Xml::Dtd dtd("d");
        const Reader reader(&dtd);
        Reader copy(reader);
        EXPECT_EQ(dtdAfter(copy, declaration, dtd), expected);
    }
    {
        Xml::Dtd dtd("d");
        const Reader reader(&dtd);
        Reader assigned(&other);
        assigned = reader;
        EXPECT_EQ(dtdAfter(assigned, declaration, dtd), expected);
    }
    {
        Xml::Dtd dtd("d");
        Reader reader(&dtd);
        Reader moved(&other);
        moved = std::move(reader);
        EXPECT_EQ(dtdAfter(moved, declaration, dtd), expected);
    }
    EXPECT_EQ(support::written(other), "<!DOCTYPE o [\n]>\n");
}

TEST(DeclarationReader, CopiesFillTheSameDtd) {
    expectCopiesToFillTheSameDtd<Xml::ElementDeclReader>(
        "<!ELEMENT a EMPTY>", "true at 18 <!DOCTYPE d [\n<!ELEMENT a EMPTY>\n]>\n");
    expectCopiesToFillTheSameDtd<Xml::EntityReader>(
        "<!ENTITY e 'v'>", "true at 15 <!DOCTYPE d [\n<!ENTITY e \"v\">\n]>\n");
}

TEST(DeclarationReader, CopiesFillTheSameAttributeLists) {
    Xml::Dtd dtd("d");
    const Xml::AttListReader reader(&dtd);
    Xml::AttListReader copy(reader);
    EXPECT_EQ(reading::read(copy, "<!ATTLIST a x CDATA 'v'>"), "true at 24");
    EXPECT_TRUE(dtd.hasDefaultValue("a", "x"));
}

TEST(DTDReader, KeepsWhatKindOfSubsetItReadsWhenCopied) {
    Xml::DTDReader reader("d");
    reader.setInternal(true);
    Xml::DTDReader copy(reader);
    EXPECT_EQ(reading::read(copy, "]"), "true at 1");
    Xml::DTDReader moved(std::move(reader));
    EXPECT_EQ(reading::read(moved, "]"), "true at 1");
}

TEST(ElementReader, AsksTheSameDtdWhenCopied) {
    Xml::Dtd dtd("d");
    dtd.setEntity("e", "v");
    const Xml::ElementReader reader(&dtd);
    Xml::ElementReader copy(reader);
    EXPECT_EQ(reading::read(copy, "<a x='&e;'/>"), "true at 12");
    EXPECT_EQ(support::dump(*copy.getRoot()), "a(x=\"v\")");
}

TEST(DTDReader, CanBeUsedWhenMovedFrom) {
    Xml::DTDReader reader("d");
    const Xml::DTDReader moved(std::move(reader));
    // NOLINTNEXTLINE(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(reading::read(reader, "<!ELEMENT a EMPTY>"), "true at 18");
}

TEST(DoctypeReader, HasNothingAfterAFailureThatFollowsASuccess) {
    Xml::DoctypeReader reader;
    EXPECT_EQ(reading::read(reader, "<!DOCTYPE a []>"), "true at 15");
    reading::read(reader, "<!DOCTYPE b");
    EXPECT_EQ(reader.extractDtd(), nullptr);
}

TEST(DocumentReader, ForgetsTheDtdOfAFailedParse) {
    Xml::DocumentReader reader;
    reading::read(reader, "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>");
    EXPECT_EQ(reading::read(reader, "<b/>").substr(0, 9), "true at 4");
}

}  // namespace
