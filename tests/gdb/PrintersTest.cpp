#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <ostream>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/TempFolder.h"

namespace {

struct Shown {
    const char* expression;
    const char* text;  ///< with PLACE for each address
};

/// What the program has each time that it stops.
const std::vector<std::vector<Shown>> kStops = {
    {
        {"empty", R"("")"},
        {"few", R"("salt & pepper")"},
        {"full", R"("fifteen letters")"},
        {"many", R"('x' <repeats 60 times>, "and more")"},
        {"withNul", R"("a\000b")"},
        {"wide", R"("10 € 🍞")"},
    },
    {
        {"document", R"(document <menu> = {root = PLACE <menu>})"},
        {"*root", R"(<menu> = {[0] = PLACE <dish id="soup" price="4">, [1] = PLACE "of the day", )"
                  R"([2] = PLACE <dish>})"},
        {"root", R"(PLACE <menu>)"},
        {"dish", R"(PLACE <dish id="soup" price="4">)"},
        {"soup", R"(<dish id="soup" price="4"> = {[0] = PLACE "Soup &amp; bread"})"},
        {"none", "0x0"},
        {"*price", R"(price="4")"},
        {"text", R"("of the day")"},
        {"derived", R"(<derived>)"},
        {"&derived", R"(PLACE <derived>)"},
        {"only", R"(<only size="groß,\ttall"> = {[0] = PLACE "child"})"},
        {"noDocument", "document without a root = {root = 0x0}"},
        {"cut", R"(PLACE ")"
                "0123456789012345678901234567890123456789"
                R"(01234567890123456789...")"},
        {"astray", "PLACE"},
    },
    {
        {"some", R"(<some a0="0" a1="1" a2="2" a3="3" a4="4" a5="5" a6="6" a7="7" ...>)"},
        {"many", R"(<many a0="0" a1="1" a10="10" a100="100" a101="101" a102="102" a103="103" )"
                 R"(a104="104" ...>)"},
    },
};

std::string script() {
    std::string text =
        "set pagination off\nset width 0\nset debuginfod enabled off\nset host-charset UTF-8\n"
        "source " VEXXML_PRINTERS "\nbreak look\nrun\n";
    for (const std::vector<Shown>& stop : kStops) {
        text += "up\n";
        for (const auto& [expression, shown] : stop)
            text.append("print ").append(expression) += '\n';
        text += "continue\n";
    }
    return text;
}

// What is shown for each expression, one after the other.
std::vector<std::string> session() {
    const support::TempFolder folder;
    const std::string command = "LSAN_OPTIONS=detect_leaks=0 gdb --nx --batch --command='" +
                                folder.write("script", script()) + "' " VEXXML_SHOWN " 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
    pclose(pipe);
    std::vector<std::string> values;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_search(line, std::regex(R"(^\$\d+ = )"))) values.push_back(line);
    }
    EXPECT_FALSE(values.empty()) << output;
    return values;
}

// Without the number, the type in front of a reference, and addresses.
std::string comparable(const std::string& value) {
    const std::string bare = std::regex_replace(value, std::regex(R"(^\$\d+ = (\([^)]*\) )?)"), "");
    return std::regex_replace(bare, std::regex("0x[0-9a-f]{2,}"), "PLACE");
}

TEST(Printers, ShowWhatNodesAndTextsHold) {
    const std::vector<std::string> values = session();
    std::size_t next = 0;
    for (const std::vector<Shown>& stop : kStops) {
        for (const auto& [expression, shown] : stop) {
            ASSERT_LT(next, values.size()) << expression;
            EXPECT_EQ(comparable(values[next++]), shown) << expression;
        }
    }
    EXPECT_EQ(next, values.size());
}

}  // namespace
