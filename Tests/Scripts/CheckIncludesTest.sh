#!/bin/sh
# Scripts/check-includes must find each kind of violation, and nothing in a house that is in order.
# usage: CheckIncludesTest.sh SCRIPT
set -eu
script=$1
house=$(mktemp -d)
trap 'rm -rf "$house"' EXIT
failures=0

fail() {
    echo "FAILED: $1"
    failures=$((failures + 1))
}

# write FILE LINES…: a file below the house; fresh empties the house first.
write() {
    mkdir -p "$house/$(dirname "$1")"
    file=$house/$1
    shift
    printf '%s\n' "$@" >"$file"
}
fresh() {
    rm -rf "$house/Platform" "$house/Sources"
    mkdir -p "$house/Platform" "$house/Sources"
}

# refuses NAME EXPECTED: the script must fail and print exactly the expected line.
refuses() {
    if output=$("$script" "$house"); then
        fail "$1: was accepted"
    elif [ "$output" != "$2" ]; then
        fail "$1: printed: $output"
    fi
}
accepts() {
    output=$("$script" "$house") || fail "$1: was refused: $output"
}

fresh
write Platform/Foundation/NSObject.cpp '#include "NSObject.h"' '#include <Foundation/Class.h>' '#include <vector>'
write Platform/AppKit/NSView.h '#pragma once' '#include <Foundation/NSObject.h>' '#  include <LayoutEngine/LayoutEngine.h>'
write Platform/QtBackend/QtWindow.h '#include <QWidget>' '#include <AppKit/NSWindow.h>' '#include <QtGui/QImage>'
write Sources/Views/RVGroupView.cpp '#include <Views/RVGroupView.h>' '#include <ConstraintLibrary/Pin.h>'
write Sources/Views/RVBaseView.cpp '#include <RVCore.h>'
accepts 'a house in order'

fresh
write Platform/Foundation/NSObject.h '#pragma once' '#include <CoreGraphics/Geometry.h>'
refuses 'a lower room includes a higher one' \
    'Platform/Foundation/NSObject.h:2: Foundation must not include CoreGraphics: <CoreGraphics/Geometry.h>'

fresh
write Platform/LayoutEngine/LayoutEngine.cpp '#include <Foundation/Value.h>'
refuses 'the engine includes anything' \
    'Platform/LayoutEngine/LayoutEngine.cpp:1: LayoutEngine must not include Foundation: <Foundation/Value.h>'

fresh
write Platform/AppKit/NSWindow.cpp '' '' '#include <QtBackend/QtWindow.h>'
refuses 'somebody includes the Qt backend' \
    'Platform/AppKit/NSWindow.cpp:3: AppKit must not include QtBackend: <QtBackend/QtWindow.h>'

fresh
write Sources/Views/RVGroupView.h '#include <Backend/Text.h>' '#include <HeadlessBackend/HeadlessText.h>'
refuses 'the framework includes a backend' \
    'Sources/Views/RVGroupView.h:2: Sources must not include HeadlessBackend: <HeadlessBackend/HeadlessText.h>'

fresh
write Sources/Controllers/RVScreenshotController.cpp '#include <QImage>'
refuses 'the framework includes Qt' \
    'Sources/Controllers/RVScreenshotController.cpp:1: Sources must not include Qt: <QImage>'

fresh
write Platform/AppKit/NSView.cpp '#include <RVCore.h>'
refuses 'the platform includes the framework' \
    'Platform/AppKit/NSView.cpp:1: AppKit must not include Sources: <RVCore.h>'

fresh
write Platform/AppKit/NSView.cpp '#include <Extensions/NSView+RVCore.h>'
refuses 'the platform includes a folder of the framework' \
    'Platform/AppKit/NSView.cpp:1: AppKit must not include Sources: <Extensions/NSView+RVCore.h>'

fresh
write Platform/Foundation/NSObject.cpp '#include <boost/any.hpp>'
refuses 'a room includes another library' \
    'Platform/Foundation/NSObject.cpp:1: neither a header of the project nor of the C++ standard library: <boost/any.hpp>'

fresh
write Platform/AppKit/NSView.cpp '#include "../Foundation/NSObject.h"'
refuses 'quotes that climb' \
    'Platform/AppKit/NSView.cpp:1: a header of another folder is included as <Room/Header.h>: "../Foundation/NSObject.h"'

fresh
write Platform/Foundation/NSObject.cpp '#include HEADER'
refuses 'an include through a macro' \
    'Platform/Foundation/NSObject.cpp:1: an include that cannot be read off the line: HEADER'

fresh
write Platform/Attic/Old.h '#pragma once'
refuses 'a room that is not in the table' 'Platform/Attic/Old.h:0: not in the table of rooms: Attic'

fresh
if "$script" "$house" 2>/dev/null; then
    fail 'an empty house: was accepted'
fi

[ "$failures" = 0 ]
