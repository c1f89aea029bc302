#pragma once

/// The texts that people read, in their language.
///
/// A product that brings its own VexSys links that in place of this one; the XML library calls
/// nothing but what is marked as required.

#include "VexSys/Export.h"
#include "VexSys/Uni16.h"

namespace VexSys {
namespace Localization {

/// Required. The text for `key`, such as "xpat/xerr/NODE NOT FOUND", of the module that asks for
/// it, such as "XPath".
///
/// The installed translator is asked first, then the English texts that come with the library. A
/// key that neither of them knows gives `fallback`, or the key itself when that is empty.
VEXSYS_API Uni16String GetString(const char* key, const char* module, const char* fallback);

/// Gives the text for a key, or an empty one to leave it to English.
using Translator = Uni16String (*)(const char* key, const char* module);

/// Installs the translator of the whole process, or none when null, and returns the previous one.
/// It is called in the thread that asks for a text, so it may run in several at once.
VEXSYS_API Translator InstallTranslator(Translator translator);

}  // namespace Localization
}  // namespace VexSys
