#pragma once

/// Readers turn text into nodes and declarations, one class for each production of the grammar.
///
/// A reader is used once: `parse` reads from where the stream stands and leaves it where reading
/// stopped. Then the result is there, or an error text. The result belongs to the reader until it
/// is extracted; then it is the caller's.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Export.h"
#include "VexXml/Streams.h"
#include "VexXml/Values.h"

namespace Xml {

class LimitedRead;
class ReadBudget;
class TokenMemory;
class TreeBuilder;
enum class ElementContent : int;

/// What a reader accepts of a document, for input that nobody vouches for. At first everything.
///
/// An amount may be as large as its limit. Whatever goes beyond fails the parse with an error text
/// such as "limit exceeded: elementDepth = 1000", and the place in front of it.
struct ReadLimits {
    /// No limit.
    static constexpr std::uint64_t kNone = static_cast<std::uint64_t>(-1);

    /// Limits that nearly all documents keep to. Their values stand behind the limits below; no
    /// file is opened.
    VEXXML_API static ReadLimits untrusted();
    /// The limit of that name, "nodes" say, null for none: for whoever takes limits from a user.
    VEXXML_API static std::uint64_t ReadLimits::*named(const std::string& name);

    /// Bytes from where the reader begins; the file of a "SYSTEM" identifier is counted for itself.
    std::uint64_t totalBytes = kNone;            ///< 256 Mi
    std::uint64_t elementDepth = kNone;          ///< 1000; the root element has depth 1
    std::uint64_t nodes = kNone;                 ///< 10 million, all elements, attributes and texts
    std::uint64_t attributesPerElement = kNone;  ///< 1000
    std::uint64_t nameLength = kNone;            ///< 1000 bytes
    /// Bytes of an attribute, also with its entities replaced, or of a string in a declaration.
    std::uint64_t valueLength = kNone;  ///< 10 Mi
    /// Bytes of the character data between two tags, also with its entities replaced.
    std::uint64_t textLength = kNone;  ///< 100 Mi
    /// Bytes by which all attributes and texts together are longer with their entities replaced.
    std::uint64_t entityGrowth = kNone;      ///< 64 Mi
    std::uint64_t declarations = kNone;      ///< 10000, comments between them included
    std::uint64_t declarationBytes = kNone;  ///< 4 Mi, in all of them
    std::uint64_t groupDepth = kNone;        ///< 100, of parentheses in a content model
    /// Steps of a validation, as `Dtd::setStepLimit` counts them. The DTD that is read keeps the
    /// limit for later validations.
    std::uint64_t validationSteps = kNone;  ///< 50 million
    /// Whether "SYSTEM" may open a file.
    bool mayOpenFiles = true;
    /// The folder that such a file must be in, at any depth and with all links followed; empty for
    /// any.
    std::string folder;
};

/// What all readers share: the error text, and limits.
class VEXXML_API Reader {
protected:
    /// Sets the error text to "(line = L, column = C) TEXT <CLASS>", with the stream's line and
    /// column and the name of the reader's class.
    virtual void message(InStream& in, const std::string& text);

public:
    virtual ~Reader();
    /// Reads; false on failure, with the reason in `getErrorMessage()`, empty for those few that
    /// have no text.
    virtual bool parse(InStream& in) = 0;

    /// Empty before a failure.
    const std::string& getErrorMessage() const;

    /// Limits what is read from now on, by `DocumentReader`, `ElementReader`, `DoctypeReader`,
    /// `DTDReader` and what these read with; the other readers have none of their own.
    void setLimits(const ReadLimits& limits);

protected:
    Reader();
    Reader(const Reader&);
    Reader(Reader&&) noexcept;
    Reader& operator=(const Reader&);
    Reader& operator=(Reader&&) noexcept;

    /// Sets the error text as it is.
    void setMessage(const std::string& text);
    /// Lets another reader read. If it fails, its error text becomes this one's.
    bool parseWith(Reader& reader, InStream& in);

    /// The operation of the stream, except that a failure becomes the reader's error text.
    /// @{
    bool checkToken(InStream& in, const std::string& expected);
    bool getName(InStream& in, std::string& name);
    bool getString(InStream& in, std::string& quoted);
    bool getToken(InStream& in, std::string& token);
    bool getCharData(InStream& in, DataHolder& text);
    bool skip(InStream& in, const std::string& until);
    /// @}

