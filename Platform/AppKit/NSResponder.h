#pragma once

#include <Foundation/NSObject.h>

namespace RVCore {

// Anything that can be a window's first responder.
class NSResponder : public NSObject {
    RVCORE_CLASS(NSResponder)

public:
    using NSObject::init;

    // Whether a window may make this its first responder. Default no.
    virtual bool acceptsFirstResponder() const { return false; }
};

} // namespace RVCore
