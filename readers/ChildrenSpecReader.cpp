#include <utility>
#include <vector>

#include "VexXml/Readers.h"
#include "readers/CopyOf.h"
#include "readers/ReadBudget.h"
#include "readers/Repetition.h"

namespace Xml {

/// A group that is being read. Its first separator tells what it is; until then it holds just its
/// first particle, in one of two forms.
struct ChildrenSpecReader::Group {
    std::unique_ptr<NameSpec> firstName;  ///< a name without a repetition
    std::unique_ptr<ChildrenSpec> first;  ///< any other first particle
    std::unique_ptr<SeqSpec> sequence;    ///< behind the first ","
    std::unique_ptr<ChoiceSpec> choice;   ///< behind the first "|"

    void add(Dtd* dtd, const std::string& name, RepType rep) {
        if (sequence) {
            sequence->add(name, rep);
        } else if (choice) {
            choice->addChoice(name, rep);
        } else if (rep == RepOnce) {
            firstName = std::make_unique<NameSpec>(dtd, name);
        } else {
            first = std::make_unique<ChildrenSpec>(dtd, name, rep);
        }
    }

    void add(std::unique_ptr<ChildrenSpec> group) {
        if (sequence) {
            sequence->add(group.get());
        } else if (choice) {
            choice->addChoice(group.get());
        } else {
            first = std::move(group);
            return;
        }
        group.release();
    }

    void beginSequence(Dtd* dtd) {
        if (sequence) return;
        sequence = std::make_unique<SeqSpec>(dtd);
        if (firstName) {
            sequence->add(firstName.get(), RepOnce);
            firstName.release();
        } else {
            sequence->add(first.get());
            first.release();
        }
    }

    void beginChoice(Dtd* dtd) {
        if (choice) return;
        choice = std::make_unique<ChoiceSpec>(dtd);
        if (firstName) {
            choice->addChoice(firstName.get(), RepOnce);
            firstName.release();
        } else {
            choice->addChoice(first.get());
            first.release();
        }
    }

    /// The particle that the group as a whole is. A single particle with a repetition of its own
    /// becomes a sequence of one.
    std::unique_ptr<CpSpec> extractParticle(Dtd* dtd) {
        if (firstName) return std::move(firstName);
        if (choice) return std::move(choice);
        beginSequence(dtd);
        return std::move(sequence);
    }
};

ChildrenSpecReader::ChildrenSpecReader(Dtd* dtd) : mDtd(dtd) {}

ChildrenSpecReader::ChildrenSpecReader(const ChildrenSpecReader& other)
    : Reader(other), mDtd(other.mDtd), mChildrenSpec(copyOf(other.mChildrenSpec)) {}

ChildrenSpecReader::ChildrenSpecReader(ChildrenSpecReader&&) noexcept = default;

ChildrenSpecReader& ChildrenSpecReader::operator=(const ChildrenSpecReader& other) {
    if (this != &other) *this = ChildrenSpecReader(other);
    return *this;
}

ChildrenSpecReader& ChildrenSpecReader::operator=(ChildrenSpecReader&&) noexcept = default;
ChildrenSpecReader::~ChildrenSpecReader() = default;

ChildrenSpec* ChildrenSpecReader::extractChildrenSpec() { return mChildrenSpec.release(); }

// children ::= '(' cp ((',' cp)* | ('|' cp)*) ')' rep      cp ::= (Name | children) rep
//
// All groups inside are read by one more reader, in turn: they may nest deeper than the call stack.
// Invariant: the groups of `open` have their "(" read and their ")" not, outermost first.
bool ChildrenSpecReader::parse(InStream& in) {
    mChildrenSpec.reset();
    if (!checkToken(in, "(") || !isWithin(&ReadLimits::groupDepth, 1, in)) return false;
    ChildrenSpecReader inner(mDtd);
    const ReadBudget::Share share(mBudget, inner.mBudget);
    std::vector<Group> open(1);
    Next next = Next::Particle;
    while (next != Next::Failed) {
        ChildrenSpecReader& reader = open.size() == 1 ? *this : inner;
        if (next == Next::Particle) {
            next = reader.readParticle(in, open.back());
        } else if (next == Next::Separator) {
            next = reader.readSeparator(in, open.back());
        } else if (next == Next::Group) {
            open.emplace_back();
            const bool isAllowed = inner.isWithin(&ReadLimits::groupDepth, open.size(), in);
            next = isAllowed ? Next::Particle : Next::Failed;
        } else {
            auto group = reader.endGroup(in, open.back());
            open.pop_back();
            if (open.empty()) {
                mChildrenSpec = std::move(group);
                return true;
            }
            open.back().add(std::move(group));
            next = Next::Separator;
        }
    }
    if (open.size() > 1) setMessage(inner.getErrorMessage());
    return false;
}

ChildrenSpecReader::Next ChildrenSpecReader::readParticle(InStream& in, Group& group) {
    std::string token;
    if (!getToken(in, token)) return Next::Failed;
    if (token == "(") return Next::Group;
    if (isName(token)) {
        if (!isWithin(&ReadLimits::nameLength, token.size(), in)) return Next::Failed;
        group.add(mDtd, token, getRep(in));
    } else if (token == "#PCDATA" && group.choice) {
        group.choice->addCharDataAsChoice(true);
    } else {
        return unexpected(in, token);
    }
    return Next::Separator;
}

ChildrenSpecReader::Next ChildrenSpecReader::readSeparator(InStream& in, Group& group) {
    std::string token;
    if (!getToken(in, token)) return Next::Failed;
    if (token == ")") return Next::End;
    if (token == "," && !group.choice) {
        group.beginSequence(mDtd);
    } else if (token == "|" && !group.sequence) {
        group.beginChoice(mDtd);
    } else {
        return unexpected(in, token);
    }
    return Next::Particle;
}

ChildrenSpecReader::Next ChildrenSpecReader::unexpected(InStream& in, const std::string& token) {
    message(in, "unexpected \"" + token + '"');
    return Next::Failed;
}

std::unique_ptr<ChildrenSpec> ChildrenSpecReader::endGroup(InStream& in, Group& group) {
    const RepType rep = getRep(in);
    std::unique_ptr<CpSpec> particle = group.extractParticle(mDtd);
    auto model = std::make_unique<ChildrenSpec>(mDtd, particle.get(), rep);
    particle.release();
    return model;
}

RepType ChildrenSpecReader::getRep(InStream& in) {
    const int start = in.getPosition();
    std::string token;
    if (!getToken(in, token)) return RepOnce;
    const RepType rep = repetitionOf(token);
    if (rep == RepOnce) in.setPosition(start);
    return rep;
}

}  // namespace Xml
