#include <Foundation/Message.h>

namespace RVCore {

Value sendValues(NSObject& receiver, Selector selector, std::span<const Value> arguments)
{
    const Class& receiverClass = receiver.classObject();
    const Method* method = receiverClass.method(selector);
    if (!method)
        raiseInvalidArgument(receiverClass.name(), "unrecognized selector " + selector.name());
    return method->call(receiver, arguments);
}

Value sendValues(const Class& receiver, Selector selector, std::span<const Value> arguments)
{
    const ClassMethod* method = receiver.classMethod(selector);
    if (!method)
        raiseInvalidArgument(receiver.name() + " (class)", "unrecognized selector " + selector.name());
    return method->call(receiver, arguments);
}

namespace Messaging {

void raiseWrongArgument(std::string_view className, Selector selector, std::size_t position,
                        const std::string& expected, const Value& got)
{
    raiseInvalidArgument(std::string(className) + "." + selector.name(),
                         "argument " + std::to_string(position) + " must be " + expected + ", got " + got.kind());
}

void checkArgumentCount(std::string_view className, Selector selector, std::size_t expected, std::size_t got)
{
    if (expected != got)
        raiseInvalidArgument(std::string(className) + "." + selector.name(),
                             "takes " + std::to_string(expected) + " arguments, got " + std::to_string(got));
}

} // namespace Messaging

} // namespace RVCore
