#include "app/accelerators.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quirnel {
namespace {

TEST(AcceleratorTable, IgnoresIdsOutsideTheCommandRange)
{
    AcceleratorTable table;
    EXPECT_FALSE(table.RegisterAccelerator('A', kModCtrl, 0));
    EXPECT_FALSE(table.RegisterAccelerator('B', kModCtrl, -5));
    EXPECT_FALSE(table.RegisterAccelerator('C', kModCtrl, 18026));
    EXPECT_FALSE(table.RegisterAccelerator('D', kModCtrl, 20000));
    EXPECT_TRUE(table.Entries().empty());
    EXPECT_TRUE(table.RegisterAccelerator('E', kModCtrl, 1));
    EXPECT_TRUE(table.RegisterAccelerator('F', kModCtrl, 18025));
    EXPECT_EQ(table.Entries().size(), 2u);
    EXPECT_FALSE(table.Find('A', kModCtrl));
    EXPECT_EQ(table.Find('F', kModCtrl), 18025);
}

TEST(AcceleratorTable, RefusesUnknownModifiersKeysAndSecondBindings)
{
    AcceleratorTable table;
    EXPECT_FALSE(table.RegisterAccelerator('A', 8, 100));
    EXPECT_FALSE(table.RegisterAccelerator(0x07, 0, 100));
    EXPECT_TRUE(table.RegisterAccelerator('A', kModShift | kModCtrl | kModAlt, 100));
    EXPECT_FALSE(table.RegisterAccelerator('A', kModShift | kModCtrl | kModAlt, 101));
    EXPECT_EQ(table.Find('A', kModShift | kModCtrl | kModAlt), 100);
}

struct ExpectedBinding
{
    std::string keys;
    int id;
};

TEST(MainAccelerators, BindExactlyTheseKeys)
{
    AcceleratorTable table;
    BuildMainAccelerators(table);
    const std::vector<ExpectedBinding> expected = {
        {"Ctrl+O", 11374},
        {"Ctrl+S", 11375},
        {"Ctrl+F2", 16169},
        {"Alt+F2", 16170},
        {"F2", 16171},
        {"Shift+F2", 16209},
        {"F4", 16221},
        {"Shift+F4", 16222},
        {"Alt+Insert", 16157},
        {"Ctrl+Shift+C", 16194},
        {"Ctrl+Shift+X", 16193},
        {"Ctrl+Shift+V", 16195},
        {"Ctrl+Shift+Alt+V", 16217},
        {"Alt+P", 16150},
        {"Ctrl+Enter", 16161},
        {"Alt+Delete", 16160},
        {"Alt+PageUp", 11299},
        {"Alt+PageDown", 11300},
        {"Alt+Up", 11299},
        {"Alt+Down", 11300},
        {"Ctrl+F4", 11140},
        {"Ctrl+Shift+N", 16181},
        {"Ctrl+N", 16182},
    };
    ASSERT_EQ(table.Entries().size(), expected.size());
    std::set<std::pair<int, int>> keys;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const Accelerator& a = table.Entries()[i];
        EXPECT_EQ(ShortcutText(a.keyCode, a.modifiers), expected[i].keys);
        EXPECT_EQ(a.id, expected[i].id) << expected[i].keys;
        EXPECT_TRUE(keys.insert({a.keyCode, a.modifiers}).second);
    }
}

TEST(ShortcutText, NamesKeysInMenuOrder)
{
    EXPECT_EQ(ShortcutText(key::kF4, kModShift), "Shift+F4");
    EXPECT_EQ(ShortcutText(key::kPageDown, kModAlt), "Alt+PageDown");
    EXPECT_EQ(ShortcutText('7', 0), "7");
    EXPECT_EQ(ShortcutText(0x07, kModCtrl), "");
}

} // namespace
} // namespace quirnel
