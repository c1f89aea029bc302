#include "VexXml/Readers.h"
#include "readers/CopyOf.h"
#include "readers/Repetition.h"

namespace Xml {

MixedSpecReader::MixedSpecReader(Dtd* dtd) : mDtd(dtd) {}

MixedSpecReader::MixedSpecReader(const MixedSpecReader& other)
    : Reader(other), mDtd(other.mDtd), mMixedSpec(copyOf(other.mMixedSpec)) {}

MixedSpecReader::MixedSpecReader(MixedSpecReader&&) noexcept = default;

MixedSpecReader& MixedSpecReader::operator=(const MixedSpecReader& other) {
    if (this != &other) *this = MixedSpecReader(other);
    return *this;
}

MixedSpecReader& MixedSpecReader::operator=(MixedSpecReader&&) noexcept = default;
MixedSpecReader::~MixedSpecReader() = default;

MixedSpec* MixedSpecReader::extractMixedSpec() { return mMixedSpec.release(); }

bool MixedSpecReader::parse(InStream& in) {
    mMixedSpec.reset();
    auto model = std::make_unique<MixedSpec>(mDtd);
    if (!readModel(in, *model)) return false;
    mMixedSpec = std::move(model);
    return true;
}

// Mixed ::= '(' '#PCDATA' ('|' Name)* ')' '*'?
bool MixedSpecReader::readModel(InStream& in, MixedSpec& model) {
    if (!checkToken(in, "(") || !checkToken(in, "#PCDATA")) return false;
    for (;;) {
        std::string token;
        if (!getToken(in, token)) return false;
        if (token == ")") break;
        if (token != "|") {
            message(in, "\"|\" expected");
            return false;
        }
        std::string name;
        if (!getName(in, name)) return false;
        model.addName(name);
    }
    const RepType rep = getRep(in);
    if (rep == RepOnce || rep == RepZeroOrMore) return true;
    message(in, "unexpected repetition type");
    return false;
}

RepType MixedSpecReader::getRep(InStream& in) {
    const int start = in.getPosition();
    std::string token;
    if (!getToken(in, token)) return RepOnce;
    const RepType rep = repetitionOf(token);
    if (rep == RepOnce) in.setPosition(start);
    return rep;
}

}  // namespace Xml
