#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/ModelProgram.h"

namespace Xml {

/// What a DTD declares of the elements of one name, as far as it can be told in advance of a
/// document what comes of it.
struct ElementRule {
    enum class Content : std::uint8_t {
        Open,     ///< not looked up yet
        Other,    ///< not declared, or of a class of a caller's, or of another DTD
        Any,      ///< whatever there is
        InOrder,  ///< as `program` says
        Mixed     ///< elements of the rules in `members` in any order, and `allowsText`
    };

    /// Whether the members hold this rule.
    bool allows(const ElementRule& rule) const;

    const std::string* name = nullptr;
    Content content = Content::Open;
    bool allowsText = false;    ///< Mixed only
    bool bindsText = false;     ///< Mixed only: the model binds the character data itself,
    bool bindsMembers = false;  ///< and the elements
    bool needsMember = false;   ///< Mixed only: there is at least one
    std::vector<const ElementRule*> members;  ///< Mixed only, in the order of their addresses
    ModelProgram program;                     ///< InOrder only
    /// The attributes declared; null without a list.
    const std::map<std::string, std::shared_ptr<AttDef>>* attributes = nullptr;
    std::vector<const std::string*> required;  ///< the names of those that must be there
    /// The names that attributes may share, when there are few attributes declared.
    struct SharedName {
        const std::string* text;
        bool isRequired;
    };
    std::vector<SharedName> sharedNames;
};

/// The rules of a DTD by name, for one run of validation: neither the DTD nor its models may change
/// meanwhile, and the names that were asked for must live as long.
class ElementRules {
public:
    explicit ElementRules(const Dtd& dtd) : mDtd(dtd) {}

    const Dtd& dtd() const { return mDtd; }

    /// Each name has one rule, whose address tells it from others.
    ElementRule& of(const std::string& name) {
        ElementRule*& recent = mRecent[slotOf(name)];
        // Elements of the same name mostly share its text.
        if (recent != nullptr && (recent->name == &name || *recent->name == name)) return *recent;
        return *(recent = &find(name));
    }
    /// Looks up what is declared, if that was not done before.
    void lookUp(ElementRule& rule) {
        if (rule.content == ElementRule::Content::Open) fill(rule);
    }

private:
    static constexpr std::size_t kSlots = 256;

    static std::size_t slotOf(const std::string& name);

    ElementRule& find(const std::string& name);
    void fill(ElementRule& rule);
    static void fillSharedNames(ElementRule& rule);
    void fillContent(ElementRule& rule, const ContentSpec& model);
    void fillMixed(ElementRule& rule, const MixedSpec& model);
    void fillChildren(ElementRule& rule, const ChildrenSpec& model);
    bool addMember(ElementRule& rule, const CpSpec& particle);
    bool isChoiceOfNames(ElementRule& rule, const ChildrenSpec& model);

    const Dtd& mDtd;
    std::unordered_map<std::string_view, ElementRule> mRules;
    /// A rule found for a name of each slot, so that most names are found at once.
    std::array<ElementRule*, kSlots> mRecent{};
};

}  // namespace Xml
