#include <FolderSizes/EntryRow.h>

namespace FolderSizes::EntryRowTests {
namespace {

using namespace RVCore;

std::vector<std::string> texts(EntryRow& row)
{
    std::vector<std::string> result;
    for (const auto& cell : row.views()) {
        const auto& content = static_cast<RVGroupView&>(*cell).views()[0];
        const auto* text = dynamic_cast<const NSTextField*>(content.get());
        result.push_back(text ? text->stringValue() : "(bar)");
    }
    return result;
}

TEST(EntryRow, showsAnEntryInItsFiveCells)
{
    auto row = make<EntryRow>();
    row->show({.name = "notes.txt", .kind = EntryKind::file, .size = 2500}, 10000);
    EXPECT_EQ(texts(*row), (std::vector<std::string>{"notes.txt", "File", "2.5 kB", "(bar)", "25 %"}));
}

TEST(EntryRow, saysNothingOfTheSizeOfWhatCannotBeRead)
{
    auto row = make<EntryRow>();
    row->show({.name = "closed", .kind = EntryKind::folder, .isComplete = false}, 10000);
    EXPECT_EQ(texts(*row), (std::vector<std::string>{"closed", "Folder, not read", "–", "(bar)", "–"}));
}

} // namespace
} // namespace FolderSizes::EntryRowTests
