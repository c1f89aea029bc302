#pragma once

#include <initializer_list>
#include <iostream>
#include <memory>
#include <string>

#include "VexXml/VexXml.h"

/// The pieces of code that a chapter of the handbook shows. Each stands in its source between two
/// lines "//! [name]"; what it prints stands behind it in the chapter.
struct Snippet {
    const char* name;
    void (*run)();
};

/// Runs them one after the other, with a line in front of what each prints that names it.
inline void runAll(std::initializer_list<Snippet> snippets) {
    std::cout << std::boolalpha
              << std::unitbuf;  // unbuffered: what goes to std::cerr comes in its place
    for (const Snippet& snippet : snippets) {
        std::cout << "=== " << snippet.name << '\n';
        snippet.run();
    }
}

/// The document that the text is; null, which is told, when it cannot be read.
inline std::unique_ptr<Xml::Document> read(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    if (reader.parse(in)) return std::unique_ptr<Xml::Document>(reader.extractDocument());
    std::cout << reader.getErrorMessage() << '\n';
    return nullptr;
}
