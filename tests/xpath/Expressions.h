#pragma once

#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace xpath {

/// Expressions, and documents for them, by chance: the same in every run.
class Expressions {
public:
    explicit Expressions(unsigned seed) : mRandom(seed) {}

    /// Of every form that there is, white space in odd places included.
    std::string wellFormed() { return expression(2); }
    /// `expression` with a few characters missing, added, replaced or moved.
    std::string mangled(std::string expression);

    /// A document of a few dozen nodes that uses the same names and values.
    std::string document() { return "<a>" + content(4) + "</a>"; }

    /// A number from 0 on.
    std::size_t below(std::size_t limit) { return mRandom() % limit; }

private:
    bool oneIn(std::size_t count) { return below(count) == 0; }
    std::string oneOf(std::initializer_list<const char*> choices);

    std::string expression(int depth);
    std::string anOperator();
    std::string operand(int depth);
    std::string number();
    std::string literal();
    std::string function();
    std::string path(int depth);
    std::string step(int depth);
    std::string axis();
    std::string nodeTest();
    std::string predicate(int depth);
    std::string condition();
    std::string white();
    std::string piece();
    std::string content(int depth);

    std::mt19937 mRandom;
};

}  // namespace xpath
