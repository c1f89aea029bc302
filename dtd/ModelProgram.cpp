#include "dtd/ModelProgram.h"

#include <string>

#include "dtd/ElementRules.h"

namespace Xml {

/// Writes the program with a stack of its own: a model may nest deeper than the call stack.
class ModelCompiler {
public:
    ModelCompiler(ModelProgram& program, ElementRules& rules)
        : mSteps(program.mSteps), mRules(rules) {}

    bool compile(const ChildrenSpec& model) {
        // A try that comes to nothing goes on here.
        add(Op::Fail);
        bool isPlain = begin(model);
        while (isPlain && !mOpen.empty()) isPlain = continueLast();
        add(Op::End);
        return isPlain;
    }

private:
    using Op = ModelProgram::Op;

    /// A particle with its repetition, of which the members in front of `next` are written.
    struct Open {
        const ParticleList* members;
        std::size_t next;
        RepType repetition;
        bool isChoice;
        bool allowsCharData;
        std::uint32_t start;               ///< of the particle, behind the `Try` of a repetition
        std::vector<std::uint32_t> exits;  ///< the commits of alternatives
    };

    std::uint32_t here() const { return static_cast<std::uint32_t>(mSteps.size()); }

    std::uint32_t add(Op op, std::uint32_t target = 0, ModelProgram::Kind kind = nullptr) {
        mSteps.push_back({op, target, kind});
        return here() - 1;
    }

    bool begin(const ChildrenSpec& node) {
        const RepType repetition = ModelAccess::repetitionOf(node);
        const CpSpec* particle = ModelAccess::particleOf(node);
        if (particle == nullptr || repetition < RepOnce || repetition > RepOneOrMore) return false;
        bool isPlain = false;
        visitParticle(*particle, [&](const auto& exact) { isPlain = begin(exact, repetition); });
        return isPlain;
    }

    bool begin(const CpSpec& /*particle*/, RepType /*repetition*/) { return false; }

    bool begin(const NameSpec& particle, RepType repetition) {
        if (ModelAccess::dtdOf(particle) != &mRules.dtd()) return false;
        const std::string& name = ModelAccess::nameOf(particle);
        if (name.empty()) return false;
        ModelProgram::Kind kind = &mRules.of(name);
        switch (repetition) {
            case RepOptional:
                add(Op::TakeOptional, 0, kind);
                break;
            case RepOneOrMore:
                add(Op::TakeOne, 0, kind);
                add(Op::TakeAny, 0, kind);
                break;
            case RepZeroOrMore:
                add(Op::TakeAny, 0, kind);
                break;
            case RepOnce:
                add(Op::TakeOne, 0, kind);
        }
        return true;
    }

    bool begin(const SeqSpec& particle, RepType repetition) {
        open(ModelAccess::itemsOf(particle), repetition);
        return true;
    }

    bool begin(const ChoiceSpec& particle, RepType repetition) {
        open(ModelAccess::itemsOf(particle), repetition);
        mOpen.back().isChoice = true;
        mOpen.back().allowsCharData = ModelAccess::allowsCharData(particle);
        return true;
    }

    void open(const ParticleList& members, RepType repetition) {
        if (repetition != RepOnce) add(Op::Try);
        mOpen.push_back({&members, 0, repetition, false, false, here(), {}});
    }

    bool continueLast() {
        Open& last = mOpen.back();
        if (last.isChoice && last.next > 0) endAlternative(last);
        if (last.next == last.members->size()) {
            end(last);
            mOpen.pop_back();
            return true;
        }
        if (last.isChoice) last.exits.push_back(add(Op::Try));
        const std::size_t index = last.next++;
        return begin(*(*last.members)[index]);
    }

    // The alternative before failed at a `Try`, or commits and goes behind the choice.
    void endAlternative(Open& choice) {
        const std::uint32_t tried = choice.exits.back();
        choice.exits.back() = add(Op::Commit);
        mSteps[tried].target = here();
    }

    void end(Open& particle) {
        if (particle.isChoice) {
            add(particle.allowsCharData ? Op::TakeText : Op::Fail);
            for (const std::uint32_t exit : particle.exits) mSteps[exit].target = here();
        }
        switch (particle.repetition) {
            case RepOptional:
                add(Op::Commit, here() + 1);
                mSteps[particle.start - 1].target = here();
                break;
            case RepZeroOrMore:
                add(Op::Repeat, particle.start);
                mSteps[particle.start - 1].target = here();
                break;
            case RepOneOrMore:
                // The first try has nothing to go back to but the failure at the beginning.
                add(Op::Repeat, particle.start);
                break;
            case RepOnce:
                break;
        }
    }

    std::vector<ModelProgram::Step>& mSteps;
    ElementRules& mRules;
    std::vector<Open> mOpen;
};

bool ModelProgram::compile(const ChildrenSpec& model, ElementRules& rules) {
    mSteps.clear();
    return ModelCompiler(*this, rules).compile(model);
}

// Invariant: a failure goes on at the place on top of the stack, with the child that was the next
// one there; without a place the model does not fit.
ModelProgram::Verdict ModelProgram::run(const Kind* children, std::size_t count,
                                        std::vector<Place>& places) const {
    places.clear();
    std::size_t child = 0;
    std::uint32_t next = 1;
    while (true) {
        const Step& step = mSteps[next++];
        bool failed = false;
        switch (step.op) {
            case Op::TakeOne:
                failed = child == count || children[child] != step.kind;
                if (!failed) ++child;
                break;
            case Op::TakeOptional:
                if (child < count && children[child] == step.kind) ++child;
                break;
            case Op::TakeAny:
                while (child < count && children[child] == step.kind) ++child;
                break;
            case Op::TakeText:
                failed = child < count && children[child] != nullptr;
                if (!failed && child < count) ++child;
                break;
            case Op::Try:
                places.push_back({step.target, child});
                break;
            case Op::Commit:
                places.pop_back();
                next = step.target;
                break;
            case Op::Repeat:
                if (child == count) {
                    places.pop_back();
                    break;
                }
                if (places.back().child == child) return Verdict::GoesOnForEver;
                places.back() = {next, child};
                next = step.target;
                break;
            case Op::Fail:
                failed = true;
                break;
            case Op::End:
                return child == count ? Verdict::Fits : Verdict::DoesNotFit;
        }
        if (!failed) continue;
        if (places.empty()) return Verdict::DoesNotFit;
        next = places.back().step;
        child = places.back().child;
        places.pop_back();
    }
}

}  // namespace Xml
