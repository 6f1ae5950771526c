#include <AppKit/AppKitKey.h>
#include <AppKit/NSView.h>
#include <AppKit/NSViewController.h>
#include <AppKit/NSWindow.h>
#include <AppKit/WindowSizes.h>
#include <Foundation/NSException.h>
#include <Foundation/Stop.h>

namespace RVCore {

Class& NSViewController::staticClass()
{
    static Class& theClass =
        defineClass<NSViewController>("NSViewController", NSResponder::staticClass(), [](auto& publish) {
            publish.initializer("initWithNibName:bundle:",
                                [](NSViewController& self, const std::optional<std::string>& nibName,
                                   const ObjectRef& bundle) { self.init(nibName, bundle); });
            publish.property("view", &NSViewController::view, &NSViewController::setView);
            publish.readOnlyProperty("isViewLoaded", &NSViewController::isViewLoaded);
            publish.property("title", &NSViewController::title, &NSViewController::setTitle);
            publish.property("preferredContentSize", &NSViewController::preferredContentSize,
                             &NSViewController::setPreferredContentSize);
            publish.method("loadView", &NSViewController::loadView);
            publish.method("viewDidLoad", &NSViewController::viewDidLoad);
            publish.method("viewWillAppear", &NSViewController::viewWillAppear);
            publish.method("viewDidAppear", &NSViewController::viewDidAppear);
            publish.method("viewWillDisappear", &NSViewController::viewWillDisappear);
            publish.method("viewDidDisappear", &NSViewController::viewDidDisappear);
        });
    return theClass;
}

NSViewController::~NSViewController()
{
    releaseView();
}

void NSViewController::releaseView()
{
    if (m_view)
        m_view->setViewController(nullptr, {});
    m_view = nullptr;
}

void NSViewController::init(const std::optional<std::string>& nibName, const ObjectRef&)
{
    if (nibName)
        raiseInvalidArgument("NSViewController.initWithNibName:bundle:",
                             "there are no interface files, got \"" + *nibName + "\"");
}

const std::shared_ptr<NSView>& NSViewController::view()
{
    if (m_view)
        return m_view;
    if (m_isLoading)
        fatalError(classObject().name() + ".loadView asks for the view before it has set one");
    m_isLoading = true;
    try {
        loadView();
    } catch (...) { // what it raises passes through, and the next one who asks has it load again
        m_isLoading = false;
        releaseView();
        throw;
    }
    m_isLoading = false;
    if (!m_view)
        fatalError(classObject().name() + ".loadView has set no view");
    viewDidLoad();
    return m_view;
}

void NSViewController::setView(const std::shared_ptr<NSView>& view)
{
    if (!view)
        raiseInvalidArgument("NSViewController.setView:", "there is no view");
    if (view == m_view)
        return;
    if (view->viewController({}))
        raiseInvalidArgument("NSViewController.setView:", view->description() + " is another controller's view");
    releaseView();
    m_view = view;
    view->setViewController(this, {});
}

void NSViewController::setPreferredContentSize(CGSize size)
{
    requireNotNegative("NSViewController.setPreferredContentSize:", "size", size);
    m_preferredContentSize = size;
}

NSResponder* NSViewController::nextResponder() const
{
    if (!m_view)
        return nullptr;
    if (m_view->superview())
        return m_view->superview();
    return m_view->isContentView() ? m_view->window() : nullptr;
}

void NSViewController::loadView()
{
    setView(make<NSView>());
}

} // namespace RVCore
