#pragma once

// The one header that an application includes: the framework with the platform that it stands on.
#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSLayoutConstraint.h>
#include <AppKit/NSResponder.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewDump.h>
#include <AppKit/ViewSnapshot.h>
#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/Canvas.h>
#include <Extensions/Collections.h>
#include <Extensions/NSView+RVCore.h>
#include <Foundation/AssociatedObjects.h>
#include <Foundation/KeyPath.h>
#include <Foundation/Message.h>
#include <Foundation/NSArray.h>
#include <Foundation/NSCoder.h>
#include <Foundation/NSException.h>
#include <Foundation/NSObject.h>
#include <Foundation/Random.h>
#include <Foundation/Stop.h>
#include <Foundation/Value.h>
#include <Views/RVBaseView.h>
#include <Views/RVGroupView.h>
#include <Views/RVIntrinsicView.h>
#include <Views/RVSpacerView.h>

#include <QuartzCore/CALayer.h>
