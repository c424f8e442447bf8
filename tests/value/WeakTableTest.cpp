// The table of what cards share: found by hash and then by content, kept no
// longer than something holds it.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "value/WeakTable.h"

using Mero::WeakTable;

namespace {

using Held = std::shared_ptr<const std::string>;

Held find(const WeakTable<std::string>& table, std::size_t hash, const std::string& text)
{
    std::vector<Held> looked;
    return table.find(
        hash, [&text](const std::string& held) { return held == text; }, looked);
}

}  // namespace

// A text made, let go and made again many times keeps one entry, and leaves
// the live entry under its hash alone.
TEST(WeakTable, AnEntryNothingHoldsMakesRoomForTheNextUnderItsHash)
{
    WeakTable<std::string> table;
    const Held kept = std::make_shared<const std::string>("kept");
    table.add(7, kept);
    for (int round = 0; round < 100; ++round) {
        table.add(7, std::make_shared<const std::string>("again"));
    }
    EXPECT_EQ(table.size(), 2U);
    EXPECT_EQ(find(table, 7, "kept"), kept);
}
