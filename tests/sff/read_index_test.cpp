#include "sff/read_index.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pelkrin {
namespace {

TEST(ReadIndex, LaterSettingOfANameWins) {
    read_index index;
    index.set("b", 10);
    index.set("a", 20);
    index.set("b", 30);
    index.set("c", 40);
    index.set("b", 50);
    EXPECT_EQ(index.size(), 3u);
    EXPECT_EQ(index.at("b"), 50);
    EXPECT_EQ(index.at("a"), 20);
}

TEST(ReadIndex, IteratesInByteOrderOfNames) {
    read_index index;
    for (const char* name : {"readB", "read", "readA", "Zeta", "read\x7f"}) index.set(name, 1);
    std::vector<std::string> names;
    for (const auto& [name, position] : index) names.push_back(name);
    EXPECT_EQ(names, (std::vector<std::string>{"Zeta", "read", "readA", "readB", "read\x7f"}));
    EXPECT_EQ(index.rbegin()->first, "read\x7f");
}

TEST(ReadIndex, SubscriptOfAMissingNameMakesPositionZero) {
    read_index index;
    index.set("x", 99);
    EXPECT_EQ(index["missing"], 0);
    EXPECT_EQ(index.size(), 2u);
    EXPECT_EQ(index.count("missing"), 1u);
    index["x"] = 7;
    EXPECT_EQ(index.at("x"), 7);
}

TEST(ReadIndex, SettingAfterLookingUpStillWins) {
    read_index index;
    index.set("a", 1);
    EXPECT_EQ(index.at("a"), 1);
    index.set("a", 2);
    index.set("0", 3);
    EXPECT_EQ(index.at("a"), 2);
    EXPECT_EQ(index.begin()->first, "0");
    EXPECT_EQ(index.size(), 2u);
}

TEST(ReadIndex, PositionOfFindsEveryEntryAndGivesZeroForMissingNames) {
    read_index index;
    for (int i = 0; i < 5000; ++i) index.set("read" + std::to_string(i * 7), i + 1);
    for (int i = 0; i < 5000; ++i) ASSERT_EQ(index.position_of("read" + std::to_string(i * 7)), i + 1);
    EXPECT_EQ(index.position_of("read1"), 0);
    EXPECT_EQ(index.position_of(""), 0);
    EXPECT_EQ(index.size(), 5000u) << "looking up makes no entry";
}

TEST(ReadIndex, PositionOfSeesLaterChanges) {
    read_index index;
    index.set("a", 1);
    EXPECT_EQ(index.position_of("a"), 1);
    index.set("a", 2);
    index.set("b", 3);
    EXPECT_EQ(index.position_of("a"), 2);
    EXPECT_EQ(index.position_of("b"), 3);
    index["c"] = 4;
    EXPECT_EQ(index.position_of("c"), 4);
}

TEST(ReadIndex, PositionOfTakesTheLastSettingWithoutSorting) {
    read_index index;
    index.set("a", 1);
    index.set("b", 2);
    index.set("a", 3);
    EXPECT_EQ(index.position_of("a"), 3);
    EXPECT_EQ(index.position_of("b"), 2);
    // Sorted once by iterating, then set again: the newer setting still wins.
    EXPECT_EQ(index.begin()->first, "a");
    index.set("b", 5);
    index.set("a", 6);
    index.set("b", 7);
    EXPECT_EQ(index.position_of("a"), 6);
    EXPECT_EQ(index.position_of("b"), 7);
    index["a"] = 8;  // an existing entry changed in place
    EXPECT_EQ(index.position_of("a"), 8);
    EXPECT_EQ(index.size(), 2u);
}

TEST(ReadIndex, PositionsOfManyNamesAnswerAsOneByOne) {
    read_index index;
    for (int i = 0; i < 3000; ++i) index.set("read" + std::to_string(i * 3), i + 1);
    index.set("read0", 777);  // set again: the later setting wins here too
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i) names.push_back("read" + std::to_string(i * 7 % 4000));
    names.push_back("");
    names.push_back("read0");
    const std::vector<std::string_view> views(names.begin(), names.end());
    std::vector<std::int64_t> positions(views.size(), -5);
    index.positions_of(views, positions);
    std::size_t found = 0;
    for (std::size_t i = 0; i < views.size(); ++i) {
        ASSERT_EQ(positions[i], index.position_of(views[i])) << views[i];
        found += positions[i] != 0;
    }
    EXPECT_EQ(positions.back(), 777);
    EXPECT_GT(found, 300u);  // a third of the names are multiples of 3
    EXPECT_LT(found, views.size() - 100) << "some names are missing and give 0";
}

// The hash table is filled a batch of names at a time: a name set twice in one
// batch, or in two, keeps its last setting, as a map that is assigned in order.
TEST(ReadIndex, LookUpsAgreeWithAMapAssignedInOrder) {
    read_index index;
    std::map<std::string, std::int64_t> model;
    std::int64_t setting = 0;
    const auto set = [&](int n) {
        const std::string name = std::string("r").append(std::to_string(n));
        index.set(name, ++setting);
        model[name] = setting;
    };
    for (int i = 0; i < 5000; ++i) {
        set(i);
        if (i % 10 == 9) set(i - 3);    // again a few settings later: the same batch
        if (i % 100 == 99) set(i - 50);  // again dozens of settings later: another batch
    }
    for (const auto& [name, position] : model) ASSERT_EQ(index.position_of(name), position) << name;
    EXPECT_EQ(index.position_of("r-missing"), 0);
    EXPECT_EQ(index.size(), model.size());
}

TEST(ReadIndex, AtOfAMissingNameThrows) {
    read_index index;
    EXPECT_THROW(index.at("none"), std::out_of_range);
    EXPECT_EQ(index.count("none"), 0u);
    EXPECT_TRUE(index.empty());
}

TEST(ReadIndex, EqualityComparesEntries) {
    read_index a, b;
    a.set("x", 1);
    a.set("y", 2);
    b.set("y", 2);
    b.set("x", 5);
    b.set("x", 1);
    EXPECT_TRUE(a == b);
    b.set("y", 3);
    EXPECT_FALSE(a == b);
}

}  // namespace
}  // namespace pelkrin
