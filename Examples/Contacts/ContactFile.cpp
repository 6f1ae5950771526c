#include <Contacts/ContactFile.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Contacts {

namespace {

using nlohmann::json;

constexpr int knownVersion = 1;
constexpr mode_t newFileMode = 0644;

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& reason)
{
    throw ContactFileError("\"" + path.string() + "\" " + reason);
}

[[noreturn]] void failForSystem(const std::filesystem::path& path, const std::string& reason)
{
    fail(path, reason + ": " + std::strerror(errno));
}

// The bytes of a file, and the line of the last sign in it that has been read. White space is not counted as one, for
// the parser looks behind a number before it knows that it ends.
struct Source {
    std::string bytes;
    int line = 1;
    int newlinesBehind = 0;
};

class SourceIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    SourceIterator(Source& source, const char* place) : m_source(&source), m_place(place) {}
    reference operator*() const { return *m_place; }
    SourceIterator& operator++()
    {
        if (*m_place == '\n') {
            ++m_source->newlinesBehind;
        } else if (*m_place != ' ' && *m_place != '\t' && *m_place != '\r') {
            m_source->line += std::exchange(m_source->newlinesBehind, 0);
        }
        ++m_place;
        return *this;
    }
    SourceIterator operator++(int)
    {
        SourceIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const SourceIterator& other) const { return m_place == other.m_place; }
    bool operator!=(const SourceIterator& other) const { return m_place != other.m_place; }

private:
    Source* m_source;
    const char* m_place;
};

bool isColour(const std::string& text)
{
    return text.size() == 7 && text.front() == '#' &&
           std::all_of(text.begin() + 1, text.end(), [](unsigned char digit) { return std::isxdigit(digit) != 0; });
}

// What is wrong with a member of a contact or of the preferences; empty when nothing is.
std::string problemOf(const std::string& key, const json& value)
{
    if ((key == "name" || key == "email" || key == "phone") && !value.is_string())
        return "is not a text";
    if ((key == "favourite" || key == "sortedByName" || key == "showsEmail") && !value.is_boolean())
        return "is neither true nor false";
    if ((key == "kind" || key == "newContactKind") && value != "person" && value != "company")
        return R"(is neither "person" nor "company")";
    if (key == "colour" && !(value.is_string() && isColour(value.get<std::string>())))
        return "is no colour such as \"#1a2b3c\"";
    return {};
}

// Looks at values while they are read, when the line that they stand on is known. It takes what the parser finds
// piece by piece: parsing with a callback looks at all values of a list again after each one.
class Reader : public json::json_sax_t {
public:
    explicit Reader(const std::filesystem::path& path) : m_path(path) {}

