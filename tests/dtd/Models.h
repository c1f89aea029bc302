#pragma once

#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dtd.h"

namespace support {

/// A content particle with its repetition, to build models from and to match without them.
struct Particle {  // NOLINT(misc-no-recursion): nests as deep as the text of a test
    enum class Kind { Name, Choice, Sequence };
    Kind kind;
    Xml::RepType repetition;
    std::string name;               ///< Name only
    std::vector<Particle> members;  ///< Choice and Sequence only
    bool charData = false;          ///< Choice only: "#PCDATA" is the last alternative
};

/// Reads one, such as `(a, b?, (c | #PCDATA)+)*`. A group of one member is a sequence, `(|a)` a
/// choice; but `(a)`, of a name that occurs once, is just the name.
Particle particle(const std::string& text);

/// The particle without its repetition, as a model for `dtd`; the caller's.
Xml::CpSpec* buildCp(Xml::Dtd* dtd, const Particle& particle);
/// The particle as a model for `dtd`; the caller's.
Xml::ChildrenSpec* build(Xml::Dtd* dtd, const Particle& particle);
Xml::ChildrenSpec* build(Xml::Dtd* dtd, const std::string& text);

/// What `toStream` writes.
std::string textOf(const Xml::ContentSpec& model);
std::string textOf(const Xml::CpSpec& particle, bool parenthesise);
std::string textOf(const Xml::AttDef& def);

}  // namespace support
