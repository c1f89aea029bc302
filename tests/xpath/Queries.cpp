#include "xpath/Queries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <utility>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"

namespace xpath {
namespace {

namespace fs = std::filesystem;

using Xml::XPath;

std::unique_ptr<Xml::Document> parsed(Xml::InStream& in) {
    Xml::DocumentReader reader;
    EXPECT_TRUE(reader.parse(in)) << reader.getErrorMessage();
    return std::unique_ptr<Xml::Document>(reader.extractDocument());
}

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    if (begin == std::string::npos) return "";
    return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

/// The piece in front of the mark, which is cut off `text` together with the mark.
std::string cutPiece(std::string& text, const std::string& mark) {
    const std::size_t end = text.find(mark);
    std::string piece = text.substr(0, end);
    text = end == std::string::npos ? "" : text.substr(end + mark.size());
    return trimmed(piece);
}

/// The text with bytes in place of its escapes.
std::string unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\') {
            plain += text[at];
            continue;
        }
        const char kind = text[++at];
        if (kind == 'x') {
            plain += static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16));
            at += 2;
        } else {
            plain += kind == 't' ? '\t' : kind == 'n' ? '\n' : kind == 'r' ? '\r' : ' ';
        }
    }
    return plain;
}

/// Reads one file of queries.
class QueryFile {
public:
    explicit QueryFile(const fs::path& path) : mPath(path) {
        std::ifstream text(path);
        std::string line;
        for (int number = 1; std::getline(text, line); ++number) take(line, number);
    }

    std::vector<QueryLine> lines;

private:
    void take(std::string line, int number) {
        if (line.empty() || line.front() == '#') return;
        if (line.rfind("in ", 0) == 0 && line.find(" => ") == std::string::npos) {
            begin(line.substr(3));
            return;
        }
        QueryLine& query = lines.emplace_back();
        query.place = mPath.filename().string() + ":" + std::to_string(number);
        EXPECT_NE(line.find(" => "), std::string::npos) << query.place;
        query.document = mDocument;
        query.before = mBefore;
        query.expression = unescaped(cutPiece(line, " => "));
        query.answer = unescaped(trimmed(line));
    }

    void begin(std::string line) {
        const std::string name = cutPiece(line, " from ");
        std::shared_ptr<Xml::Document>& document = mDocuments[name];
        if (!document) {
            std::ifstream file;
            Xml::FileInStream in((mPath.parent_path() / name).string(), &file);
            document = parsed(in);
        }
        mDocument = document;
        mBefore.clear();
        while (!line.empty()) mBefore.push_back(unescaped(cutPiece(line, ";")));
    }

    fs::path mPath;
    std::map<std::string, std::shared_ptr<Xml::Document>> mDocuments;
    std::shared_ptr<Xml::Document> mDocument;
    std::vector<std::string> mBefore;
};

std::vector<QueryLine> readQueryLines() {
    std::vector<fs::path> paths;
    for (const fs::directory_entry& entry : fs::directory_iterator(VEXXML_TEST_QUERIES)) {
        if (entry.path().extension() == ".txt") paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    std::vector<QueryLine> all;
    for (const fs::path& path : paths) {
        for (QueryLine& line : QueryFile(path).lines) all.push_back(std::move(line));
    }
    return all;
}

std::string textOf(const Xml::DataHolder& data) {
    return {data.toCString(), static_cast<std::size_t>(data.getSize())};
}

std::string nameOf(Xml::Object& node) {
    if (node.isDocument()) return "/";
    if (node.isCharData()) return '"' + textOf(node.toCharData()->getData()) + '"';
    if (node.isAttribute()) {
        const Xml::Attribute& attribute = *node.toAttribute();
        return "@" + attribute.getName() + "=" + textOf(attribute.getValue());
    }
    const Xml::Element& element = *node.toElement();
    const Xml::Attribute* id = element.getAttribute("id");
    return element.getName() + (id != nullptr ? "#" + textOf(id->getValue()) : "");
}

std::string nameOf(XPath& query, unsigned long index) {
    const XPath::ResultItem item = query.GetResults()[index];
    if (item.tag != -1) ADD_FAILURE() << "result " << index << " has the tag " << item.tag;
    switch (item.kind) {
        case XPath::Node:
            return nameOf(*item.node);
        case XPath::String:
            return "'" + query.GetValueUTF8(index) + "'";
        case XPath::Number:
            return query.GetValueUTF8(index);
        default:
            return item.flag ? "true" : "false";
    }
}

}  // namespace

XPath QueryLine::query() const {
    XPath query(document.get());
    for (const std::string& earlier : before) query.GetValues(earlier);
    return query;
}

const std::vector<QueryLine>& queryLines() {
    static const std::vector<QueryLine> kAll = readQueryLines();
    return kAll;
}

std::string errorOf(const XPath& query) {
    if (query.GetErrorCode() == XPath::NoError) return "";
    const std::string detail = VexSys::Uni16CharToUTF8(query.GetErrorDetail());
    return "error " + std::to_string(query.GetErrorCode()) + (detail.empty() ? "" : ": ") + detail;
}

std::string answerOf(XPath& query, unsigned long count) {
    if (query.GetErrorCode() != XPath::NoError) {
        if (count != 0) ADD_FAILURE() << "an error and " << count << " results";
        return errorOf(query);
    }
    EXPECT_EQ(query.GetNrOfResults(), count);
    EXPECT_TRUE(query.GetErrorDetail().empty());
    if (count == 0) return "nothing";
    std::string answer;
    for (unsigned long i = 0; i < count; ++i) answer += (i > 0 ? " " : "") + nameOf(query, i);
    return answer;
}

std::string answerTo(XPath& query, const std::string& expression) {
    const unsigned long count = query.GetValues(expression);
    return answerOf(query, count);
}

std::unique_ptr<Xml::Document> parsed(const std::string& text) {
    Xml::StringInStream in(text);
    return parsed(in);
}

}  // namespace xpath
