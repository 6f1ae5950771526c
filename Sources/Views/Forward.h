#pragma once

namespace RVCore {

class RVBaseView;
class RVColorButton;
class RVGroupView;
class RVIntrinsicView;
class RVProgressBlockingView;
class RVSpacerView;

} // namespace RVCore
