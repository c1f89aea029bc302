#pragma once

#include <memory>
#include <string>
#include <typeinfo>
#include <unordered_set>
#include <vector>

#include "VexXml/Dtd.h"

namespace Xml {

/// The members of a choice or a sequence, in order.
using ParticleList = std::vector<std::unique_ptr<ChildrenSpec>>;

/// Opens the models to the walks over them. A walk may not use the models' own operations instead:
/// those would call one another as deep as the model nests.
class ModelAccess {
public:
    /// The link for a model of `dtd`, which may be null.
    static std::shared_ptr<Dtd*> linkTo(Dtd* dtd) {
        return dtd != nullptr ? dtd->modelLink() : nullptr;
    }
    /// Null when there is none, or none any more.
    template <class Model>
    static Dtd* dtdOf(const Model& model) {
        return model.mDtd != nullptr ? *model.mDtd : nullptr;
    }

    static bool allowsName(const MixedSpec& model, const std::string& name) {
        return model.mKnownNames.count(name) > 0;
    }
    static const std::vector<std::string>& namesOf(const MixedSpec& model) { return model.mNames; }
    static const std::string& nameOf(const NameSpec& particle) { return particle.mName; }
    static const ParticleList& itemsOf(const SeqSpec& particle) { return particle.mItems; }
    static ParticleList& itemsOf(SeqSpec& particle) { return particle.mItems; }
    static const ParticleList& itemsOf(const ChoiceSpec& particle) { return particle.mChoices; }
    static ParticleList& itemsOf(ChoiceSpec& particle) { return particle.mChoices; }
    static bool allowsCharData(const ChoiceSpec& particle) { return particle.mCharDataAsChoice; }
    static RepType repetitionOf(const ChildrenSpec& node) { return node.mRep; }
    /// Null in a moved-from node, which matches and writes nothing.
    static const CpSpec* particleOf(const ChildrenSpec& node) { return node.mCp.get(); }
    static std::unique_ptr<CpSpec>& ownerOf(ChildrenSpec& node) { return node.mCp; }
};

/// Calls `visit` with the particle as the class it is of. One of a class that a caller derived is
/// passed as a plain `CpSpec`: only its virtual operations know what it does.
template <class Visitor>
void visitParticle(const CpSpec& particle, const Visitor& visit) {
    const std::type_info& type = typeid(particle);
    if (type == typeid(NameSpec)) {
        visit(static_cast<const NameSpec&>(particle));
    } else if (type == typeid(SeqSpec)) {
        visit(static_cast<const SeqSpec&>(particle));
    } else if (type == typeid(ChoiceSpec)) {
        visit(static_cast<const ChoiceSpec&>(particle));
    } else {
        visit(particle);
    }
}

}  // namespace Xml
