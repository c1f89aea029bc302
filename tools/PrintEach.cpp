#include "tools/PrintEach.h"

#include <algorithm>

#include "tools/Place.h"
#include "tools/Reading.h"

namespace tools {

Status printEach(const std::vector<std::string>& inputs, const Xml::ReadLimits& limits,
                 const std::function<void(const Xml::Element&, BlockWriter&)>& print) {
    BlockWriter out;
    Status worst = Success;
    for (const std::string& input : inputs) {
        const DocumentReading reading = readDocument(input, limits, OwnDtd::Ignored);
        worst = std::max(worst, reading.status);
        if (reading.status != Success) continue;
        if (inputs.size() > 1) out.write(harmless(input) + ":\n");
        print(*reading.document->getRoot(), out);
        out.flush();
        if (out.hasFailed()) return Trouble;
    }
    return worst;
}

}  // namespace tools
