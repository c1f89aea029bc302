#pragma once

/// How the items of a query are read as texts and numbers, compared and computed with.

#include "support/ReferenceXPathWalk.h"

namespace support::xpath {

Query::ResultItem textItem(const Text& text);
Query::ResultItem numberItem(double number);
Query::ResultItem booleanItem(bool flag);

/// Appends `more`, each with that tag.
void append(Items& items, const Items& more, int tag);
/// Those that belong to the context node of that index.
Items belongingTo(const Items& items, bool isForAll, std::size_t index);
/// The position, from 1, of the item at `index`, from 0.
std::size_t positionOf(std::size_t index, std::size_t count, bool isReverse);

Text toText(const Query::ResultItem& item);
double toNumber(const Query::ResultItem& item);

/// Whether it is one of the six operators that compare.
bool isComparison(Query::ExpressionOperators op);
bool compare(const Query::ResultItem& left, const Query::ResultItem& right,
             Query::ExpressionOperators op);
double calculate(const Query::ResultItem& left, const Query::ResultItem& right,
                 Query::ExpressionOperators op);

}  // namespace support::xpath
