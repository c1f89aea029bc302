#include <iostream>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

//! [guard]
// Writes numbers with so many digits behind the point while it lives.
class FloatPrecision {
public:
    explicit FloatPrecision(int digits) : mBefore(Xml::setFloatPrecision(digits)) {}
    ~FloatPrecision() { Xml::setFloatPrecision(mBefore); }
    FloatPrecision(const FloatPrecision&) = delete;
    FloatPrecision& operator=(const FloatPrecision&) = delete;

private:
    int mBefore;
};
//! [guard]

void guarded() {
    //! [guarded]
    Xml::Element circle("circle");
    {
        const FloatPrecision precise(4);
        circle.setAttribute("r", 3.14159265);
    }
    std::cout << circle.toString() << '\n' << Xml::toString(3.14159265) << '\n';
    //! [guarded]
}

void messages() {
    //! [messages]
    const bool before = Xml::Message::disableOutput(false);  // false: nothing is output
    Xml::Element dish("no name");
    std::cout << Xml::Message::getLastMessage() << '\n';
    Xml::Message::disableOutput(before);
    //! [messages]
}

}  // namespace

int main() { runAll({{"guarded", guarded}, {"messages", messages}}); }
