#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/Play.h"

// Long random sequences of everything that touches, binds and writes, done to real nodes and to the
// model alike. The library takes shortcuts on these paths, none of which may ever show.

namespace {

using Steps = std::vector<unsigned>;

// What differs first when the steps are played; empty when nothing does. Cuts off the steps behind.
std::string firstDifference(Steps& steps, std::string* story = nullptr) {
    model::Play play;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        play.step(steps[i]);
        std::string difference = play.difference();
        if (difference.empty()) continue;
        steps.resize(i + 1);
        if (story != nullptr) *story = play.story();
        return difference;
    }
    return "";
}

// Tries to do without each run of so many steps.
void dropRuns(Steps& steps, std::size_t length) {
    for (std::size_t start = 0; start < steps.size();) {
        const auto first = static_cast<std::ptrdiff_t>(start);
        const auto last = static_cast<std::ptrdiff_t>(std::min(start + length, steps.size()));
        Steps fewer = steps;
        fewer.erase(fewer.begin() + first, fewer.begin() + last);
        if (firstDifference(fewer).empty()) {
            ++start;
        } else {
            steps = fewer;
        }
    }
}

// Drops the steps that the difference does not need, so that the story can be read.
void shorten(Steps& steps) {
    std::size_t before = 0;
    do {
        before = steps.size();
        for (std::size_t length = before; length > 0; length /= 2) dropRuns(steps, length);
    } while (steps.size() < before);
}

void expectAgreement(unsigned seed, std::size_t length) {
    std::mt19937 random(seed);
    Steps steps(length);
    for (unsigned& step : steps) step = static_cast<unsigned>(random());
    if (firstDifference(steps).empty()) return;
    shorten(steps);
    std::string story;
    const std::string difference = firstDifference(steps, &story);
    FAIL() << "seed " << seed << ":\n" << story << "so " << difference;
}

TEST(Tree, AgreesWithTheModelOverManyShortStories) {
    for (unsigned seed = 0; seed < 2000 && !HasFatalFailure(); ++seed) expectAgreement(seed, 25);
}

TEST(Tree, AgreesWithTheModelOverLongStories) {
    for (unsigned seed = 0; seed < 400 && !HasFatalFailure(); ++seed) expectAgreement(seed, 500);
}

}  // namespace
