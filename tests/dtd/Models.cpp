#include "dtd/Models.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <utility>

#include "VexXml/Streams.h"

namespace support {
namespace {

// particle ::= (name | group) ('?' | '*' | '+')?
// group ::= '(' '|'? (member ((',' | '|') member)*)? ')'
// member ::= particle | '#PCDATA'
class ModelReader {
public:
    explicit ModelReader(const std::string& text) {
        for (const char c : text) {
            if (c != ' ') mText += c;
        }
    }

    // NOLINTNEXTLINE(misc-no-recursion): nests as deep as the text of a test
    Particle particle() {
        Particle result = peek() == '(' ? group() : name();
        const std::size_t suffix = std::string("?*+").find(peek());
        if (suffix != std::string::npos) {
            ++mPos;
            result.repetition = static_cast<Xml::RepType>(suffix + 1);
        }
        return result;
    }

private:
    char peek() const { return mPos < mText.size() ? mText[mPos] : '\n'; }

    Particle name() {
        const std::size_t start = mPos;
        mPos = std::min(mText.find_first_of("(),|?*+", start), mText.size());
        return {Particle::Kind::Name, Xml::RepOnce, mText.substr(start, mPos - start), {}};
    }

    // NOLINTNEXTLINE(misc-no-recursion): nests as deep as the text of a test
    Particle group() {
        Particle result{Particle::Kind::Sequence, Xml::RepOnce, "", {}};
        do {
            if (mText[mPos++] == '|') result.kind = Particle::Kind::Choice;
            if (peek() == '|' || peek() == ')') continue;
            member(result);
        } while (peek() != ')');
        ++mPos;
        if (!isOneName(result)) return result;
        Particle only = std::move(result.members.front());
        return only;
    }

    // NOLINTNEXTLINE(misc-no-recursion): nests as deep as the text of a test
    void member(Particle& group) {
        if (mText.compare(mPos, 7, "#PCDATA") == 0) {
            mPos += 7;
            group.charData = true;
        } else {
            group.members.push_back(particle());
        }
    }

    static bool isOneName(const Particle& group) {
        return group.kind == Particle::Kind::Sequence && group.members.size() == 1 &&
               group.members[0].kind == Particle::Kind::Name &&
               group.members[0].repetition == Xml::RepOnce;
    }

    std::string mText;
    std::size_t mPos = 0;
};

template <class Write>
std::string collect(const Write& write) {
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    write(out);
    return text.str();
}

}  // namespace

Particle particle(const std::string& text) { return ModelReader(text).particle(); }

// NOLINTNEXTLINE(misc-no-recursion): nests as deep as the text of a test
Xml::CpSpec* buildCp(Xml::Dtd* dtd, const Particle& particle) {
    if (particle.kind == Particle::Kind::Name) return new Xml::NameSpec(dtd, particle.name);
    if (particle.kind == Particle::Kind::Sequence) {
        auto* sequence = new Xml::SeqSpec(dtd);
        for (const Particle& member : particle.members) sequence->add(build(dtd, member));
        return sequence;
    }
    auto* choice = new Xml::ChoiceSpec(dtd);
    for (const Particle& member : particle.members) choice->addChoice(build(dtd, member));
    choice->addCharDataAsChoice(particle.charData);
    return choice;
}

// NOLINTNEXTLINE(misc-no-recursion): nests as deep as the text of a test
Xml::ChildrenSpec* build(Xml::Dtd* dtd, const Particle& particle) {
    return new Xml::ChildrenSpec(dtd, buildCp(dtd, particle), particle.repetition);
}

Xml::ChildrenSpec* build(Xml::Dtd* dtd, const std::string& text) {
    return build(dtd, particle(text));
}

std::string textOf(const Xml::ContentSpec& model) {
    return collect([&](Xml::OutStream& out) { model.toStream(out); });
}

std::string textOf(const Xml::CpSpec& particle, bool parenthesise) {
    return collect([&](Xml::OutStream& out) { particle.toStream(out, parenthesise); });
}

std::string textOf(const Xml::AttDef& def) {
    return collect([&](Xml::OutStream& out) { def.toStream(out); });
}

}  // namespace support
