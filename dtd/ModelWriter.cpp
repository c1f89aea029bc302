#include "dtd/ModelWriter.h"

#include <string>

namespace Xml {
namespace {

const char* suffixOf(RepType repetition) {
    switch (repetition) {
        case RepOptional:
            return "?";
        case RepZeroOrMore:
            return "*";
        case RepOneOrMore:
            return "+";
        case RepOnce:
            break;
    }
    return "";
}

}  // namespace

ModelWriter::ModelWriter(OutStream& out) : mOut(out) {}

void ModelWriter::write(const ChildrenSpec& node, bool parenthesise) {
    begin(node, parenthesise);
    finishOpenLists();
}

void ModelWriter::write(const NameSpec& particle, bool parenthesise) {
    begin(particle, parenthesise, "");
}

void ModelWriter::write(const SeqSpec& particle, bool parenthesise) {
    begin(particle, parenthesise, "");
    finishOpenLists();
}

void ModelWriter::write(const ChoiceSpec& particle, bool parenthesise) {
    begin(particle, parenthesise, "");
    finishOpenLists();
}

// The stack is a list of our own: a model may nest deeper than the call stack. Invariant: the text
// of the open lists is written up to the item in front of `next` of the last one.
void ModelWriter::finishOpenLists() {
    while (!mOpen.empty()) {
        OpenList& list = mOpen.back();
        if (list.next == list.items->size()) {
            mOut << list.end << list.suffix;
            mOpen.pop_back();
            continue;
        }
        if (list.next > 0) mOut << list.separator;
        begin(*(*list.items)[list.next++], false);
    }
}

void ModelWriter::begin(const ChildrenSpec& node, bool parenthesise) {
    const char* suffix = suffixOf(ModelAccess::repetitionOf(node));
    const CpSpec* particle = ModelAccess::particleOf(node);
    if (particle == nullptr) return;
    visitParticle(*particle, [&](const auto& exact) { begin(exact, parenthesise, suffix); });
}

void ModelWriter::begin(const NameSpec& particle, bool parenthesise, const char* suffix) {
    const std::string& name = ModelAccess::nameOf(particle);
    if (parenthesise && !name.empty()) {
        mOut << '(' << name << ')';
    } else {
        mOut << name;
    }
    mOut << suffix;
}

void ModelWriter::begin(const SeqSpec& particle, bool parenthesise, const char* suffix) {
    const ParticleList& items = ModelAccess::itemsOf(particle);
    if (items.empty()) {
        Message(std::string("<SeqSpec::toStream> need at least 1 element"));
        mOut << suffix;
        return;
    }
    const bool inParentheses = parenthesise || items.size() > 1;
    if (inParentheses) mOut << '(';
    mOpen.push_back({&items, 0, ", ", inParentheses ? ")" : "", suffix});
}

void ModelWriter::begin(const ChoiceSpec& particle, bool /*parenthesise*/, const char* suffix) {
    const ParticleList& choices = ModelAccess::itemsOf(particle);
    if (choices.size() < 2) {
        Message(std::string("<ChoiceSpec::toStream> need at least 2 items"));
        mOut << suffix;
        return;
    }
    mOut << '(';
    const char* end = ModelAccess::allowsCharData(particle) ? " | #PCDATA)" : ")";
    mOpen.push_back({&choices, 0, " | ", end, suffix});
}

void ModelWriter::begin(const CpSpec& particle, bool parenthesise, const char* suffix) {
    particle.toStream(mOut, parenthesise);
    mOut << suffix;
}

}  // namespace Xml
