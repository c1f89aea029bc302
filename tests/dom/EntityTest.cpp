#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "support/Diagnostics.h"

namespace {

TEST(Entity, IsWrittenAsAReference) {
    support::Diagnostics diagnostics;
    for (const char* name : {"copy", "_", ":", "a-b.c_d:e9"}) {
        EXPECT_EQ(Xml::Entity(name).toString(), '&' + std::string(name) + ';');
    }
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

TEST(Entity, ReportsAnInvalidNameAndKeepsIt) {
    support::Diagnostics diagnostics;
    for (const std::string name : {"", "1a", "-a", "a b", "#65", "a;", "%s"}) {
        const Xml::Entity entity(name);
        EXPECT_EQ(diagnostics.take(),
                  std::vector<std::string>{"<Xml::Entity::Entity> not a valid name: " + name});
        EXPECT_EQ(entity.toString(), '&' + name + ';');
    }
}

TEST(Entity, ReportsANameOfAnyLengthWhole) {
    support::Diagnostics diagnostics;
    const std::string name(5000, ' ');
    const Xml::Entity entity(name);
    EXPECT_EQ(diagnostics.take(),
              std::vector<std::string>{"<Xml::Entity::Entity> not a valid name: " + name});
}

TEST(Entity, CopiesByValue) {
    const Xml::Entity source("copy");
    Xml::Entity target("reg");
    target.toString();
    target = source;
    EXPECT_EQ(target.toString(), "&copy;");
    EXPECT_EQ(Xml::Entity(source).toString(), "&copy;");
}

TEST(Entity, IsEmptyOnceMovedFrom) {
    const auto source = std::make_unique<Xml::Entity>("copy");
    const auto target = std::make_unique<Xml::Entity>(std::move(*source));
    EXPECT_EQ(target->toString(), "&copy;");
    EXPECT_EQ(source->toString(), "&;");
    *source = std::move(*target);
    EXPECT_EQ(source->toString(), "&copy;");
    EXPECT_EQ(target->toString(), "&;");
}

TEST(Entity, StaysAsItIsWhenMovedOntoItself) {
    Xml::Entity entity("e");
    Xml::Entity& same = entity;
    entity = std::move(same);
    EXPECT_EQ(entity.toString(), "&e;");
}

}  // namespace
