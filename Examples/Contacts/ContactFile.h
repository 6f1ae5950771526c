#pragma once

#include <Contacts/Contact.h>

#include <filesystem>
#include <stdexcept>

namespace Contacts {

// A file that cannot be read or written. The message names the file, the line where there is one, and what is wrong.
class ContactFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The file holds one JSON object:
//
//     {
//       "version": 1,
//       "contacts": [
//         { "name": "Ada", "email": "", "phone": "", "kind": "person", "favourite": true, "colour": "#8e8e93" }
//       ],
//       "preferences": { "sortedByName": false, "showsEmail": true, "newContactKind": "person" }
//     }
//
// Members that are absent have the defaults of Contact and Preferences. A file that does not exist is an empty list.
// Throws ContactFileError for one that cannot be read, is no such object, or is of a later version.
ContactList readContacts(const std::filesystem::path& path);

// Writes beside the file, flushes to the disk, and only then takes the file's place, so that at every moment there is
// a whole file under the name: the old one or the new one. Follows a link; keeps the file's permissions. Throws
// ContactFileError, and the old file stays as it was.
void writeContacts(const std::filesystem::path& path, const ContactList& list);

} // namespace Contacts
