#pragma once

#include <Foundation/Message.h>

namespace RVCore {

// Reads and writes through published getters and setters: the key "alpha" is answered by "alpha" or "isAlpha",
// and written with "setAlpha:". In a path, every key but the last must lead to an object, or to an array of which the
// next key picks the first object whose "name" it is: "filters.blur.inputRadius". A key that the object does not
// answer, or a path that ends early, raises NSUnknownKeyException naming the object's class, the key and the path;
// nothing has been written then.
//
// An object that has more to do when something in it is written publishes "setValue:forKeyPath:". It, or the first
// one that the path comes to, is sent the value and the rest of the path.
Value valueForKeyPath(NSObject& object, std::string_view path);
void setValueForKeyPath(NSObject& object, std::string_view path, const Value& value);
// The same, without asking the object itself: for its own "setValue:forKeyPath:".
void setValueAlongKeyPath(NSObject& object, std::string_view path, const Value& value);

} // namespace RVCore
