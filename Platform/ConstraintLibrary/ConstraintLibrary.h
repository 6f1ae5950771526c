#pragma once

// The whole library in one header.
#include <ConstraintLibrary/ConstraintBlocks.h>
#include <ConstraintLibrary/LayoutAttributes.h>
#include <ConstraintLibrary/NSArray+ConstraintLibrary.h>
#include <ConstraintLibrary/NSLayoutConstraint+ConstraintLibrary.h>
#include <ConstraintLibrary/NSView+ConstraintLibrary.h>