    /// Those of the read that is going on; null without.
    const ReadLimits* limits() const;
    /// Whether the amount is within the limit, `&ReadLimits::nameLength` say. If not, the error
    /// text tells so.
    bool isWithin(std::uint64_t ReadLimits::*limit, std::uint64_t amount, InStream& in);
    /// The same for all amounts so far together.
    bool takesFrom(std::uint64_t ReadLimits::*limit, std::uint64_t amount, InStream& in);

private:
    friend class ChildrenSpecReader;
    friend class DocumentReader;
    friend class ElementReader;
    friend class LimitedRead;

    std::string mMessage;
    std::shared_ptr<const ReadLimits> mLimits;  ///< null for none
    ReadBudget* mBudget = nullptr;              ///< of the limited read that is going on, if any
};

/// Reads one element with all it holds.
///
/// Elements may nest to any depth. White space in front of markup is dropped; comments and
/// processing instructions leave no node; a CDATA section becomes character data.
class VEXXML_API ElementReader : public Reader {
public:
    /// `dtd`, which may be null, is asked for the entities in attribute values.
    explicit ElementReader(Dtd* dtd);
    ElementReader(const ElementReader& other);
    ElementReader(ElementReader&& other) noexcept;
    ElementReader& operator=(const ElementReader& other);
    ElementReader& operator=(ElementReader&& other) noexcept;
    ~ElementReader() override;

    bool parse(InStream& in) override;

    /// The element, complete after success; null before. After a failure, as much of it as was
    /// read.
    Element* getRoot();
    /// Hands the element to the caller; null when there is none.
    Element* extractRoot();

private:
    ElementContent readStartTag(InStream& in);
    bool readAttributes(InStream& in, std::string& token);
    bool readAttribute(InStream& in, const std::string& name);
    bool readAllContent(InStream& in);
    bool readNext(InStream& in, TokenMemory& tokens, TreeBuilder& tree, ElementReader& inner);
    ElementContent readContent(InStream& in, TokenMemory& tokens, Element& element,
                               ElementReader& inner);
    ElementContent readChild(InStream& in, ElementReader& inner);
    bool readEndTag(InStream& in, const Element& element);
    bool readCDataSection(InStream& in, Element& element);
    bool readCharData(InStream& in, Element& element);
    bool mayReplace(InStream& in, const DataHolder& text, std::uint64_t ReadLimits::*length);

    std::unique_ptr<Element> mElement;
    Dtd* mDtd;
};

/// Reads a comment and drops it.
class VEXXML_API CommentReader : public Reader {
public:
    bool parse(InStream& in) override;
};

/// Reads a processing instruction and drops it.
class VEXXML_API PIReader : public Reader {
public:
    bool parse(InStream& in) override;
};

/// Reads the XML declaration, which must name version 1.0 and may name an encoding. An encoding
/// other than UTF-8 sets the error text but is no failure.
class VEXXML_API VersionInfoReader : public Reader {
public:
    bool parse(InStream& in) override;

private:
    bool readEncoding(InStream& in);
};

/// Reads the declarations of a DTD: all of the stream, or an internal subset up to its "]".
class VEXXML_API DTDReader : public Reader {
public:
    /// `name` is the document type name of the `Dtd` that is built.
    explicit DTDReader(const std::string& name);
    DTDReader(const DTDReader& other);
    DTDReader(DTDReader&& other) noexcept;
    DTDReader& operator=(const DTDReader& other);
    DTDReader& operator=(DTDReader&& other) noexcept;
    ~DTDReader() override;

    bool parse(InStream& in) override;

    /// Whether an internal subset is read, the "[" in front of it being read already. False at
    /// first.
    void setInternal(bool internal);
    /// What was read, before a failure too; null once it is extracted.
    Dtd* getDtd();
    /// Hands it to the caller.
    Dtd* extractDtd();

private:
    bool readDeclarations(InStream& in);
    bool readDeclaration(InStream& in, const std::string& keyword, int start);

    std::unique_ptr<Dtd> mDtd;
    bool mInternal = false;
};

/// Reads a document type declaration with its internal subset, or with the file that "SYSTEM"
/// names.
class VEXXML_API DoctypeReader : public Reader {
public:
    DoctypeReader();
    DoctypeReader(const DoctypeReader& other);
    DoctypeReader(DoctypeReader&& other) noexcept;
    DoctypeReader& operator=(const DoctypeReader& other);
    DoctypeReader& operator=(DoctypeReader&& other) noexcept;
    ~DoctypeReader() override;

    bool parse(InStream& in) override;

    /// Null after a failure.
    Dtd* extractDtd();

private:
    bool readDeclaration(InStream& in);
    bool readFile(InStream& in, DTDReader& declarations);
    bool mayOpen(InStream& in, std::string& path);

