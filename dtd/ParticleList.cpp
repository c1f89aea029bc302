#include "dtd/ParticleList.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace Xml {
namespace {

// Copies particles with a stack of its own: a model may nest deeper than the call stack.
class Copier {
public:
    Copier() = default;
    explicit Copier(Dtd* newDtd) : mNewDtd(newDtd) {}

    std::unique_ptr<CpSpec> copy(const CpSpec* particle) {
        std::unique_ptr<CpSpec> result = begin(particle);
        fillOpenLists();
        return result;
    }

    ParticleList copy(const ParticleList& items) {
        ParticleList result;
        open(items, result);
        fillOpenLists();
        return result;
    }

private:
    // A list whose items are being copied.
    struct OpenList {
        const ParticleList* source;
        std::size_t next;
        ParticleList* target;
    };

    template <class Model>
    Dtd* dtdFor(const Model& model) const {
        return mNewDtd.has_value() ? *mNewDtd : ModelAccess::dtdOf(model);
    }

    void open(const ParticleList& source, ParticleList& target) {
        target.reserve(source.size());
        mOpen.push_back({&source, 0, &target});
    }

    // Invariant: what `target` lacks of its items is below a list above it on the stack, or behind
    // `next`.
    void fillOpenLists() {
        while (!mOpen.empty()) {
            OpenList& list = mOpen.back();
            if (list.next == list.source->size()) {
                mOpen.pop_back();
                continue;
            }
            const ChildrenSpec& item = *(*list.source)[list.next++];
            ParticleList& target = *list.target;
            target.push_back(begin(item));
        }
    }

    std::unique_ptr<ChildrenSpec> begin(const ChildrenSpec& item) {
        Dtd* dtd = dtdFor(item);
        if (typeid(item) != typeid(ChildrenSpec)) {
            return std::unique_ptr<ChildrenSpec>(item.clone(dtd));
        }
        auto copy = std::make_unique<ChildrenSpec>(dtd, nullptr, ModelAccess::repetitionOf(item));
        ModelAccess::ownerOf(*copy) = begin(ModelAccess::particleOf(item));
        return copy;
    }

    std::unique_ptr<CpSpec> begin(const CpSpec* particle) {
        std::unique_ptr<CpSpec> result;
        if (particle == nullptr) return result;
        visitParticle(*particle, [&](const auto& exact) { result = beginExact(exact); });
        return result;
    }

    std::unique_ptr<CpSpec> beginExact(const NameSpec& particle) const {
        return std::make_unique<NameSpec>(dtdFor(particle), ModelAccess::nameOf(particle));
    }

    std::unique_ptr<CpSpec> beginExact(const SeqSpec& particle) {
        auto result = std::make_unique<SeqSpec>(dtdFor(particle));
        open(ModelAccess::itemsOf(particle), ModelAccess::itemsOf(*result));
        return result;
    }

    std::unique_ptr<CpSpec> beginExact(const ChoiceSpec& particle) {
        auto result = std::make_unique<ChoiceSpec>(dtdFor(particle));
        // Cloning loses the alternative on purpose; plain copies keep it.
        result->addCharDataAsChoice(!mNewDtd.has_value() && ModelAccess::allowsCharData(particle));
        open(ModelAccess::itemsOf(particle), ModelAccess::itemsOf(*result));
        return result;
    }

    std::unique_ptr<CpSpec> beginExact(const CpSpec& particle) const {
        return std::unique_ptr<CpSpec>(particle.clone(dtdFor(particle)));
    }

    std::optional<Dtd*> mNewDtd;
    std::vector<OpenList> mOpen;
};

// Also those of a class that a caller derived from a choice or a sequence. Null when there are
// none.
ParticleList* itemsBelow(CpSpec* particle) {
    ParticleList* items = nullptr;
    if (auto* sequence = dynamic_cast<SeqSpec*>(particle)) {
        items = &ModelAccess::itemsOf(*sequence);
    } else if (auto* choice = dynamic_cast<ChoiceSpec*>(particle)) {
        items = &ModelAccess::itemsOf(*choice);
    }
    return items != nullptr && !items->empty() ? items : nullptr;
}

std::unique_ptr<ChildrenSpec> takeLast(ParticleList& items) {
    std::unique_ptr<ChildrenSpec> last = std::move(items.back());
    items.pop_back();
    return last;
}

// Frees an item and all below it, from the innermost outwards. A model may be deeper than the call
// stack, and freeing must not need memory, so the way back lies in the model itself. Invariant:
// `particle` was that of `item`. In its place `item` owns the particle around it, and there the
// last item, which `item` was, is now the one that owned that particle; null at the top.
void destroyItem(std::unique_ptr<ChildrenSpec> item) {
    std::unique_ptr<CpSpec> particle = std::move(ModelAccess::ownerOf(*item));
    while (item != nullptr) {
        if (ParticleList* items = itemsBelow(particle.get())) {
            std::unique_ptr<ChildrenSpec> inner = std::move(items->back());
            if (inner == nullptr) {
                items->pop_back();
                continue;
            }
            items->back() = std::move(item);
            item = std::move(inner);
            particle.swap(ModelAccess::ownerOf(*item));
        } else {
            particle = std::move(ModelAccess::ownerOf(*item));
            item = particle != nullptr ? takeLast(*itemsBelow(particle.get())) : nullptr;
        }
    }
}

}  // namespace

std::unique_ptr<CpSpec> copyOf(const CpSpec* particle) { return Copier().copy(particle); }

ParticleList copyOf(const ParticleList& items) { return Copier().copy(items); }

std::unique_ptr<CpSpec> cloneOf(const CpSpec* particle, Dtd* newDtd) {
    return Copier(newDtd).copy(particle);
}

ParticleList cloneOf(const ParticleList& items, Dtd* newDtd) { return Copier(newDtd).copy(items); }

void destroy(ParticleList items) {
    while (!items.empty()) {
        if (std::unique_ptr<ChildrenSpec> item = takeLast(items)) destroyItem(std::move(item));
    }
}

}  // namespace Xml
