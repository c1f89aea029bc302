#pragma once

/// Documents to be asked of.

#include <memory>

#include "VexXml/Dom.h"

namespace Bench {

/// Records side by side: <r><a id="7"><b>7</b><c/></a>…</r>
std::unique_ptr<Xml::Document> makeFlatDocument(int records);
/// Records one inside another: <r><a id="0"><b>0</b><a id="1">…</a><c/></a></r>
std::unique_ptr<Xml::Document> makeDeepDocument(int levels);

}  // namespace Bench
