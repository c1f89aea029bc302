// feed: builds an Atom feed and writes it to the standard output.

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/VexXml.h"

namespace {

struct Article {
    std::string title;
    std::string address;
    std::string updated;
    std::string summary;
};

std::unique_ptr<Xml::Element> entryFor(const Article& article) {
    auto entry = std::make_unique<Xml::Element>("entry");
    entry->addElement("title", article.title);
    entry->addElement("id", article.address);
    auto link = std::make_unique<Xml::Element>("link");
    link->setAttribute("href", article.address);
    entry->addChild(link.release());
    entry->addElement("updated", article.updated);
    entry->addElement("summary", article.summary);
    return entry;
}

Xml::Document feedOf(const std::vector<Article>& articles) {
    Xml::Document document(new Xml::Element("feed"));
    Xml::Element& feed = *document.getRoot();
    feed.setAttribute("xmlns", "http://www.w3.org/2005/Atom");
    feed.addElement("title", "Kitchen notes");
    feed.addElement("id", "https://example.org/notes/");
    feed.addElement("updated", articles.front().updated);
    for (const Article& article : articles) feed.addChild(entryFor(article).release());
    return document;
}

}  // namespace

int main() {
    const std::vector<Article> articles = {
        {"Bread & butter", "https://example.org/notes/2", "2026-03-02T08:00:00Z",
         "Why \"less than an hour\" (< 1 h) is too short."},
        {"Soup", "https://example.org/notes/1", "2026-03-01T08:00:00Z", "Start with cold water."},
    };
    Xml::Document feed = feedOf(articles);
    Xml::FileOutStream out(&std::cout);
    feed.toStream(out);
    std::cout.flush();
    return std::cout.good() ? 0 : 1;
}
