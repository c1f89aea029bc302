#pragma once

#include <iostream>
#include <string>

namespace Bench {

/// Prints the fields of one JSON object.
class Fields {
public:
    Fields() { std::cout << "{"; }
    ~Fields() { std::cout << "}\n"; }
    Fields(const Fields&) = delete;
    Fields& operator=(const Fields&) = delete;

    template <class Value>
    void add(const std::string& name, const Value& value) {
        std::cout << mSeparator << '"' << name << "\": " << value;
        mSeparator = ", ";
    }

private:
    const char* mSeparator = "";
};

}  // namespace Bench
