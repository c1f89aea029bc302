#include <algorithm>
#include <atomic>
#include <cstdio>
#include <sstream>
#include <string>

#include "VexXml/Values.h"

namespace Xml {
namespace {

std::atomic<int> floatPrecision{2};

// No `double` has more digits behind its point; zeros at the end are dropped anyway.
constexpr int kMostDigits = 1074;

// What cannot be read leaves 0 and what is too large the nearest limit, as extraction does it.
template <typename Number>
Number extract(const std::string& text) {
    std::istringstream in(text);
    Number number = 0;
    in >> number;
    return number;
}

// Empty when it cannot be written.
std::string inFixedNotation(double number, int precision) {
    const int size = std::snprintf(nullptr, 0, "%.*f", precision, number);
    if (size < 0) return {};
    std::string text(static_cast<std::size_t>(size), '\0');
    std::snprintf(text.data(), text.size() + 1, "%.*f", precision, number);
    return text;
}

}  // namespace

int toInt(const std::string& text) { return extract<int>(text); }

double toDouble(const std::string& text) { return extract<double>(text); }

std::string toString(int number) { return std::to_string(number); }

std::string toString(double number) {
    std::string text = inFixedNotation(number, std::min(getFloatPrecision(), kMostDigits));
    // Without a point the zeros of a whole number go too, deliberately: callers compare these
    // texts.
    while (text.size() > 1 && text.back() == '0') text.pop_back();
    if (!text.empty() && text.back() == '.') text.pop_back();
    return text.empty() ? "0" : text;
}

int setFloatPrecision(int digits) {
    return digits >= 0 ? floatPrecision.exchange(digits) : getFloatPrecision();
}

int getFloatPrecision() { return floatPrecision.load(std::memory_order_relaxed); }

}  // namespace Xml
