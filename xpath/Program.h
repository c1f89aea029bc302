#pragma once

#include <cstddef>
#include <memory_resource>
#include <string>
#include <vector>

#include "VexXml/XPath.h"
#include "xpath/ExpressionText.h"

namespace Xml {

/// What a name must be like.
struct NameTest {
    enum class Form {
        Any,        ///< `*`
        LocalName,  ///< `*:item`
        Prefix,     ///< `ns:*`
        WholeName   ///< `item` or `ns:item`
    };
    Form form = Form::Any;
    /// In UTF-8. LocalName: ":item", Prefix: "ns:", WholeName: the name.
    std::string name;
    /// WholeName only: the text that nodes share if they have that name and share its text.
    const std::string* sharedName = nullptr;
};

struct NodeTest {
    XPath::KindTest kind = XPath::NoKind;
    NameTest name;
};

/// A predicate of a step.
struct Predicate {
    Piece text;                  ///< without its brackets
    std::size_t expression = 0;  ///< in `Program::expressions`
};

/// One step of a location path.
struct Step {
    explicit Step(std::pmr::memory_resource* memory) : predicates(memory) {}

    std::size_t number = 0;  ///< among all steps of the program
    /// 1 for the first step of a path, and one more for each slash behind that. In a predicate
    /// paths begin one above the step that the predicate belongs to.
    unsigned long level = 0;
    bool afterDoubleSlash = false;
    XPath::Axis axis = XPath::NoAxis;
    NodeTest test;
    Uni16View testText;  ///< the node test as the expression has it
    std::pmr::vector<Predicate> predicates;
};

/// One operand of an expression.
struct Operand {
    explicit Operand(std::pmr::memory_resource* memory) : steps(memory) {}

    enum class Kind {
        Literal,       ///< `'text'`
        Number,        ///< `12.5`
        Position,      ///< `position()`
        Last,          ///< `last()`
        AbsolutePath,  ///< `/menu/dish`, from the document; `/` is the document itself
        RelativePath   ///< `dish/@name`, from each context item
    };
    Kind kind = Kind::RelativePath;
    Uni16View literal;             ///< Literal only, without its quotes
    std::string literalKey;        ///< Literal only: its comparison key
    double number = 0;             ///< Number only
    std::pmr::vector<Step> steps;  ///< paths only; none for `/`
    std::size_t pathNumber = 0;    ///< AbsolutePath only: among all of the program
    XPath::ExpressionOperators op = XPath::NoOperator;  ///< behind it

    /// Whether it comes to the same for every context item. It goes by what the operand is, not by
    /// what it finds.
    bool isCommon() const { return kind != Kind::Position && kind != Kind::RelativePath; }
};

/// Two operands made into one. Each of them is an operand of the expression by its index or, from
/// the number of operands on, the outcome of an earlier fold.
struct Fold {
    XPath::ExpressionOperators op;
    std::size_t left;
    std::size_t right;
    bool isCommon;  ///< both of them are
};

/// Operands, and how to fold them, in this order, into one. Never without an operand.
struct Expression {
    explicit Expression(std::pmr::memory_resource* memory) : operands(memory), folds(memory) {}

    std::pmr::vector<Operand> operands;
    std::pmr::vector<Fold> folds;
};

/// A whole expression decoded. Predicates are expressions too, kept in one list, so that neither
/// decoding nor freeing them takes call stack for each level. The first is the whole expression.
/// Texts in it refer to the text of the expression.
struct Program {
    /// All that is in the program is taken from `memory`, which must outlive it: most programs are
    /// so small that allocating their parts one by one would take longer than their evaluation.
    explicit Program(std::pmr::memory_resource* memory) : expressions(memory) {}

    std::pmr::memory_resource* memory() const { return expressions.get_allocator().resource(); }

    std::pmr::vector<Expression> expressions;
    std::size_t stepCount = 0;
    std::size_t absolutePathCount = 0;
};

}  // namespace Xml
