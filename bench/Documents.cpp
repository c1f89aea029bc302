#include "bench/Documents.h"

#include <fstream>
#include <iterator>
#include <utility>

#include "bench/Generators.h"

namespace Bench {

namespace {

constexpr std::size_t kMegabyte = 1000000;

// Queries: a path of children, descendants, a predicate on an attribute, one on the position.
const Queries kRecordQueries = {"/site/item/name", "//mail", "//item[@category = 'c7']",
                                "/site/item[300]"};

DocumentInfo made(const char* name, std::string (*make)(), Use use, const Queries& queries = {}) {
    return {name, "", make, use, queries, false};
}

DocumentInfo installed(const char* name, const char* path, const Queries& queries) {
    return {name, path, nullptr, Use::All, queries, false};
}

std::vector<DocumentInfo> generated() {
    return {
        made(
            "records-1", [] { return makeRecords(kMegabyte); }, Use::All, kRecordQueries),
        made(
            "records-10", [] { return makeRecords(10 * kMegabyte); }, Use::All, kRecordQueries),
        made(
            "records-100", [] { return makeRecords(100 * kMegabyte); }, Use::Reading),
        made("flat", [] { return makeFlat(1000000); }, Use::All,
             {"/rows/row", "//row", "//row[@id = '777']", "/rows/row[500000]"}),
        made("attributes", [] { return makeAttributes(2 * kMegabyte); }, Use::All,
             {"/points/point", "//point", "//point[@fill = 'amber']", "/points/point[4000]"}),
        made("mixed", [] { return makeMixed(2 * kMegabyte); }, Use::All,
             {"/book/p/em", "//strong", "//p[@n = '777']", "/book/p[2000]"}),
        made("deep", [] { return makeDeep(2 * kMegabyte); }, Use::All,
             {"/report/section/section/section/title", "//title", "//section[@level = '45']",
              "/report/section[100]"}),
        made("chain", [] { return makeChain(200000); }, Use::AllButOutput,
             {"/level/level/level/level", "//level", "//level[@n = '7']", ""}),
        made("quotes", [] { return makeQuotes(2 * kMegabyte); }, Use::All,
             {"/play/line/b", "//b", "//line[@n = '777']", "/play/line[10000]"}),
        made(
            "valid", [] { return makeValid(2 * kMegabyte); }, Use::Validation),
    };
}

std::vector<DocumentInfo> files() {
    return {
        installed("mime-types", "/usr/share/mime/packages/freedesktop.org.xml",
                  {"/mime-info/mime-type/comment", "//glob", "//mime-type[@type = 'text/html']",
                   "/mime-info/mime-type[400]"}),
        installed("languages", "/usr/share/xml/iso-codes/iso_639-3.xml",
                  {"/iso_639_3_entries/iso_639_3_entry", "//iso_639_3_entry",
                   "//iso_639_3_entry[@type = 'E']", "/iso_639_3_entries/iso_639_3_entry[4000]"}),
        installed("keyboards", "/usr/share/X11/xkb/rules/evdev.xml",
                  {"/xkbConfigRegistry/layoutList/layout/configItem/name", "//variant",
                   "//group[@allowMultipleSelection = 'true']",
                   "/xkbConfigRegistry/layoutList/layout[50]"}),
        installed("introspection", "/usr/share/gir-1.0/GLib-2.0.gir",
                  {"/repository/namespace/function/doc", "//parameter", "//type[@name = 'gint']",
                   "/repository/namespace/function[100]"}),
        installed("icon",
                  "/usr/share/icons/Adwaita/scalable/legacy/"
                  "preferences-desktop-appearance-symbolic.svg",
                  {"/svg/g", "//g", "//g[@filter = 'url(#a)']", "/svg/g[1]"}),
    };
}

DocumentInfo withCarriageReturns(DocumentInfo info) {
    info.name += "-crlf";
    info.hasCarriageReturns = true;
    if (info.use != Use::Validation) info.use = Use::Reading;
    return info;
}

std::vector<DocumentInfo> allDocuments() {
    std::vector<DocumentInfo> all;
    for (const DocumentInfo& info : generated()) {
        all.push_back(info);
        all.push_back(withCarriageReturns(info));
    }
    for (DocumentInfo& info : files()) all.push_back(std::move(info));
    return all;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Declarations in these files hold neither "]>" nor a ">" in front of their "[".
std::string withoutDoctype(std::string text) {
    const std::size_t start = text.find("<!DOCTYPE");
    if (start == std::string::npos) return text;
    const std::size_t end = text.find_first_of("[>", start);
    const std::size_t last = text[end] == '[' ? text.find("]>", end) + 1 : end;
    return text.erase(start, last + 1 - start);
}

std::string carriageReturnsAdded(const std::string& text) {
    std::string changed;
    changed.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
        if (c == '\n') changed += '\r';
        changed += c;
    }
    return changed;
}

}  // namespace

const std::vector<DocumentInfo>& documents() {
    static const std::vector<DocumentInfo> all = allDocuments();
    return all;
}

const DocumentInfo* findDocument(const std::string& name) {
    for (const DocumentInfo& info : documents()) {
        if (info.name == name) return &info;
    }
    return nullptr;
}

bool isAvailable(const DocumentInfo& info) {
    return info.make != nullptr || std::ifstream(info.source).good();
}

std::string textOf(const DocumentInfo& info) {
    std::string text = info.make != nullptr ? info.make() : withoutDoctype(readFile(info.source));
    return info.hasCarriageReturns ? carriageReturnsAdded(text) : text;
}

}  // namespace Bench
