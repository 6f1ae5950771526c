#include <Contacts/ContactFile.h>
#include <Examples/TemporaryFolder.h>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace Contacts::ContactFileTests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class ContactFile : public testing::Test {
protected:
    void put(const std::string& text) const { std::ofstream(m_path, std::ios::binary) << text; }
    std::string bytes() const
    {
        std::ifstream stream(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    // What reading reports of this text; the file must stay as it was.
    std::string problemWith(const std::string& text) const
    {
        put(text);
        try {
            readContacts(m_path);
        } catch (const ContactFileError& error) {
            EXPECT_EQ(bytes(), text);
            EXPECT_THAT(error.what(), StartsWith("\"" + m_path.string() + "\" cannot be read: line "));
            return error.what();
        }
        return "no problem";
    }
    std::size_t fileCount() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_folder.path()), {}));
    }

    Examples::TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder.path() / "people.json";
};

TEST_F(ContactFile, thatDoesNotExistIsAnEmptyList)
{
    EXPECT_EQ(readContacts(m_path), ContactList());
}

TEST_F(ContactFile, givesBackWhatWasWritten)
{
    ContactList list;
    list.contacts = {
        {.name = "Ada \"the Countess\"\n", .email = "ada@example.org", .phone = "+44 1", .isFavourite = true},
        {.name = "Größe 漢字 \xf0\x9f\x98\x80", .kind = ContactKind::company, .colour = "#00FF7f"},
        {}};
    list.preferences = {.isSortedByName = true, .showsEmail = false, .newContactKind = ContactKind::company};
    writeContacts(m_path, list);
    EXPECT_EQ(readContacts(m_path), list);
    EXPECT_EQ(fileCount(), 1U) << "nothing is left beside it";
}

TEST_F(ContactFile, keepsWhatALaterVersionHasAdded)
{
    put(R"({"version": 1, "sorted": true, "contacts": [{"name": "Ada", "birthday": {"year": 1815}}],
            "preferences": {"zoom": 2}})");
    ContactList list = readContacts(m_path);
    list.contacts.front().name = "Ada L.";
    writeContacts(m_path, list);
    const auto written = nlohmann::json::parse(bytes());
    EXPECT_EQ(written["sorted"], true);
    EXPECT_EQ(written["contacts"][0]["birthday"]["year"], 1815);
    EXPECT_EQ(written["contacts"][0]["name"], "Ada L.");
    EXPECT_EQ(written["preferences"]["zoom"], 2);
}

TEST_F(ContactFile, mayLeaveOutWhatHasADefault)
{
    put("{}");
    EXPECT_EQ(readContacts(m_path), ContactList());
    put(R"({"contacts": [{}], "preferences": {}})");
    EXPECT_EQ(readContacts(m_path).contacts, std::vector<Contact>{Contact()});
    EXPECT_EQ(readContacts(m_path).preferences, Preferences());
}

