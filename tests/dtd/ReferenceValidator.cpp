#include "dtd/ReferenceValidator.h"

#include <cstddef>

#include "dtd/Trees.h"

namespace support {
namespace {

bool isMixed(const std::string& model) { return model.rfind("(#PCDATA", 0) == 0; }

bool isOfParticles(const std::string& model) {
    return model != "ANY" && model != "EMPTY" && !isMixed(model);
}

// (#PCDATA | a | b)* names a and b.
std::set<std::string> namesOf(const std::string& mixed) {
    std::set<std::string> names;
    for (std::size_t bar = mixed.find("| "); bar != std::string::npos;
         bar = mixed.find("| ", bar + 1)) {
        const std::size_t start = bar + 2;
        names.insert(mixed.substr(start, mixed.find_first_of(" )", start) - start));
    }
    return names;
}

}  // namespace

ReferenceValidator::ReferenceValidator(const Models& models,
                                       const std::set<std::string>& withAttributeList)
    : mModels(models), mWithAttributeList(withAttributeList) {
    for (const auto& [name, model] : models) {
        if (isOfParticles(model)) mParticles[name] = particle(model);
    }
}

// NOLINTBEGIN(misc-no-recursion): nests as deep as the trees and models of a test

bool ReferenceValidator::validate(Xml::Element& element) {
    const auto model = mModels.find(element.getName());
    if (model == mModels.end() || !validateContent(element, model->second)) return false;
    if (mWithAttributeList.count(element.getName()) == 0) return element.getAttributeCount() == 0;
    // The list holds the attribute "dtd" alone, which need not be there.
    for (int i = 0; i < element.getAttributeCount(); ++i) {
        if (element.getAttribute(i)->getName() != "dtd") return false;
    }
    bind(element);
    return true;
}

bool ReferenceValidator::validateContent(Xml::Element& element, const std::string& model) {
    if (model == "ANY") return true;
    if (model == "EMPTY") return element.getChildCount() == 0;
    if (isMixed(model)) return validateMixed(element, namesOf(model));
    std::queue<Xml::Object*> pending = queueOf(element);
    return match(mParticles.at(element.getName()), pending) && pending.empty();
}

bool ReferenceValidator::validateMixed(Xml::Element& element, const std::set<std::string>& names) {
    for (Xml::Object* child : childrenOf(element)) {
        if (child->isElement()) {
            if (names.count(child->toElement()->getName()) == 0) return false;
            if (!validate(*child->toElement())) return false;
        }
        bind(*child);
    }
    return true;
}

bool ReferenceValidator::match(const Particle& particle, std::queue<Xml::Object*>& pending) {
    for (int count = 0;; ++count) {
        const std::queue<Xml::Object*> snapshot = pending;
        if (!matchOnce(particle, pending)) {
            if (particle.repetition == Xml::RepOnce) return false;
            pending = snapshot;
            return particle.repetition != Xml::RepOneOrMore || count >= 1;
        }
        if (particle.repetition == Xml::RepOnce || particle.repetition == Xml::RepOptional) {
            return true;
        }
        if (pending.empty()) return true;
        if (pending.size() == snapshot.size()) throw NeverEnds();
    }
}

bool ReferenceValidator::matchOnce(const Particle& particle, std::queue<Xml::Object*>& pending) {
    switch (particle.kind) {
        case Particle::Kind::Name:
            return matchName(particle, pending);
        case Particle::Kind::Sequence:
            return matchSequence(particle, pending);
        case Particle::Kind::Choice:
            break;
    }
    return matchChoice(particle, pending);
}

bool ReferenceValidator::matchName(const Particle& particle, std::queue<Xml::Object*>& pending) {
    if (pending.empty() || !pending.front()->isElement()) return false;
    Xml::Element& element = *pending.front()->toElement();
    if (element.getName() != particle.name || !validate(element)) return false;
    pending.pop();
    return true;
}

bool ReferenceValidator::matchSequence(const Particle& particle,
                                       std::queue<Xml::Object*>& pending) {
    for (const Particle& member : particle.members) {
        if (!match(member, pending)) return false;
    }
    return true;
}

bool ReferenceValidator::matchChoice(const Particle& particle, std::queue<Xml::Object*>& pending) {
    for (const Particle& member : particle.members) {
        const std::queue<Xml::Object*> snapshot = pending;
        if (match(member, pending)) return true;
        pending = snapshot;
    }
    if (!particle.charData) return false;
    if (pending.empty()) return true;
    if (!pending.front()->isCharData()) return false;
    pending.pop();
    return true;
}

void ReferenceValidator::bind(Xml::Object& node) {
    bound.insert(&node);
    if (!node.isElement()) return;
    for (Xml::Object* child : childrenOf(*node.toElement())) bind(*child);
}

// NOLINTEND(misc-no-recursion)

void declare(Xml::Dtd& dtd, const Models& models) {
    for (const auto& [name, model] : models) {
        if (model == "ANY") {
            dtd.addElementDecl(name, new Xml::AnySpec(&dtd));
        } else if (model == "EMPTY") {
            dtd.addElementDecl(name, new Xml::EmptySpec(&dtd));
        } else if (model == "(#PCDATA)") {
            dtd.addElementDecl(name, new Xml::CharSpec(&dtd));
        } else if (isMixed(model)) {
            auto* mixed = new Xml::MixedSpec(&dtd);
            for (const std::string& child : namesOf(model)) mixed->addName(child);
            dtd.addElementDecl(name, mixed);
        } else {
            dtd.addElementDecl(name, build(&dtd, model));
        }
    }
}

}  // namespace support
