#pragma once

#include "VexXml/Readers.h"

namespace tools {

class Command;

/// What is accepted of documents unless the user says otherwise: what nearly all documents keep to,
/// and files to be read with them from the current folder only.
Xml::ReadLimits usualLimits();

/// Adds the options by which the user says otherwise.
void addLimitOptions(Command& command, Xml::ReadLimits& limits);

}  // namespace tools