    std::unique_ptr<Dtd> mDtd;
};

/// Reads the declaration of an internal general entity into a `Dtd`, which must not be null.
class VEXXML_API EntityReader : public Reader {
public:
    /// The entity is added to `dtd`.
    explicit EntityReader(Dtd* dtd);

    bool parse(InStream& in) override;

private:
    Dtd* mDtd;
};

/// Reads an element declaration into a `Dtd`, which must not be null.
class VEXXML_API ElementDeclReader : public Reader {
public:
    /// The declaration is added to `dtd`.
    explicit ElementDeclReader(Dtd* dtd);

    bool parse(InStream& in) override;

private:
    bool readModel(InStream& in, std::unique_ptr<ContentSpec>& model);
    bool readGroup(InStream& in, int start, std::unique_ptr<ContentSpec>& model);

    Dtd* mDtd;
};

/// Reads a mixed content model.
class VEXXML_API MixedSpecReader : public Reader {
public:
    /// The model will belong to `dtd`.
    explicit MixedSpecReader(Dtd* dtd);
    MixedSpecReader(const MixedSpecReader& other);
    MixedSpecReader(MixedSpecReader&& other) noexcept;
    MixedSpecReader& operator=(const MixedSpecReader& other);
    MixedSpecReader& operator=(MixedSpecReader&& other) noexcept;
    ~MixedSpecReader() override;

    bool parse(InStream& in) override;

    /// Null after a failure.
    MixedSpec* extractMixedSpec();

private:
    bool readModel(InStream& in, MixedSpec& model);
    RepType getRep(InStream& in);

    Dtd* mDtd;
    std::unique_ptr<MixedSpec> mMixedSpec;
};

/// Reads the model of element-only content, of any depth.
class VEXXML_API ChildrenSpecReader : public Reader {
public:
    /// The model will belong to `dtd`.
    explicit ChildrenSpecReader(Dtd* dtd);
    ChildrenSpecReader(const ChildrenSpecReader& other);
    ChildrenSpecReader(ChildrenSpecReader&& other) noexcept;
    ChildrenSpecReader& operator=(const ChildrenSpecReader& other);
    ChildrenSpecReader& operator=(ChildrenSpecReader&& other) noexcept;
    ~ChildrenSpecReader() override;

    bool parse(InStream& in) override;

    /// Null after a failure.
    ChildrenSpec* extractChildrenSpec();

private:
    struct Group;
    enum class Next { Failed, Particle, Group, Separator, End };

    Next readParticle(InStream& in, Group& group);
    Next readSeparator(InStream& in, Group& group);
    Next unexpected(InStream& in, const std::string& token);
    std::unique_ptr<ChildrenSpec> endGroup(InStream& in, Group& group);
    RepType getRep(InStream& in);

    Dtd* mDtd;
    std::unique_ptr<ChildrenSpec> mChildrenSpec;
};

/// Reads an attribute-list declaration into a `Dtd`, which must not be null. The only attribute
/// type is "CDATA".
class VEXXML_API AttListReader : public Reader {
public:
    /// The definitions are added to `dtd`.
    explicit AttListReader(Dtd* dtd);

    bool parse(InStream& in) override;

private:
    bool readDefinition(InStream& in, const std::string& element, const std::string& attribute);

    Dtd* mDtd;
};

/// Reads a whole document and validates it against the DTD that it declares. One that is declared
/// with "PUBLIC" is not read.
///
/// Reading succeeds in front of anything behind the root element that is neither a comment nor a
/// processing instruction: whoever expects nothing there looks at where the stream stands.
class VEXXML_API DocumentReader : public Reader {
public:
    DocumentReader();
    DocumentReader(const DocumentReader& other);
    DocumentReader(DocumentReader&& other) noexcept;
    DocumentReader& operator=(const DocumentReader& other);
    DocumentReader& operator=(DocumentReader&& other) noexcept;
    ~DocumentReader() override;

    bool parse(InStream& in) override;

    /// The document; null before. It is also there when only its validation, or something behind
    /// its root element, failed.
    Document* getDocument();
    /// Hands the document to the caller; null when there is none.
    Document* extractDocument();

private:
    bool parseProlog(InStream& in);
    bool parseDoctype(InStream& in);
    bool skipPublicDoctype(InStream& in);
    bool parseElement(InStream& in);
    bool parseMisc(InStream& in);
    bool parseInstruction(InStream& in, TokenMemory& tokens);
    bool getToken(InStream& in, TokenMemory& tokens, std::string& token);
    bool peekToken(InStream& in, TokenMemory& tokens, std::string& token);

    std::unique_ptr<Document> mDocument;
    std::unique_ptr<Dtd> mDtd;
};

}  // namespace Xml
