#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Foundation/Forward.h>
#include <Views/RVGroupView.h>

#include <memory>
#include <string>
#include <vector>

namespace RVCore {

// What everybody builds: `count` members of 50 × 20 in a row or column with gaps of 8, one of which takes the length
// that is left over.
struct StackShape {
    std::size_t count = 0;
    bool isVertical = false;
    bool leadingStretches = false; // rather than the trailing one; then every change moves all members

    CGFloat memberLength() const { return isVertical ? 20 : 50; }
    bool stretches(std::size_t index) const { return index == (leadingStretches ? 0 : count - 1); }
    // Of the stack with `spare` left over.
    CGFloat length(CGFloat spare) const;
    CGSize size(CGFloat spare) const;
};

constexpr CGFloat stackSpacing = 8;
constexpr CGFloat stackBreadth = 100; // of the container, across

// A stack that somebody built: laid out when it is made, and again by each resize.
class Stack {
public:
    explicit Stack(const StackShape& stackShape) : shape(stackShape) {}
    virtual ~Stack() = default;
    virtual void resize(CGFloat spare) = 0;
    virtual CGRect memberFrame(std::size_t index) const = 0;

    // Stops the program unless every member is where it belongs: a figure counts only for a layout that came out
    // right.
    void check(CGFloat spare) const;

    const StackShape shape;
};

// With the framework: a group view in a host.
class GroupStack : public Stack {
public:
    explicit GroupStack(const StackShape& stackShape);
    void resize(CGFloat spare) override;
    CGRect memberFrame(std::size_t index) const override;
    // Of the member in the middle; lays out.
    void setVisible(bool visible);

private:
    std::shared_ptr<NSView> m_host;
    std::shared_ptr<RVGroupView> m_group;
};

// Peers.
std::unique_ptr<Stack> makeBoxLayoutStack(const StackShape& shape);    // plain widgets in a QBoxLayout
std::unique_ptr<Stack> makeAnchorLayoutStack(const StackShape& shape); // a QGraphicsAnchorLayout
std::unique_ptr<Stack> makeFrameLoopStack(const StackShape& shape);    // views whose frames a loop sets

} // namespace RVCore
