#include "Stacks.h"

#include <AppKit/NSView.h>

#include <QBoxLayout>
#include <QGraphicsAnchorLayout>
#include <QGraphicsWidget>
#include <QWidget>

namespace RVCore {

namespace {

// A widget that wants to be 50 × 20, as the members of a group do.
class MemberWidget : public QWidget {
public:
    QSize sizeHint() const override { return {50, 20}; }
    QSize minimumSizeHint() const override { return {50, 20}; }
};

class BoxLayoutStack : public Stack {
public:
    explicit BoxLayoutStack(const StackShape& stackShape)
        : Stack(stackShape),
          m_layout(new QBoxLayout(shape.isVertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, &m_host))
    {
        m_layout->setContentsMargins(0, 0, 0, 0);
        m_layout->setSpacing(static_cast<int>(stackSpacing));
        m_layout->setSizeConstraint(
            QLayout::SetNoConstraint); // a huge minimum would clip the host at QWIDGETSIZE_MAX
        for (std::size_t i = 0; i < shape.count; ++i) {
            auto* member = new MemberWidget;
            const auto along = shape.stretches(i) ? QSizePolicy::Expanding : QSizePolicy::Fixed;
            member->setSizePolicy(shape.isVertical ? QSizePolicy::Fixed : along,
                                  shape.isVertical ? along : QSizePolicy::Fixed);
            m_layout->addWidget(member);
            m_members.push_back(member);
        }
        resize(100);
    }

    // What a visible host does when it is resized, without what that costs besides the layout.
    void resize(CGFloat spare) override
    {
        const CGSize size = shape.size(spare);
        m_layout->setGeometry({0, 0, static_cast<int>(size.width), static_cast<int>(size.height)});
    }

    CGRect memberFrame(std::size_t index) const override
    {
        const QRect frame = m_members[index]->geometry();
        return {static_cast<CGFloat>(frame.x()), static_cast<CGFloat>(frame.y()), static_cast<CGFloat>(frame.width()),
                static_cast<CGFloat>(frame.height())};
    }

private:
    QWidget m_host;
    QBoxLayout* m_layout;
    std::vector<QWidget*> m_members; // owned by the host
};

class AnchorLayoutStack : public Stack {
public:
    explicit AnchorLayoutStack(const StackShape& stackShape)
        : Stack(stackShape), m_layout(new QGraphicsAnchorLayout(&m_host))
    {
        const auto start = shape.isVertical ? Qt::AnchorTop : Qt::AnchorLeft;
        const auto end = shape.isVertical ? Qt::AnchorBottom : Qt::AnchorRight;
        const auto crossStart = shape.isVertical ? Qt::AnchorLeft : Qt::AnchorTop;
        m_layout->setContentsMargins(0, 0, 0, 0);
        m_layout->setSpacing(stackSpacing);
        for (std::size_t i = 0; i < shape.count; ++i) {
            auto* member = new QGraphicsWidget;
            member->setPreferredSize(50, 20);
            member->setMinimumSize(50, 20);
            if (!shape.stretches(i))
                member->setMaximumSize(50, 20);
            if (i == 0)
                m_layout->addAnchor(m_layout, start, member, start)->setSpacing(0);
            else
                m_layout->addAnchor(m_members.back(), end, member, start);
            m_layout->addAnchor(m_layout, crossStart, member, crossStart);
            m_members.push_back(member);
        }
        m_layout->addAnchor(m_members.back(), end, m_layout, end)->setSpacing(0);
        resize(100);
    }

    void resize(CGFloat spare) override
    {
        const CGSize size = shape.size(spare);
        m_layout->setGeometry({0, 0, size.width, size.height});
    }

    CGRect memberFrame(std::size_t index) const override
    {
        const QRectF frame = m_members[index]->geometry();
        return {frame.x(), frame.y(), frame.width(), frame.height()};
    }

private:
    QGraphicsWidget m_host;
    QGraphicsAnchorLayout* m_layout;
    std::vector<QGraphicsWidget*> m_members; // owned by the host
};

// What somebody would write who needs no framework.
class FrameLoopStack : public Stack {
public:
    explicit FrameLoopStack(const StackShape& stackShape)
        : Stack(stackShape), m_host(make<NSView>(CGRect({}, shape.size(100))))
    {
        for (std::size_t i = 0; i < shape.count; ++i) {
            auto member = make<NSView>();
            m_host->addSubview(member);
            m_members.push_back(member.get());
        }
        resize(100);
    }

    void resize(CGFloat spare) override
    {
        CGFloat start = 0;
        for (std::size_t i = 0; i < shape.count; ++i) {
            const CGFloat length = shape.memberLength() + (shape.stretches(i) ? spare : 0);
            const CGFloat across = (stackBreadth - (shape.isVertical ? 50 : 20)) / 2;
            m_members[i]->setFrame(shape.isVertical ? CGRect(across, start, 50, length)
                                                    : CGRect(start, across, length, 20));
            start += length + stackSpacing;
        }
    }

    CGRect memberFrame(std::size_t index) const override { return m_members[index]->frame(); }

private:
    std::shared_ptr<NSView> m_host;
    std::vector<NSView*> m_members; // owned by the host
};

} // namespace

std::unique_ptr<Stack> makeBoxLayoutStack(const StackShape& shape)
{
    return std::make_unique<BoxLayoutStack>(shape);
}

std::unique_ptr<Stack> makeAnchorLayoutStack(const StackShape& shape)
{
    return std::make_unique<AnchorLayoutStack>(shape);
}

std::unique_ptr<Stack> makeFrameLoopStack(const StackShape& shape)
{
    return std::make_unique<FrameLoopStack>(shape);
}

} // namespace RVCore