TEST_F(ContactFile, thatIsBrokenIsReportedWithItsLine)
{
    EXPECT_THAT(problemWith(""), HasSubstr("line 1, column 1: "));
    EXPECT_THAT(problemWith("{\n\"contacts\": [\n  {\"name\": \"Ada\"\n"), HasSubstr("line 4, column 1: "));
    EXPECT_THAT(problemWith("{\n\n \"contacts\": [}\n}"), HasSubstr("line 3"));
    EXPECT_THAT(problemWith("{\"contacts\": [{\"name\": \"\xff\"}]}"), HasSubstr("line 1"));
    EXPECT_THAT(problemWith(std::string(100'000, '[')), HasSubstr("line 1"));
}

TEST_F(ContactFile, thatHoldsSomethingElseIsReportedWithItsLine)
{
    EXPECT_THAT(problemWith("\n[1, 2]"), AllOf(HasSubstr("line 2: "), HasSubstr("no JSON object")));
    EXPECT_THAT(problemWith("{\n\"contacts\": 3}"), AllOf(HasSubstr("line 2: "), HasSubstr("not a list")));
    EXPECT_THAT(problemWith("{\"contacts\": [\n{},\n7]}"), AllOf(HasSubstr("line 3: "), HasSubstr("not an object")));
    const auto withMember = [&](const std::string& member) {
        return problemWith("{\"contacts\": [{\"name\": \"Ada\",\n" + member + "\n}]}");
    };
    EXPECT_THAT(withMember("\"phone\": 5"), HasSubstr("\"phone\" is not a text: 5"));
    EXPECT_THAT(withMember("\"email\": [\"a\"]"), HasSubstr("\"email\" is not a text: [\"a\"]"));
    EXPECT_THAT(withMember("\"favourite\": \"yes\""), HasSubstr("is neither true nor false"));
    EXPECT_THAT(withMember("\"kind\": \"cat\""), HasSubstr("is neither \"person\" nor \"company\": \"cat\""));
    EXPECT_THAT(withMember("\"colour\": \"red\""), HasSubstr("is no colour"));
    EXPECT_THAT(withMember("\"colour\": \"#12345g\""), HasSubstr("is no colour"));
    EXPECT_THAT(withMember("\"phone\": 5"), HasSubstr("line 2: "));
}

TEST_F(ContactFile, withWrongPreferencesIsReportedWithItsLine)
{
    EXPECT_THAT(problemWith("{\n\"preferences\": 3}"), AllOf(HasSubstr("line 2: "), HasSubstr("no object")));
    EXPECT_THAT(problemWith("{\"preferences\": {\n\"sortedByName\": 1}}"),
                AllOf(HasSubstr("line 2: "), HasSubstr("\"sortedByName\" is neither true nor false: 1")));
    EXPECT_THAT(problemWith("{\"preferences\": {\"showsEmail\": \"no\"}}"), HasSubstr("neither true nor false"));
    EXPECT_THAT(problemWith("{\"preferences\": {\"newContactKind\": \"pet\"}}"),
                HasSubstr(R"("newContactKind" is neither "person" nor "company": "pet")"));
}

TEST_F(ContactFile, ofALaterVersionIsLeftAlone)
{
    EXPECT_THAT(problemWith("{\"version\": 2}"), HasSubstr("of version 2, and this program knows versions up to 1"));
    EXPECT_THAT(problemWith("{\"version\": \"1\"}"), HasSubstr("no number from 1 on"));
    EXPECT_THAT(problemWith("{\"version\": 0}"), HasSubstr("no number from 1 on"));
}

TEST_F(ContactFile, thatIsAFolderIsReported)
{
    std::filesystem::create_directory(m_path);
    try {
        readContacts(m_path);
        ADD_FAILURE() << "a folder was read";
    } catch (const ContactFileError& error) {
        EXPECT_THAT(error.what(), HasSubstr("it is no file"));
    }
}

TEST_F(ContactFile, thatIsLongIsReadInProportionToItsLength)
{
    constexpr std::size_t count = 100'000;
    std::string text = R"({"contacts": [{})";
    for (std::size_t i = 1; i < count; ++i)
        text += ", {}";
    put(text + "]}");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(readContacts(m_path).contacts.size(), count);
    // It takes less than a second. To look at all contacts again after each one would take minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

TEST_F(ContactFile, keepsItsPermissionsAndItsLink)
{
    put("{}");
    chmod(m_path.c_str(), 0600);
    const auto link = m_folder.path() / "link.json";
    std::filesystem::create_symlink(m_path, link);
    writeContacts(link, {.contacts = {{.name = "Ada"}}});
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(readContacts(m_path).contacts.size(), 1U);
    struct stat status {};
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(ContactFile, thatCannotBeReplacedStaysWhole)
{
    std::filesystem::create_directory(m_path); // a name that no file can take
    put("");
    const auto inside = m_path / "kept";
    std::ofstream(inside) << "x";
    try {
        writeContacts(m_path, {});
        ADD_FAILURE() << "a folder was replaced";
    } catch (const ContactFileError& error) {
        EXPECT_THAT(error.what(), HasSubstr("cannot be saved: the file cannot be replaced"));
    }
    EXPECT_TRUE(std::filesystem::exists(inside));
    EXPECT_EQ(fileCount(), 1U) << "nothing is left beside it";
}

TEST_F(ContactFile, inAFolderThatIsNotThereIsReported)
{
    try {
        writeContacts(m_folder.path() / "missing" / "people.json", {});
        ADD_FAILURE() << "a file was written nowhere";
    } catch (const ContactFileError& error) {
        EXPECT_THAT(error.what(), HasSubstr("no file can be made beside it: No such file"));
    }
}

TEST_F(ContactFile, ofTextThatIsNoUtf8IsNotWritten)
{
    put("{}");
    EXPECT_THROW(writeContacts(m_path, {.contacts = {{.name = "\xff"}}}), ContactFileError);
    EXPECT_EQ(bytes(), "{}");
}

} // namespace
} // namespace Contacts::ContactFileTests
