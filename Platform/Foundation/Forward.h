#pragma once

#include <memory>

namespace RVCore {

class Class;
class NSArray;
class NSCoder;
class NSException;
class NSObject;
class Selector;
class Value;
struct Method;

using ObjectRef = std::shared_ptr<NSObject>;

} // namespace RVCore
