#pragma once

#include "VexXml/Values.h"

namespace faults {

/// While it lives nothing is reported: whoever collects reports needs memory too.
class Quiet {
public:
    Quiet() : mPrevious(Xml::Message::disableOutput(false)) {}
    ~Quiet() { Xml::Message::disableOutput(mPrevious); }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    bool mPrevious;
};

}  // namespace faults
