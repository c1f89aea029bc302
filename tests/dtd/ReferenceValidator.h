#pragma once

#include <map>
#include <queue>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Models.h"

namespace support {

/// Thrown where matching would go on for ever: a repeated particle took nothing in front of a child
/// that is left.
class NeverEnds : public std::runtime_error {
public:
    NeverEnds() : runtime_error("never ends") {}
};

/// The model of each element that is declared: "ANY", "EMPTY", "(#PCDATA)", mixed content such as
/// "(#PCDATA | a)*" or, without names, "(#PCDATA)*", or of particles.
using Models = std::map<std::string, std::string>;

/// Declares the elements in `dtd`.
void declare(Xml::Dtd& dtd, const Models& models);

/// Validation as the rules say it, recursive and with copied queues: slow, and obvious.
class ReferenceValidator {
public:
    /// The elements with an attribute list may have the attribute "dtd", and none else.
    ReferenceValidator(const Models& models, const std::set<std::string>& withAttributeList);

    bool validate(Xml::Element& element);
    /// Takes what it matches from the queue, and leaves that as a failure found it.
    bool match(const Particle& particle, std::queue<Xml::Object*>& pending);

    std::set<const Xml::Object*> bound;  ///< what became bound so far

private:
    bool matchOnce(const Particle& particle, std::queue<Xml::Object*>& pending);
    bool matchName(const Particle& particle, std::queue<Xml::Object*>& pending);
    bool matchSequence(const Particle& particle, std::queue<Xml::Object*>& pending);
    bool matchChoice(const Particle& particle, std::queue<Xml::Object*>& pending);
    bool validateContent(Xml::Element& element, const std::string& model);
    bool validateMixed(Xml::Element& element, const std::set<std::string>& names);
    void bind(Xml::Object& node);

    Models mModels;
    std::map<std::string, Particle> mParticles;
    std::set<std::string> mWithAttributeList;
};

}  // namespace support
