#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <queue>
#include <variant>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Children.h"

namespace Xml {

/// One run of validation: of an element with all below it, or of children against a model.
///
/// Matching is greedy: a repeated particle takes all it can, a choice its first alternative that
/// matches. What is being matched is a stack of frames, each of which waits for the verdict on the
/// frame above it, so that neither trees nor models need call stack for their depth.
class Validator {
public:
    /// A run that takes more than `limit` steps ends, with the verdict false.
    explicit Validator(const std::vector<Object*>& children, std::uint64_t limit = kNoLimit);

    /// Whether all the children fit the model.
    bool matches(const MixedSpec& model);
    bool matches(const ChildrenSpec& model);
    /// Whether the first child, which must be an element, keeps to what `dtd` declares.
    bool matchesElement(const Dtd& dtd);

    bool hasRunOut() const { return mSteps > mLimit; }

    /// Matches from the front of the queue and takes from it what was matched, by a failure too.
    /// The particle is taken for the class named, even if a caller derived another from it.
    template <class Particle>
    static bool takeMatch(const Particle& particle, std::queue<Object*>& pending) {
        Validator validator(pending);
        validator.enter(particle);
        const bool verdict = validator.run();
        for (std::size_t taken = validator.next(); taken > 0; --taken) pending.pop();
        return verdict;
    }

private:
    static constexpr std::uint64_t kNoLimit = static_cast<std::uint64_t>(-1);

    /// An element whose content is being matched. What is left to decide then is whether everything
    /// was taken, if the model is one of element-only content, and the attributes.
    struct ElementFrame {
        Element* element;
        const Dtd* dtd;
        bool mustBeTaken;
    };
    /// Mixed content, and whether the child in front of the next one is an element to be bound.
    struct MixedFrame {
        const MixedSpec* model;
        bool inElement;
    };
    /// A particle with its repetition: how often it was tried, and where it was tried last.
    struct RepetitionFrame {
        const ChildrenSpec* node;
        std::size_t tries;
        std::size_t start;
    };
    /// A sequence, and the item to be matched next.
    struct SequenceFrame {
        const SeqSpec* sequence;
        std::size_t next;
    };
    /// A choice, the alternative to be tried next, and where each is tried.
    struct ChoiceFrame {
        const ChoiceSpec* choice;
        std::size_t next;
        std::size_t start;
    };
    using Frame =
        std::variant<ElementFrame, MixedFrame, RepetitionFrame, SequenceFrame, ChoiceFrame>;

    /// The children from `first` on.
    struct Pending {
        std::queue<Object*> children;
        std::size_t first;
    };
    /// The children of an open element. A snapshot of what is left to match is a copy of `next`.
    struct Content {
        Children children;
        std::size_t next;                  ///< the first child not taken yet
        std::size_t firstVerdict;          ///< where in `mVerdicts` that on the first child is
        std::unique_ptr<Pending> pending;  ///< kept for the particles of a class of a caller's
    };
    /// What is known of a child: nothing if there is no DTD.
    struct Verdict {
        const Dtd* dtd = nullptr;
        bool valid = false;
    };

    explicit Validator(const std::queue<Object*>& pending);

    void open(const Children& children);
    bool run();
    void finish(bool verdict);

    void enter(Element& element, const Dtd& dtd);
    void enter(const ContentSpec& model, const Detail::ChildList& children);
    void enter(const ChildrenSpec& node);
    void enter(const CpSpec* particle);
    void enter(const NameSpec& particle);
    void enter(const SeqSpec& particle);
    void enter(const ChoiceSpec& particle);
    void enter(const CpSpec& particle);

    void resume(ElementFrame frame);
    void resume(MixedFrame& frame);
    void resume(RepetitionFrame& frame);
    void resume(SequenceFrame& frame);
    void resume(ChoiceFrame& frame);

    bool takeCharData();
    static bool validateAttributes(Element& element, const Dtd& dtd);

    std::size_t& next();
    bool atEnd() const;
    Object& front() const;
    static std::unique_ptr<Pending> pendingFrom(const Content& content);
    const Verdict* recall(const Dtd& dtd) const;
    void remember(const Dtd& dtd, bool valid);

    std::vector<Frame> mFrames;
    std::vector<Content> mContents;
    /// On children of the open contents, as far as they were asked for, those of the innermost
    /// last. A child can only be asked for again while its content is open.
    std::vector<Verdict> mVerdicts;
    bool mVerdict = false;  ///< on what was finished last
    std::uint64_t mLimit = kNoLimit;
    std::uint64_t mSteps = 0;
};

}  // namespace Xml
