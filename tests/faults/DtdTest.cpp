#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "faults/EachAllocation.h"
#include "faults/Quiet.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"

namespace {

using faults::failEachAllocation;

const char* const kDeclarations =
    "<!ELEMENT list (head?, (item | (group, note+)*)+, tail)>"
    "<!ELEMENT head (#PCDATA | a-name-that-is-long-enough | b)*>"
    "<!ELEMENT item EMPTY><!ELEMENT group ANY><!ELEMENT tail ((a | b), c)>"
    "<!ATTLIST item a CDATA 'a value that is long enough' b CDATA #IMPLIED c CDATA #REQUIRED>"
    "<!ATTLIST group kind CDATA #FIXED 'it'>"
    "<!ENTITY first 'the value of the first entity'><!ENTITY second '2'>";

std::unique_ptr<Xml::Dtd> readDtd(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::DTDReader reader("list");
    reader.parse(in);
    return std::unique_ptr<Xml::Dtd>(reader.extractDtd());
}

/// What is done with a DTD, and what there is to tell of it.
using Work = std::string (*)(Xml::Dtd& dtd);

struct Done {
    explicit Done(Work todo) : work(todo), dtd(readDtd(kDeclarations)) {}
    void run() { told = work(*dtd); }
    std::string result() const { return told + "\n" + support::written(*dtd); }

    Work work;
    std::unique_ptr<Xml::Dtd> dtd;
    std::string told;
};

struct Case {
    const char* name;
    Work work;
};

const char* const kOthers =
    "<!ELEMENT list (only)><!ELEMENT other (a, (b | c))><!ATTLIST item a CDATA 'other' "
    "d CDATA 'one more value that is long'><!ATTLIST other x CDATA #IMPLIED>"
    "<!ENTITY first 'another value of the first'><!ENTITY third 'three'>";

std::string mergeOthers(Xml::Dtd& dtd, bool overwrite) {
    const std::unique_ptr<Xml::Dtd> others = readDtd(kOthers);
    dtd.merge(*others, overwrite);
    return {};
}

const Case kCases[] = {
    {"read",
     [](Xml::Dtd& dtd) {
         dtd.merge(*readDtd(kDeclarations), true);
         return std::string();
     }},
    {"merge and overwrite", [](Xml::Dtd& dtd) { return mergeOthers(dtd, true); }},
    {"merge and keep", [](Xml::Dtd& dtd) { return mergeOthers(dtd, false); }},
    {"merge with itself",
     [](Xml::Dtd& dtd) {
         dtd.merge(dtd, true);
         return std::string();
     }},
    {"copy",
     [](Xml::Dtd& dtd) {
         Xml::Dtd copy(dtd);
         copy.touch();
         return std::string();
     }},
    {"assign",
     [](Xml::Dtd& dtd) {
         dtd = *readDtd(kOthers);
         return std::string();
     }},
    {"declare a model of the callers",
     [](Xml::Dtd& dtd) {
         std::unique_ptr<Xml::ContentSpec> model = std::make_unique<Xml::MixedSpec>(&dtd);
         if (dtd.addElementDecl("a-new-element-of-some-length", model.get())) model.release();
         return std::string();
     }},
    {"declare a particle",
     [](Xml::Dtd& dtd) {
         dtd.addElementDecl("new", new Xml::NameSpec(&dtd, "a-child-of-some-length"),
                            Xml::RepOneOrMore);
         return std::string();
     }},
    {"declare by names",
     [](Xml::Dtd& dtd) {
         dtd.addElementDecl("new-one");
         dtd.addElementDecl("new-two", "a-child-of-some-length", Xml::RepOptional);
         return std::string();
     }},
    {"declare an attribute of the callers",
     [](Xml::Dtd& dtd) {
         std::unique_ptr<Xml::AttDef> definition =
             std::make_unique<Xml::AttStringType>(Xml::AttValue, "a default that is long enough");
         if (dtd.addAttDecl("new-element", "attribute", definition.get())) definition.release();
         return std::string();
     }},
    {"declare an attribute by name",
     [](Xml::Dtd& dtd) {
         dtd.addAttDecl("item", "some-other-attribute", Xml::AttImplied);
         return std::string();
     }},
    {"set an entity",
     [](Xml::Dtd& dtd) {
         dtd.setEntity("first", "a value that is long enough");
         dtd.setEntity("some-other-entity", "a value that is long enough");
         return std::string(dtd.getEntityValue("an-entity-that-nobody-declared")) +
                dtd.getEntityName("a text that is no entity's value");
     }},
    {"build a choice",
     [](Xml::Dtd& dtd) {
         Xml::ChoiceSpec choice(&dtd);
         choice.addChoice("a-name-of-some-length", Xml::RepOnce);
         auto name = std::make_unique<Xml::NameSpec>(&dtd, "b");
         choice.addChoice(name.get(), Xml::RepOptional);
         name.release();
         auto node = std::make_unique<Xml::ChildrenSpec>(&dtd, "c", Xml::RepOnce);
         choice.addChoice(node.get());
         node.release();
         const Xml::ChoiceSpec copy(choice);
         const std::unique_ptr<Xml::CpSpec> clone(choice.clone(&dtd));
         return std::string();
     }},
    {"build a sequence",
     [](Xml::Dtd& dtd) {
         Xml::SeqSpec sequence(&dtd);
         sequence.add("a-name-of-some-length", Xml::RepOnce);
         auto name = std::make_unique<Xml::NameSpec>(&dtd, "b");
         sequence.add(name.get(), Xml::RepOptional);
         name.release();
         auto node = std::make_unique<Xml::ChildrenSpec>(&dtd, "c", Xml::RepOnce);
         sequence.add(node.get());
         node.release();
         const Xml::SeqSpec copy(sequence);
         const std::unique_ptr<Xml::CpSpec> clone(sequence.clone(&dtd));
         return std::string();
     }},
};

class FailingMemoryOfADtd : public testing::TestWithParam<Case> {
protected:
    faults::Quiet mQuiet;
};

TEST_P(FailingMemoryOfADtd, LeavesItUsable) { failEachAllocation<Done>(GetParam().work); }

std::string nameOf(const testing::TestParamInfo<Case>& info) {
    std::string name;
    for (const char c : std::string(info.param.name)) name += c == ' ' ? '_' : c;
    return name;
}

INSTANTIATE_TEST_SUITE_P(Work, FailingMemoryOfADtd, testing::ValuesIn(kCases), nameOf);

/// A mixed model in which a name was added twice reports it.
struct AddedName {
    AddedName() : dtd("a"), model(&dtd) {}
    void run() { model.addName("a-name-that-is-long-enough"); }
    std::string result() const { return std::to_string(diagnostics.take().size()); }

    Xml::Dtd dtd;
    Xml::MixedSpec model;
    mutable support::Diagnostics diagnostics;
};

TEST(FailingMemoryOfAMixedSpec, DoesNotLeaveTheNameAdded) { failEachAllocation<AddedName>(); }

}  // namespace
