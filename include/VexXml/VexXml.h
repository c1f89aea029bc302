#pragma once

/// The whole library.

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "VexXml/Values.h"
#include "VexXml/XPath.h"
