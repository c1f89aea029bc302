#include "dtd/Validator.h"

#include <algorithm>
#include <string>
#include <typeinfo>

#include "dom/AttributeList.h"
#include "dtd/ModelAccess.h"

namespace Xml {

Validator::Validator(const std::vector<Object*>& children, std::uint64_t limit) : mLimit(limit) {
    open(Children(children.data(), children.size()));
}

Validator::Validator(const std::queue<Object*>& pending) { open(Children(pending)); }

void Validator::open(const Children& children) {
    mContents.push_back({children, 0, mVerdicts.size(), nullptr});
}

bool Validator::matches(const MixedSpec& model) {
    mFrames.emplace_back(MixedFrame{&model, false});
    return run();
}

bool Validator::matches(const ChildrenSpec& model) {
    enter(model);
    return run() && atEnd();
}

bool Validator::matchesElement(const Dtd& dtd) {
    enter(*front().toElement(), dtd);
    return run();
}

// Invariant: the frame on top waits for nothing but `mVerdict`. Every step of a run passes here.
bool Validator::run() {
    while (!mFrames.empty()) {
        if (++mSteps > mLimit) return false;
        std::visit([this](auto& frame) { resume(frame); }, mFrames.back());
    }
    return mVerdict;
}

void Validator::finish(bool verdict) {
    mFrames.pop_back();
    mVerdict = verdict;
}

// To enter something is to put its frame on the stack or, where nothing nests, to reach the
// verdict.

void Validator::enter(Element& element, const Dtd& dtd) {
    const Detail::ChildList& children = element.mChildren;
    open(Children(children.begin(), children.size()));
    mFrames.emplace_back(ElementFrame{&element, &dtd, false});
    mVerdict = false;
    const auto declared = dtd.mElementDecls.find(element.getName());
    if (declared != dtd.mElementDecls.end()) enter(*declared->second, children);
}

void Validator::enter(const ContentSpec& model, const Detail::ChildList& children) {
    if (typeid(model) == typeid(ChildrenSpec)) {
        std::get<ElementFrame>(mFrames.back()).mustBeTaken = true;
        enter(static_cast<const ChildrenSpec&>(model));
    } else if (typeid(model) == typeid(MixedSpec)) {
        mFrames.emplace_back(MixedFrame{&static_cast<const MixedSpec&>(model), false});
    } else {
        std::vector<Object*> nodes(children.begin(), children.end());
        mVerdict = model.validate(&nodes);
    }
}

void Validator::enter(const ChildrenSpec& node) {
    mFrames.emplace_back(RepetitionFrame{&node, 0, next()});
}

void Validator::enter(const CpSpec* particle) {
    mVerdict = false;
    if (particle != nullptr) visitParticle(*particle, [this](const auto& exact) { enter(exact); });
}

void Validator::enter(const NameSpec& particle) {
    const std::string& name = ModelAccess::nameOf(particle);
    const Dtd* dtd = ModelAccess::dtdOf(particle);
    mVerdict = false;
    if (name.empty() || dtd == nullptr || atEnd() || !front().isElement()) return;
    Element& element = *front().toElement();
    if (element.getName() != name) return;
    const Verdict* known = recall(*dtd);
    if (known == nullptr) return enter(element, *dtd);
    mVerdict = known->valid;
    if (mVerdict) ++next();
}

void Validator::enter(const SeqSpec& particle) {
    mVerdict = true;
    mFrames.emplace_back(SequenceFrame{&particle, 0});
}

void Validator::enter(const ChoiceSpec& particle) {
    mFrames.emplace_back(ChoiceFrame{&particle, 0, next()});
}

// The queue is kept, so that a repeated particle does not cost a copy of the rest every time.
void Validator::enter(const CpSpec& particle) {
    Content& content = mContents.back();
    if (content.pending == nullptr || content.pending->first != content.next) {
        content.pending = pendingFrom(content);
    }
    std::queue<Object*>& children = content.pending->children;
    mVerdict = particle.validate(&children);
    content.next = content.children.size() - std::min(children.size(), content.children.size());
    content.pending->first = content.next;
}

std::unique_ptr<Validator::Pending> Validator::pendingFrom(const Content& content) {
    auto pending = std::make_unique<Pending>();
    pending->first = content.next;
    for (std::size_t i = content.next; i < content.children.size(); ++i) {
        pending->children.push(&content.children[i]);
    }
    return pending;
}

void Validator::resume(ElementFrame frame) {
    const bool taken = !frame.mustBeTaken || atEnd();
    const bool valid = mVerdict && taken && validateAttributes(*frame.element, *frame.dtd);
    mVerdicts.resize(mContents.back().firstVerdict);
    mContents.pop_back();
    remember(*frame.dtd, valid);
    if (valid) ++next();
    finish(valid);
}

void Validator::resume(MixedFrame& frame) {
    const Content& content = mContents.back();
    const Dtd* dtd = ModelAccess::dtdOf(*frame.model);
    if (frame.inElement) {
        if (!mVerdict) return finish(false);
        content.children[content.next - 1].setDtd(dtd);
        frame.inElement = false;
    }
    for (; !atEnd(); ++next()) {
        if (front().isElement()) {
            Element& element = *front().toElement();
            if (dtd == nullptr || !ModelAccess::allowsName(*frame.model, element.getName())) {
                return finish(false);
            }
            frame.inElement = true;
            return enter(element, *dtd);
        }
        if (!front().isCharData()) return finish(false);
        front().setDtd(dtd);
    }
    finish(true);
}

// Deliberately without a guard against a particle that matches nothing: ((a?)*) goes on for ever in
// front of a child that is no "a".
void Validator::resume(RepetitionFrame& frame) {
    const RepType repetition = ModelAccess::repetitionOf(*frame.node);
    if (frame.tries > 0) {
        if (!mVerdict) {
            if (repetition == RepOnce) return finish(false);
            next() = frame.start;
            return finish(repetition != RepOneOrMore || frame.tries > 1);
        }
        if (repetition == RepOnce || repetition == RepOptional || atEnd()) return finish(true);
    }
    ++frame.tries;
    frame.start = next();
    enter(ModelAccess::particleOf(*frame.node));
}

void Validator::resume(SequenceFrame& frame) {
    const ParticleList& items = ModelAccess::itemsOf(*frame.sequence);
    if (!mVerdict || frame.next == items.size()) return finish(mVerdict);
    enter(*items[frame.next++]);
}

void Validator::resume(ChoiceFrame& frame) {
    const ParticleList& choices = ModelAccess::itemsOf(*frame.choice);
    if (frame.next > 0) {
        if (mVerdict) return finish(true);
        next() = frame.start;
    }
    if (frame.next < choices.size()) return enter(*choices[frame.next++]);
    finish(ModelAccess::allowsCharData(*frame.choice) && takeCharData());
}

// Also succeeds where nothing is left to take.
bool Validator::takeCharData() {
    if (atEnd()) return true;
    if (!front().isCharData()) return false;
    ++next();
    return true;
}

// Binds the element if an attribute list of its name allows its attributes. An element that has
// neither a list nor attributes is valid too, but deliberately not bound.
bool Validator::validateAttributes(Element& element, const Dtd& dtd) {
    const auto list = dtd.mAttListDecls.find(element.getName());
    if (list == dtd.mAttListDecls.end()) return element.getAttributeCount() == 0;
    for (const auto& [name, def] : list->second) {
        if (def->isRequired() && element.getAttribute(name) == nullptr) return false;
    }
    bool areDeclared = true;
    const auto check = [&](const Attribute& attribute) {
        areDeclared = areDeclared && list->second.count(attribute.getName()) > 0;
    };
    if (element.mAttributes) element.mAttributes->forEach(check);
    if (areDeclared) element.setDtd(&dtd);
    return areDeclared;
}

std::size_t& Validator::next() { return mContents.back().next; }

bool Validator::atEnd() const { return mContents.back().next >= mContents.back().children.size(); }

Object& Validator::front() const { return mContents.back().children[mContents.back().next]; }

const Validator::Verdict* Validator::recall(const Dtd& dtd) const {
    const std::size_t index = mContents.back().firstVerdict + mContents.back().next;
    if (index >= mVerdicts.size() || mVerdicts[index].dtd != &dtd) return nullptr;
    return &mVerdicts[index];
}

void Validator::remember(const Dtd& dtd, bool valid) {
    const std::size_t index = mContents.back().firstVerdict + mContents.back().next;
    if (index >= mVerdicts.size()) mVerdicts.resize(index + 1);
    mVerdicts[index] = {&dtd, valid};
}

}  // namespace Xml
