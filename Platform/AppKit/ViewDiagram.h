#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <string>

namespace RVCore {

class Canvas;
class NSView;

// A picture of a view tree that explains its layout. Over the pale ordinary picture it shows
//
//   - the frame of every visible view, and the size of those without subviews;
//   - padding: what a view leaves between its edges and its subviews;
//   - gaps: what lies between subviews that stand in a row or a column, and views that show nothing, which are there
//     to take up room, each with its length;
//   - views that show something and that the constraints do not settle;
//
// and below it what the colours mean. Frames are where layout puts them: layers' transforms do not move them. A
// number that does not fit, or would cover another one, is left out.

// The size that the picture takes, in points: somewhat larger than the view, and than what sticks out of it.
CGSize viewDiagramSize(NSView& view);

// Draws the picture of the view as it is laid out, its top left corner at the canvas's origin.
void paintViewDiagram(NSView& view, Canvas& canvas);

// Lays the view out and writes the picture as a PNG file, `scale` pixels to a point; needs no display. Raises
// NSInvalidArgumentException when the file cannot be written (see Backend::writePicture).
void writeViewDiagram(NSView& view, const std::string& path, CGFloat scale);

} // namespace RVCore
