#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace Contacts {

enum class ContactKind { person, company };

struct Contact {
    std::string name{};
    std::string email{};
    std::string phone{};
    ContactKind kind = ContactKind::person;
    bool isFavourite = false;
    std::string colour = "#8e8e93"; // "#rrggbb"
    // What a later version of the program has written and this one does not know. It is written back.
    nlohmann::json unknown = nlohmann::json::object();

    bool operator==(const Contact&) const = default;
};

// How the list is shown, and what is put into it; kept with it.
struct Preferences {
    bool isSortedByName = false; // or in the order in which the contacts were made
    bool showsEmail = true;      // below the name, in the list
    ContactKind newContactKind = ContactKind::person;
    nlohmann::json unknown = nlohmann::json::object();

    bool operator==(const Preferences&) const = default;
};

struct ContactList {
    std::vector<Contact> contacts{};
    Preferences preferences{};
    nlohmann::json unknown = nlohmann::json::object(); // beside these; written back, too

    bool operator==(const ContactList&) const = default;
};

} // namespace Contacts