    json read(std::string bytes)
    {
        m_source.bytes = std::move(bytes);
        const char* begin = m_source.bytes.data();
        const char* end = begin + m_source.bytes.size();
        json::sax_parse(SourceIterator(m_source, begin), SourceIterator(m_source, end), this);
        return std::move(m_root);
    }

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(json::number_integer_t value) override { return add(value); }
    bool number_unsigned(json::number_unsigned_t value) override { return add(value); }
    bool number_float(json::number_float_t value, const std::string&) override { return add(value); }
    bool string(std::string& value) override { return add(std::move(value)); }
    bool binary(json::binary_t& value) override { return add(std::move(value)); }
    bool start_object(std::size_t) override { return open(json::object()); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(std::string& name) override
    {
        m_member = &(*m_open.back())[name];
        (m_open.size() == 1 ? m_key : m_innerKey) = name;
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const json::exception& error) override
    {
        // "[json.exception.parse_error.101] parse error at line 3, column 5: syntax error …"
        const std::string text = error.what();
        const auto place = text.find("line ");
        fail(m_path, "cannot be read: " + (place == std::string::npos ? text : text.substr(place)));
    }

private:
    json& put(json value)
    {
        if (m_open.empty())
            return m_root = std::move(value);
        if (json& around = *m_open.back(); around.is_array())
            return around.emplace_back(std::move(value));
        return *m_member = std::move(value);
    }
    bool add(json value)
    {
        look(put(std::move(value)));
        return true;
    }
    bool open(json value)
    {
        m_open.push_back(&put(std::move(value)));
        return true;
    }
    bool close()
    {
        const json& whole = *m_open.back();
        m_open.pop_back();
        look(whole);
        return true;
    }

    void look(const json& parsed) const
    {
        const std::size_t depth = m_open.size();
        if (depth == 0 && !parsed.is_object())
            failHere("the file holds no JSON object");
        if (depth == 1 && m_key == "version")
            lookAtVersion(parsed);
        if (depth == 1 && m_key == "contacts" && !parsed.is_array())
            failHere("\"contacts\" is not a list");
        if (depth == 2 && m_key == "contacts" && !parsed.is_object())
            failHere("a contact is not an object");
        if (depth == 1 && m_key == "preferences" && !parsed.is_object())
            failHere("\"preferences\" is no object");
        if (!(depth == 3 && m_key == "contacts") && !(depth == 2 && m_key == "preferences"))
            return;
        if (const std::string problem = problemOf(m_innerKey, parsed); !problem.empty())
            failHere("\"" + m_innerKey + "\" " + problem + ": " +
                     parsed.dump(-1, ' ', false, json::error_handler_t::replace));
    }

    void lookAtVersion(const json& version) const
    {
        if (!version.is_number_integer() || version < 1)
            failHere("\"version\" is no number from 1 on");
        if (version > knownVersion)
            failHere("the file is of version " + version.dump() + ", and this program knows versions up to " +
                     std::to_string(knownVersion));
    }

    [[noreturn]] void failHere(const std::string& reason) const
    {
        fail(m_path, "cannot be read: line " + std::to_string(m_source.line) + ": " + reason);
    }

    const std::filesystem::path& m_path;
    Source m_source;
    json m_root;
    std::vector<json*> m_open; // objects and lists that are not whole yet, from the outside in
    json* m_member = nullptr;  // of the innermost object, that is to have the next value
    std::string m_key;         // of the file's object
    std::string m_innerKey;    // of a contact or of the preferences
};

const char* textOf(ContactKind kind)
{
    return kind == ContactKind::company ? "company" : "person";
}

// Takes the member out, so that what is left is what nobody knows.
template <class T> void take(json& object, const char* key, T& field)
{
    const auto place = object.find(key);
    if (place == object.end())
        return;
    field = place->get<T>();
    object.erase(place);
}

void takeKind(json& object, const char* key, ContactKind& kind)
{
    std::string text = textOf(kind);
    take(object, key, text);
    kind = text == textOf(ContactKind::company) ? ContactKind::company : ContactKind::person;
}

Contact toContact(json object)
{
    Contact contact;
    take(object, "name", contact.name);
    take(object, "email", contact.email);
    take(object, "phone", contact.phone);
    takeKind(object, "kind", contact.kind);
    take(object, "favourite", contact.isFavourite);
    take(object, "colour", contact.colour);
    contact.unknown = std::move(object);
    return contact;
}

json fromContact(const Contact& contact)
{
    json object = contact.unknown;
    object["name"] = contact.name;
    object["email"] = contact.email;
    object["phone"] = contact.phone;
    object["kind"] = textOf(contact.kind);
    object["favourite"] = contact.isFavourite;
    object["colour"] = contact.colour;
    return object;
}

Preferences toPreferences(json object)
{
    Preferences preferences;
    take(object, "sortedByName", preferences.isSortedByName);
    take(object, "showsEmail", preferences.showsEmail);
    takeKind(object, "newContactKind", preferences.newContactKind);
    preferences.unknown = std::move(object);
    return preferences;
}

json fromPreferences(const Preferences& preferences)
{
    json object = preferences.unknown;
    object["sortedByName"] = preferences.isSortedByName;
    object["showsEmail"] = preferences.showsEmail;
    object["newContactKind"] = textOf(preferences.newContactKind);
    return object;
}

// A file beside the one that it is to replace. Until then it goes away with the object.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path& target)
        : m_target(target), m_name(target.string() + ".XXXXXX"), m_file(mkstemp(m_name.data()))
    {
        if (m_file < 0)
            failForSystem(m_target, "cannot be saved: no file can be made beside it");
    }
    ~Replacement()
    {
        if (m_file >= 0)
            close(m_file);
        if (!m_isDone)
            unlink(m_name.c_str());
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    void setMode(mode_t mode) { require(fchmod(m_file, mode) == 0, "its permissions cannot be kept"); }
    void write(const std::string& bytes)
    {
        for (std::size_t written = 0; written < bytes.size();) {
            const ssize_t count = ::write(m_file, bytes.data() + written, bytes.size() - written);
            if (count < 0 && errno == EINTR)
                continue;
            require(count >= 0, "it cannot be written");
            written += static_cast<std::size_t>(count);
        }
        require(fsync(m_file) == 0, "it cannot be flushed to the disk");
        require(close(std::exchange(m_file, -1)) == 0, "it cannot be closed");
    }
    void takePlace()
    {
        require(rename(m_name.c_str(), m_target.c_str()) == 0, "the file cannot be replaced");
        m_isDone = true;
        // The new name is safe only when the folder is on the disk, too. The file is in place in any case.
        const std::filesystem::path folder = m_target.has_parent_path() ? m_target.parent_path() : ".";
        if (const int directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY); directory >= 0) {
            fsync(directory);
            close(directory);
        }
    }

private:
    void require(bool succeeded, const std::string& problem) const
    {
        if (!succeeded)
            failForSystem(m_target, "cannot be saved: " + problem);
    }

    const std::filesystem::path m_target;
    std::string m_name;
    int m_file;
    bool m_isDone = false;
};

// Where the file really is: a link is followed, so that it stays one.
std::filesystem::path resolved(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    return error ? path : real;
}

} // namespace

ContactList readContacts(const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        return {};
    if (!error && !std::filesystem::is_regular_file(status))
        fail(path, "cannot be read: it is no file");
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        failForSystem(path, "cannot be read");
    json object = Reader(path).read({std::istreambuf_iterator<char>(stream), {}});
    ContactList list;
    if (const auto contacts = object.find("contacts"); contacts != object.end()) {
        for (json& contact : *contacts)
            list.contacts.push_back(toContact(std::move(contact)));
    }
    if (const auto preferences = object.find("preferences"); preferences != object.end())
        list.preferences = toPreferences(std::move(*preferences));
    object.erase("contacts");
    object.erase("preferences");
    object.erase("version");
    list.unknown = std::move(object);
    return list;
}

void writeContacts(const std::filesystem::path& path, const ContactList& list)
{
    json object = list.unknown;
    object["version"] = knownVersion;
    json& contacts = object["contacts"] = json::array();
    for (const Contact& contact : list.contacts)
        contacts.push_back(fromContact(contact));
    object["preferences"] = fromPreferences(list.preferences);
    std::string text;
    try {
        text = object.dump(2) + "\n";
    } catch (const json::exception& error) {
        fail(path, std::string("cannot be saved: ") + error.what());
    }

    const std::filesystem::path target = resolved(path);
    struct stat present {};
    const mode_t mode = stat(target.c_str(), &present) == 0 ? present.st_mode & 07777 : newFileMode;
    Replacement replacement(target);
    replacement.setMode(mode);
    replacement.write(text);
    replacement.takePlace();
}

} // namespace Contacts
